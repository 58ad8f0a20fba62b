#include "qrvel/channel/transmission_cutter.h"

namespace qrvel {

namespace {

bool endsName(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value < 32 || value > 127;
}

// Where the name that begins at `start` ends, looking no farther than `limit`.
std::size_t nameEnd(std::string_view text, std::size_t start, std::size_t limit) {
    while (start < limit && !endsName(text[start])) {
        ++start;
    }
    return start;
}

}  // namespace

std::size_t nextPieceLength(std::string_view rest, std::size_t room) {
    if (rest.size() <= room) return rest.size();
    rest = rest.substr(0, room + NAME_FOLLOWS.size());
    std::size_t word = rest.find(NAME_FOLLOWS);
    while (word < room) {
        const std::size_t end = nameEnd(rest, word + NAME_FOLLOWS.size(), room + 1);
        if (end > room) return word > 0 ? word : room;
        word = rest.find(NAME_FOLLOWS, end);
    }
    return room;
}

}  // namespace qrvel
