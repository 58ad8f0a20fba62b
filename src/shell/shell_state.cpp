#include "shell/shell_state.h"

HPGLShell TheShell = {};
