#include "plotter/row_decoder.h"

#include <algorithm>

#include "plotter/ascii.h"

namespace plotter {

namespace {

// What delta rows are made of: bytes, and numbers that go on over bytes of 255.
class DeltaReader {
  public:
    explicit DeltaReader(std::string_view data) : data_(data) {}

    bool atEnd() const { return at_ >= data_.size(); }
    uint8_t byte() { return atEnd() ? uint8_t{0} : toByte(data_[at_++]); }
    std::string_view bytes(std::size_t count) {
        const std::string_view taken = data_.substr(std::min(at_, data_.size()), count);
        at_ += taken.size();
        return taken;
    }
    // The number itself, and more where it is as large as its field.
    std::size_t number(std::size_t value, std::size_t largest) {
        constexpr uint8_t GOES_ON = 255;
        if (value < largest) return value;
        for (uint8_t more = GOES_ON; more == GOES_ON && !atEnd();) {
            more = byte();
            value += more;
        }
        return value;
    }

  private:
    std::string_view data_;
    std::size_t at_ = 0;
};

}  // namespace

void RowDecoder::reset(std::size_t mostBytes) {
    most_ = std::min(mostBytes, MOST_ROW_BYTES);
    row_.clear();
}

bool RowDecoder::decode(int method, std::string_view data) {
    switch (method) {
        case 0:
            row_.clear();
            append(data);
            return true;
        case 1:
            return decodeRuns(data);
        case 2:
            decodePacked(data);
            return true;
        case 3:
            decodeDelta(data);
            return true;
        case 9:
            decodeCompressedDelta(data);
            return true;
        default:
            return false;
    }
}

bool RowDecoder::decodeRuns(std::string_view data) {
    if (data.size() % 2 != 0) return false;
    row_.clear();
    for (std::size_t at = 0; at < data.size(); at += 2) {
        append(std::size_t{toByte(data[at])} + 1, toByte(data[at + 1]));
    }
    return true;
}

void RowDecoder::decodePacked(std::string_view data) {
    constexpr uint8_t NOTHING = 128;
    row_.clear();
    DeltaReader reader(data);
    while (!reader.atEnd() && row_.size() < most_) {
        const uint8_t count = reader.byte();
        if (count < NOTHING) {
            append(reader.bytes(std::size_t{count} + 1));
        } else if (count > NOTHING && !reader.atEnd()) {
            append(std::size_t{257} - count, reader.byte());
        }
    }
}

void RowDecoder::decodeDelta(std::string_view data) {
    DeltaReader reader(data);
    std::size_t at = 0;
    while (!reader.atEnd() && at < most_) {
        const uint8_t command = reader.byte();
        at += reader.number(command & 31, 31);
        const std::string_view bytes = reader.bytes(std::size_t{static_cast<std::size_t>(command) >> 5} + 1);
        overwrite(at, bytes);
        at += bytes.size();
    }
}

void RowDecoder::decodeCompressedDelta(std::string_view data) {
    constexpr unsigned REPEATED = 0x80;
    DeltaReader reader(data);
    std::size_t at = 0;
    while (!reader.atEnd() && at < most_) {
        const unsigned command = reader.byte();
        if ((command & REPEATED) == 0) {
            at += reader.number(command >> 3 & 15, 15);
            const std::string_view bytes = reader.bytes(reader.number((command & 7) + 1, 8));
            overwrite(at, bytes);
            at += bytes.size();
        } else {
            at += reader.number(command >> 5 & 3, 3);
            const std::size_t count = reader.number((command & 31) + 2, 33);
            overwrite(at, count, reader.byte());
            at += count;
        }
    }
}

void RowDecoder::append(std::string_view bytes) {
    overwrite(row_.size(), bytes);
}

void RowDecoder::append(std::size_t count, uint8_t byte) {
    overwrite(row_.size(), count, byte);
}

void RowDecoder::overwrite(std::size_t at, std::string_view bytes) {
    if (at >= most_) return;
    const std::size_t count = std::min(bytes.size(), most_ - at);
    row_.resize(std::max(row_.size(), at + count));
    std::ranges::transform(bytes.substr(0, count), row_.begin() + static_cast<std::ptrdiff_t>(at), toByte);
}

void RowDecoder::overwrite(std::size_t at, std::size_t count, uint8_t byte) {
    if (at >= most_) return;
    count = std::min(count, most_ - at);
    row_.resize(std::max(row_.size(), at + count));
    std::ranges::fill_n(row_.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::ptrdiff_t>(count), byte);
}

}  // namespace plotter
