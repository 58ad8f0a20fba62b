#include "system/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace kelsystem {

int openTemporaryFile() {
    const char* const chosen = std::getenv("TMPDIR");
    const std::string folder = chosen != nullptr && chosen[0] == '/' ? chosen : "/tmp";
    const int unnamed = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (unnamed >= 0) return unnamed;
    std::string name = folder + "/kelhpgl-XXXXXX";
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file >= 0) unlink(name.c_str());
    return file;
}

}  // namespace kelsystem
