PD1,2;HPGL_FILE:/nonexistent/plot.plt
PD3,4;