CO"AT is passed over: no arc through three points, and the pen stays.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
AT150,130,180,75,10;
PD180,20;PU;
