CO"DT sets the character that ends a label. Its second parameter changes nothing, and without any nothing changes.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SI0.025,0.05;PU20,100;DT#;LBone#;
PU20,70;DT*,1;LBtwo#*;
PU20,40;DT;LBthree*;PD180,40;
