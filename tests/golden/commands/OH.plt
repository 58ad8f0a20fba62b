CO"OH is passed over: no limits are answered, and pen, colour and position stay.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
OH;
PD180,20;PU;
