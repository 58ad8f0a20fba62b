#include "system/shown_text.h"

#include <cstddef>
#include <cstdint>

namespace kelsystem {

namespace {

constexpr uint32_t FIRST_PRINTED = 0x20;
constexpr uint32_t DELETE = 0x7F;
constexpr uint32_t LAST_CONTROL = 0x9F;

// How many bytes the character takes that a byte begins; 0 where none begins.
std::size_t lengthBegunBy(uint8_t byte) {
    if (byte < 0x80) return 1;
    if (byte >= 0xC2 && byte < 0xE0) return 2;
    if (byte >= 0xE0 && byte < 0xF0) return 3;
    return byte >= 0xF0 && byte < 0xF5 ? 4 : 0;
}

// The bytes of the character in front; 0 where there is none, or one that is not to be seen.
std::size_t printedLength(std::string_view text) {
    const auto first = static_cast<uint8_t>(text.front());
    const std::size_t length = lengthBegunBy(first);
    if (length == 0 || length > text.size()) return 0;
    uint32_t character = length == 1 ? first : first & 0x7FU >> length;
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<uint8_t>(text[i]);
        if ((next & 0xC0) != 0x80) return 0;
        character = character << 6 | (next & 0x3FU);
    }
    const bool control = character < FIRST_PRINTED || (character >= DELETE && character <= LAST_CONTROL);
    return control ? 0 : length;
}

}  // namespace

std::string shownText(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const std::size_t length = printedLength(text);
        if (length == 0) shown += '?';
        shown += text.substr(0, length);
        // A control character of two bytes is one question mark.
        const bool pair = length == 0 && text.size() > 1 && text[0] == '\xC2' && (text[1] & 0xC0) == 0x80;
        text.remove_prefix(length > 0 ? length : pair ? 2 : 1);
    }
    return shown;
}

}  // namespace kelsystem
