CO"HPGL_INFO asks for information: a flag is set, and the stroke goes on behind it.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
HPGL_INFO;
PD180,20;PU;
