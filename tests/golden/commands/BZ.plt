CO"BZ draws Bezier curves of three absolute points.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;BZ20,130,100,130,100,20,100,0,180,20,180,130;
PD20,130;
