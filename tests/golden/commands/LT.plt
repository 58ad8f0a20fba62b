CO"LT is passed over: lines are solid.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
LT2,10,1;
PD180,20;PU;
