CO"IR is passed over: the picture's own extents decide the scale.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
IR25,25,75,75;
PD180,20;PU;
