CO"RR fills the box between the pen and a corner relative to it; the pen stays.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;RR60,110;
SP6;PU180,130;RR-60,-110;SP1;PD100,75;
