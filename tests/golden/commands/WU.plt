CO"WU is passed over: widths are in millimetres as ever.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
WU1;PW0.1;
PD180,20;PU;
