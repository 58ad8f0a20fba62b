CO"CI draws a circle about the pen, which stays there; the second parameter is the chord angle.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU60,75;CI50;
SP6;PU150,75;CI40,60;
PD60,75;
