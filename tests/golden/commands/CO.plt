CO"CO is a comment up to its second double quote: PD0,150; in it draws nothing.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
CO of words before "SP6;PD20,130;" and nothing behind;
PD180,20;PU;
