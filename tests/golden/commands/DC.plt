CO"DC is passed over: no point is taken, and pen, colour and position stay.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
DC;
PD180,20;PU;
