CO"LO is passed over: labels begin at the pen.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,90;LBbefore;
LO5;
PU20,40;LBafter;PD180,40;
