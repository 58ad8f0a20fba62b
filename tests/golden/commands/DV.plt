CO"DV is passed over: labels run from left to right.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,90;LBbefore;
DV1,0;
PU20,40;LBafter;PD180,40;
