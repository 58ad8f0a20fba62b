CO"FN is passed over: no font is picked by its number.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,90;LBbefore;
FN3;
PU20,40;LBafter;PD180,40;
