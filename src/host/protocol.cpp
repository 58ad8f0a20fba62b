#include "host/protocol.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace kelhost {

namespace {

constexpr std::size_t MOST_NAME = 64;

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
           c == '_';
}

std::string runtimeFolder() {
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    return folder != nullptr && folder[0] == '/' ? folder : "/tmp/kelhpgl-" + std::to_string(getuid());
}

}  // namespace

std::array<char, FRAME_HEADER_SIZE> encodeHeader(const FrameHeader& header) {
    std::array<char, FRAME_HEADER_SIZE> bytes{static_cast<char>(header.kind)};
    for (std::size_t i = 1; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(header.length >> 8 * (i - 1) & 0xFF);
    }
    return bytes;
}

FrameHeader decodeHeader(const char* bytes) {
    FrameHeader header{.kind = static_cast<uint8_t>(bytes[0]), .length = 0};
    for (std::size_t i = FRAME_HEADER_SIZE - 1; i > 0; --i) {
        header.length = header.length << 8 | static_cast<uint8_t>(bytes[i]);
    }
    return header;
}

std::string channelPath(std::string_view name) {
    const bool fits = !name.empty() && name.size() <= MOST_NAME && name.front() != '.' &&
                      std::all_of(name.begin(), name.end(), isNameCharacter);
    return fits ? runtimeFolder() + "/kelhpgl." + std::string(name) : std::string();
}

}  // namespace kelhost
