CO"IW is passed over: nothing is cut at its window.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
IW50,50,150,100;
PD180,20;PU;
