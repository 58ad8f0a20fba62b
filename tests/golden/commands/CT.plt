CO"CT is passed over: what sets the chords of a circle is their angle. Its parameter is counted, not stored.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU60,75;CI50,30;
CT1;
SP6;PU150,75;CI40,30;PD60,75;
