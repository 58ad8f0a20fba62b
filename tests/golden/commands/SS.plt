CO"SS makes the alternate font the current one, like SA.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SD3,100,4,1.5;AD3,50,4,2;PU20,90;LBstandard;
SS;
PU20,40;LBother;
