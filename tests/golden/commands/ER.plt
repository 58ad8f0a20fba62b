CO"ER outlines the box between the pen and a corner relative to it; the pen stays.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;ER160,110;
SP6;PU170,120;ER-140,-90;PW0.1;PU60,60;ER80,30;PW0;PD70,70;
