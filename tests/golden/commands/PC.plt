CO"PC gives a pen a colour: for the whole picture, also for what stands before it.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
PC2,255,128,0;
PD180,20;PU;
