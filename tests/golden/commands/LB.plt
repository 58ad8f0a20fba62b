CO"LB writes text up to the terminator, or a line end. The pen stays.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,90;LBHello, PD9;;PD180,90;
PU20,40;LBline
PD180,40;LB;
