// What hpgldump prints of the viewer's picture (TheShell's, and the recorder's palette). Every line begins with its
// kind. The unit tests compare the same text.
#pragma once

#include <cstdio>

void dumpHex(FILE* to);
void dumpPicture(FILE* to);
void dumpScaling(FILE* to);
void dumpRecords(FILE* to);
