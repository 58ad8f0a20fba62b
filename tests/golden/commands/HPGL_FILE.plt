CO"HPGL_FILE names a file that is read instead; what stands here is not drawn.";
SP1;PU0,0;PD200,0,200,150,0,150,0,0;PU;
SP6;PU0,150;PD200,0;
HPGL_FILE:HPGL_FILE.named
