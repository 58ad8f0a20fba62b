CO"PM0 begins a polygon, PM1 its next part, PM2 ends it. It draws nothing; the pen is then at the first point of the last part.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP6;PU20,20;PM0;PA180,20;PU100,130;PM1;PR0,-40;PA130,40,70,40;PM2;PD180,130;
SP2;EP;
PU150,75;PM0;CI20,60;EW20,0,90,30;PM2;EP;
