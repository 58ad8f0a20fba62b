CO"AA draws an arc about a centre, from the pen on, by an angle; below 0 it runs clockwise. The fourth parameter is the chord angle.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU160,75;AA100,75,180;
SP6;PU140,75;AA100,75,-90,30;
PD100,75;
