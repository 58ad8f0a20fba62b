// The keys that stand for commands.
#pragma once

#include <QString>
#include <cstdint>

namespace qrvel {

// The name of the key for that command, in the session's language; empty where there is none.
QString acceleratorText(uint32_t command);

}  // namespace qrvel
