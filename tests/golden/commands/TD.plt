CO"TD is passed over: control characters end a label as ever.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,90;LBbefore;
TD1;
PU20,40;LBafter;PD180,40;
