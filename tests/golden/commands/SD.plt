CO"SD defines the standard font: kind 3 is the pitch, kind 4 the height. Other kinds change nothing that is drawn.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SD3,100,4,1.5;PU20,90;LBstandard;
SD1,21,2,1,3,50,5,1,6,3,7,5,9,1;PU20,40;LBwide;
SD;PU20,10;LBA;
