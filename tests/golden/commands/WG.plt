CO"WG fills a wedge about the pen: radius, start and sweep angle, chord angle. A negative radius looks the other way.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU60,75;WG50,30,300;
SP6;PU150,75;WG40,90,-180,45;PU150,75;WG-30,90,-90;SP1;PD100,75;
