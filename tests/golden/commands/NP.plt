CO"NP is passed over: there are always as many pens.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
NP4;
PD180,20;PU;SP6;PU20,75;PD180,75;
