CO"LA is passed over: ends and corners of wide lines stay round.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
PW0.2,2;SP2;PU20,20;PD100,130;
LA1,1,2,1,3,5;
PD180,20;PU;
