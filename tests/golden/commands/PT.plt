CO"PT is passed over: fills are solid whatever the pen's thickness. Its parameter is counted, not stored.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,30;RR60,90;
PT0.7;
PU120,30;RR60,90;
