CO"CP is passed over: the pen does not move by characters.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;SP2;PU20,20;PD100,130;
CP5,-2;
PD180,20;PU;
