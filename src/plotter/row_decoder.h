// A row of a raster picture, or one plane of it, out of its compressed bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace plotter {

// Bytes of a row, or of one of its planes.
inline constexpr std::size_t MOST_ROW_BYTES = std::size_t{1} << 20;

// One row or plane, decoded over the one before it.
class RowDecoder {
  public:
    // It begins as zeros; at most so many bytes, the rest is dropped.
    void reset(std::size_t mostBytes);
    void clear() { row_.clear(); }

    // By methods 0, 1, 2, 3 and 9. False when the method is another one, or the data make no row: it stays as it was.
    bool decode(int method, std::string_view data);

    // As far as data came; behind it are zeros.
    std::span<const uint8_t> row() const { return row_; }
    uint8_t at(std::size_t index) const { return index < row_.size() ? row_[index] : uint8_t{0}; }

  private:
    bool decodeRuns(std::string_view data);
    void decodePacked(std::string_view data);
    void decodeDelta(std::string_view data);
    void decodeCompressedDelta(std::string_view data);
    void append(std::string_view bytes);
    void append(std::size_t count, uint8_t byte);
    void overwrite(std::size_t at, std::string_view bytes);
    void overwrite(std::size_t at, std::size_t count, uint8_t byte);

    std::vector<uint8_t> row_;
    std::size_t most_ = MOST_ROW_BYTES;
};

}  // namespace plotter
