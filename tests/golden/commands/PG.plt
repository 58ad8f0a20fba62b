CO"PG is passed over: the picture goes on on the same page. Its parameter is counted, not stored.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
PG1;
PD180,20;PU;
