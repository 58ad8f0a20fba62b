CO"PR moves to points relative to the one before.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD;PR80,110,80,-110;PU-160,110;PD0,-30;
