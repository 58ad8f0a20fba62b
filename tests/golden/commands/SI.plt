CO"SI sets width and height of characters in centimetres; without parameters the font decides again.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,90;LBSize;
SI0.05,0.1;PU20,40;LBtwice;
SI;PU20,10;LBA;
