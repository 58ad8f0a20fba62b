CO"PU lifts the pen and moves to its points without a line.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;PU180,130,180,20;PD100,75;
