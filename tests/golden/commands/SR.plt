CO"SR sets width and height of characters in per cent of the picture; without parameters the font decides again.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SR5,15;PU20,90;LBSize;
SR10,30;PU20,40;LBtwice;
SR;PU20,10;LBA;
