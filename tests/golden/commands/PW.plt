CO"PW sets a pen's width in millimetres, forty units each: the current pen's, or that of the pen it names.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PW0.1;PD100,130;PW0.3;PD180,20;PU20,100;PW0.5;PD20,100;
PW0.2,6;SP6;PU40,20;PD100,60,160,20;PW0.04;PU170,110;CI15;PU130,140;PD190,140;
PW0;PU150,80;PD190,80;
