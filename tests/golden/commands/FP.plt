CO"FP fills the polygon that PM has collected; what lies in two of its parts is a hole.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PM0;PD180,20,100,130;PM1;PD70,40,130,40,100,90;PM2;FP;
SP6;PU150,120;PM0;PD190,120,190,90;PM2;FP1;
