CO"PA moves to absolute points: without a line while the pen is up, with one while it is down.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PA20,20;PD;PA100,130,180,20;PU;PA20,130;PD;PA20,100;
