CO"AR is AA with the centre relative to the pen.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU160,75;AR-60,0,180;
SP6;PU140,75;AR-40,0,-90,30;
PD100,75;
