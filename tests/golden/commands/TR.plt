CO"TR is passed over: white covers what lies below.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;RR160,110;
TR1;
SP0;PU50,50;RR100,50;SP6;PD180,130;
