#include "shell_state.h"

HPGLShell TheShell = {};
