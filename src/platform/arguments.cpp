#include "platform/arguments.h"

namespace {

PlatformArguments given{0, nullptr};

}  // namespace

void setPlatformArguments(int count, const char* const* values) {
    given = {count, values};
}

PlatformArguments platformArguments() {
    return given;
}
