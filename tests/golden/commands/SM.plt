CO"SM is passed over: no symbol stands at the points.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
SM*;
PD180,20;PU;
