CO"PE holds points in a code: 7 for seven bits, : selects a pen, < moves with the pen up, = is absolute.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
PE7:c<=G`G`?d[e?d\e:k<@i_=G`Cg;
PD50,130;
