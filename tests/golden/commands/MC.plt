CO"MC is passed over: what is drawn later covers what lies below.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;RR110,80;
MC1,168;
SP6;PU70,50;RR110,80;
