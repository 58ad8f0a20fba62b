CO"HPGL_DATA says that plotter data follows. It leaves no record: the stroke goes on behind it.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
HPGL_DATA;
PD180,20;PU;
