#include "shell_state.h"

HPGLShell TheShell = {};
bool InitialDataLoaded = false;
