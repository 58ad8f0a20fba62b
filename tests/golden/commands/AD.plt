CO"AD defines the alternate font: kind 3 is the pitch, kind 4 the height. Without parameters it is the default font again.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
AD3,100,4,1.5;PU20,90;SS;LBalternate;
AD3,50;PU20,40;LBwide;
AD;PU20,10;LBA;
