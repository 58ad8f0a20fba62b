CO"EA outlines the box between the pen and an absolute corner. The box is one unit wider and higher; the pen stays.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;EA180,130;
SP6;PU170,120;EA30,30;PW0.1;PU60,60;EA140,90;PU100,70;PW0;PD100,80;
