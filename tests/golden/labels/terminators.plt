DT#;LBone#DT*,1;LBtwo*LBends here
PD10,10;DT;LBthree*LBeight‰PD20,20;