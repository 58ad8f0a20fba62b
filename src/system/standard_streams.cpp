#include "system/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

namespace kelsystem {

// The lowest free number is taken, so none below may be free.
void holdStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) >= 0) continue;
        // In the wrong direction: who reads from it, or writes results to it, is to be told.
        if (open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0) return;
    }
}

}  // namespace kelsystem
