CO"SC mirrors an axis whose limits are reversed; type 2 multiplies by its second and fourth parameter. Neither sets a window.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP2;PU20,20;PD100,130,180,20;
SC1,0,0,1;
PU-20,20;PD-100,20,-100,60;
SC0,0.5,0,0.25,2;
SP6;PU40,80;PD200,520,360,80;
