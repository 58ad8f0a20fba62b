// The keys that stand for items of the action bar.
#pragma once

#include <QString>
#include <cstdint>

namespace qrvel {

// The name of the key for the item with that action, in the session's language; empty where there is none.
QString acceleratorText(uint32_t action);

}  // namespace qrvel
