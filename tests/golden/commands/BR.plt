CO"BR draws Bezier curves of three points relative to each curve's start.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;BR0,110,80,110,80,0,0,-20,80,0,80,110;
PD20,130;
