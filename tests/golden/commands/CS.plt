CO"CS is passed over: characters are the same. Its parameter is counted, not stored.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,90;LBbefore;
CS33;
PU20,40;LBafter;PD180,40;
