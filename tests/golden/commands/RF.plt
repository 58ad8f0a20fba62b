CO"RF is passed over: fills have no pattern.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,30;RR60,90;
RF1,2,2,0,1,1,0;
PU120,30;RR60,90;
