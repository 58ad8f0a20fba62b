CO"A sub-polygon without a point, filled and edged again and again";
IN;SP1;PU0,0;PD100,100;PM0;PM1;PM2;FP;FP;EP;EP;
PM0;PD200,0,200,200;PM1;PM1;PM2;FP;FP;EP;EP;
