CO"PD puts the pen down and draws to its points; an odd parameter is left over.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD;PA100,130;PD180,20,100;
PD20,20;
