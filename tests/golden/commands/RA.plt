CO"RA fills the box between the pen and an absolute corner. The box is one unit wider and higher; the pen stays.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;RA80,130;
SP6;PU180,130;RA120,20;SP1;PD100,75;
