#pragma once

#include <cerrno>
#include <cstring>

#include <QString>

namespace qrvel {

// What errno says, in the session's language.
inline QString errorText() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

}  // namespace qrvel
