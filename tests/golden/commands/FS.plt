CO"FS is passed over: no force is set, and pen, colour and position stay. Its parameters are counted, not stored.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130;
FS4;
PD180,20;PU;
