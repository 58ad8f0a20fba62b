#include "plotter/file_bytes.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "plotter/ascii.h"
#include "plotter/character_sets.h"
#include "plotter/escapes.h"

namespace plotter {

namespace {

constexpr char LABEL_END = '\x03';

// ---- compression ----

class Unpacker {
  public:
    Unpacker() {
        constexpr int WITH_GZIP_HEADER = 16;
        ready_ = inflateInit2(&stream_, MAX_WBITS + WITH_GZIP_HEADER) == Z_OK;
    }
    Unpacker(const Unpacker&) = delete;
    Unpacker& operator=(const Unpacker&) = delete;
    ~Unpacker() {
        if (ready_) inflateEnd(&stream_);
    }

    // Appends what can be unpacked. False when that is not all of it.
    bool run(std::string_view packed, std::size_t most, std::string& out) {
        std::array<Bytef, 65536> piece;
        while (ready_) {
            feed(packed);
            stream_.next_out = piece.data();
            stream_.avail_out = static_cast<uInt>(piece.size());
            const int answer = inflate(&stream_, Z_NO_FLUSH);
            const std::size_t got = piece.size() - stream_.avail_out;
            const std::size_t room = most - out.size();
            out.append(reinterpret_cast<const char*>(piece.data()), std::min(got, room));
            if (got > room) return false;
            if (answer == Z_STREAM_END) {
                if (!beginsAgain(packed)) return true;
            } else if (answer != Z_OK) {
                return false;
            }
        }
        return false;
    }

  private:
    void feed(std::string_view& packed) {
        if (stream_.avail_in > 0 || packed.empty()) return;
        constexpr std::size_t MOST_AT_ONCE = std::size_t{1} << 30;
        const std::size_t count = std::min(packed.size(), MOST_AT_ONCE);
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
        stream_.avail_in = static_cast<uInt>(count);
        packed.remove_prefix(count);
    }

    // Archives that were appended to one another are one.
    bool beginsAgain(std::string_view packed) {
        constexpr Bytef GZIP_MAGIC = 0x1f;
        feed(packed);
        return stream_.avail_in > 0 && *stream_.next_in == GZIP_MAGIC && inflateReset(&stream_) == Z_OK;
    }

    z_stream stream_ = {};
    bool ready_ = false;
};

bool isPacked(std::string_view bytes) {
    return bytes.starts_with("\x1f\x8b\x08");
}

std::string unpack(std::string_view packed, std::string& remark) {
    const std::size_t most = std::min(MOST_UNPACKED_BYTES, packed.size() * MOST_UNPACKED_TO_ONE);
    std::string bytes;
    Unpacker unpacker;
    if (!unpacker.run(packed, most, bytes)) {
        remark = bytes.size() >= most ? "compressed file: what is beyond " + std::to_string(most) + " bytes is left out"
                                      : "compressed file: damaged, shown as far as it goes";
    }
    return bytes;
}

// ---- two bytes a character ----

bool isWide(std::string_view bytes) {
    return bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff");
}

std::string narrow(std::string_view wide) {
    const std::size_t low = wide.starts_with("\xff\xfe") ? 0 : 1;
    std::string bytes;
    bytes.reserve(wide.size() / 2);
    for (std::size_t at = 2; at + 1 < wide.size(); at += 2) {
        bytes.push_back(wide[at + low]);
    }
    return bytes;
}

// ---- parity ----

constexpr std::size_t PARITY_SAMPLE = 65536;  // bytes

// A plot in 7 bits is letters, digits and a few controls; of these about half get a parity bit.
bool hasParity(std::string_view bytes) {
    constexpr std::size_t FEWEST = 16;       // bytes that a rule can be seen in
    constexpr std::size_t FEW = 200;         // one in so many may be damaged
    constexpr std::size_t MARKED_SHARE = 5;  // one in so many at least has the bit
    std::array<std::size_t, 2> ofParity = {};
    std::size_t marked = 0;
    std::size_t unlikely = 0;
    for (const char c : bytes) {
        if (c == 0) continue;
        ++ofParity[static_cast<std::size_t>(std::popcount(toByte(c)) & 1)];
        marked += toByte(c) >> 7;
        const int text = toByte(c) & 0x7f;
        unlikely += (text < 0x20 && !(text >= 0x08 && text <= 0x0d) && text != LABEL_END && text != ESCAPE) ? 1 : 0;
    }
    const std::size_t counted = ofParity[0] + ofParity[1];
    const std::size_t damaged = std::min({ofParity[0], ofParity[1], counted - marked});
    return counted >= FEWEST && damaged <= counted / FEW && unlikely <= counted / FEW &&
           marked >= counted / MARKED_SHARE;
}

std::string withoutParity(std::string_view bytes) {
    std::string stripped(bytes);
    std::ranges::transform(stripped, stripped.begin(), [](char c) { return static_cast<char>(c & 0x7f); });
    return stripped;
}

// ---- encoded lines that an editor has saved as UTF-8 ----

// How many bytes the sequence at the place has; 0 when it is not UTF-8.
std::size_t sequenceLength(std::string_view bytes, std::size_t at) {
    const uint8_t first = toByte(bytes[at]);
    const std::size_t length = first < UPPER_HALF ? 1 : utf8Length(first);
    if (length == 0 || at + length > bytes.size()) return 0;
    const auto rest = bytes.substr(at + 1, length - 1);
    return std::ranges::all_of(rest, [](char c) { return (toByte(c) & 0xc0) == 0x80; }) ? length : 0;
}

bool isUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = sequenceLength(bytes, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

// Whether a byte behind C2 or C3 stands in no encoded line by itself: neither a digit nor a flag.
bool isNoDigit(char c) {
    constexpr std::string_view FLAGS = "\xb7\xba\xbc\xbd\xbe";
    return toByte(c) < 0xbf && FLAGS.find(c) == std::string_view::npos;
}

bool isPair(std::string_view bytes, std::size_t at) {
    return (bytes[at] == '\xc2' || bytes[at] == '\xc3') && at + 1 < bytes.size();
}

char ofPair(std::string_view bytes, std::size_t at) {
    return static_cast<char>(bytes[at] == '\xc2' ? toByte(bytes[at + 1]) : toByte(bytes[at + 1]) + 0x40);
}

// Goes through the instructions as far as needed to tell encoded lines from labels, and hands every piece to
// piece(first, end, isEncoded).
template <class Piece>
void forPieces(std::string_view bytes, Piece piece) {
    const auto isLetter = [&](std::size_t at) {
        return at < bytes.size() && (bytes[at] & 0x5f) >= 'A' && (bytes[at] & 0x5f) <= 'Z' && toByte(bytes[at]) < 0x80;
    };
    const auto behind = [&](char end, std::size_t from) {
        const std::size_t found = bytes.find(end, from);
        return found == std::string_view::npos ? bytes.size() : found + 1;
    };
    char labelEnd = LABEL_END;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t first = at;
        if (bytes[at] == ESCAPE) {
            at = std::min(skipEscape(bytes, at), bytes.size());
        } else if (bytes[at] == '@') {
            at = behind('\n', at);
        } else if (!isLetter(at) || !isLetter(at + 1)) {
            ++at;
        } else {
            const std::array<char, 2> name = {static_cast<char>(bytes[at] & 0x5f),
                                              static_cast<char>(bytes[at + 1] & 0x5f)};
            const std::string_view word(name.data(), name.size());
            at += 2;
            if (word == "PE") {
                at = behind(';', at);
                piece(first, at, true);
                continue;
            }
            if (word == "LB") {
                at = behind(labelEnd, at);
            } else if (word == "DT" && at < bytes.size()) {
                labelEnd = bytes[at] == ';' ? LABEL_END : bytes[at];
                ++at;
            } else if (word == "CO" && at < bytes.size() && bytes[at] == '"') {
                at = behind('"', at + 1);
            }
        }
        piece(first, at, false);
    }
}

bool hasSplitLines(std::string_view bytes) {
    if (bytes.find('\xc3') == std::string_view::npos && bytes.find('\xc2') == std::string_view::npos) return false;
    if (!isUtf8(bytes)) return false;
    bool found = false;
    forPieces(bytes, [&](std::size_t first, std::size_t end, bool isEncoded) {
        for (std::size_t at = first; isEncoded && !found && at < end; ++at) {
            found = isPair(bytes, at) && isNoDigit(bytes[at + 1]);
        }
    });
    return found;
}

std::string withJoinedLines(std::string_view bytes) {
    std::string joined;
    joined.reserve(bytes.size());
    forPieces(bytes, [&](std::size_t first, std::size_t end, bool isEncoded) {
        for (std::size_t at = first; at < end; ++at) {
            if (isEncoded && isPair(bytes, at)) {
                joined.push_back(ofPair(bytes, at++));
            } else {
                joined.push_back(bytes[at]);
            }
        }
    });
    return joined;
}

// ---- all of it ----

void own(PreparedBytes& prepared, std::string bytes) {
    prepared.owned = std::make_shared<const std::string>(std::move(bytes));
    prepared.bytes = *prepared.owned;
}

void skipMarks(std::string_view& bytes) {
    constexpr std::string_view BYTE_ORDER_MARK = "\xef\xbb\xbf";
    if (bytes.starts_with(BYTE_ORDER_MARK)) bytes.remove_prefix(BYTE_ORDER_MARK.size());
    bytes.remove_prefix(std::min(bytes.find_first_not_of('\0'), bytes.size()));
}

}  // namespace

PreparedBytes prepareBytes(std::string_view file) {
    PreparedBytes prepared{file, nullptr, {}};
    if (isPacked(prepared.bytes)) own(prepared, unpack(file, prepared.remark));
    if (isWide(prepared.bytes)) own(prepared, narrow(prepared.bytes));
    skipMarks(prepared.bytes);
    // The start alone answers for nearly all files.
    if (hasParity(prepared.bytes.substr(0, PARITY_SAMPLE)) && hasParity(prepared.bytes)) {
        own(prepared, withoutParity(prepared.bytes));
        skipMarks(prepared.bytes);
    } else if (hasSplitLines(prepared.bytes)) {
        own(prepared, withJoinedLines(prepared.bytes));
    }
    return prepared;
}

}  // namespace plotter
