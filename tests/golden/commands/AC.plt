CO"AC is passed over: fills have no anchor.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,30;RR60,90;
AC10,10;
PU120,30;RR60,90;
