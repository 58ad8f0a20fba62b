#include "plotter/raster.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace plotter {

namespace {

constexpr uint32_t WHITE_PIXEL = 0xffffff;
constexpr std::size_t EXACT_COLOURS = 4096;  // of a picture; with more they are rounded
constexpr std::size_t RINGS_AT_ONCE = 200;   // of an area that is handed over
constexpr int BITS_OF_BYTE = 8;

uint8_t toByte(char c) {
    return static_cast<uint8_t>(c);
}

uint32_t packed(Colour colour) {
    return static_cast<uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue);
}

Colour unpacked(uint32_t colour) {
    return {static_cast<uint8_t>(colour >> 16), static_cast<uint8_t>(colour >> 8), static_cast<uint8_t>(colour)};
}

// To one of 16 steps, so that mixtures of neighbouring pixels make few colours.
uint32_t rounded(uint32_t primary) {
    constexpr uint32_t STEP = 17;
    return (primary + STEP / 2) / STEP * STEP;
}

uint32_t roundedColour(uint32_t colour) {
    return rounded(colour >> 16) << 16 | rounded(colour >> 8 & 0xff) << 8 | rounded(colour & 0xff);
}

uint32_t colourOfSums(const std::array<uint64_t, 3>& sums, uint64_t pixels) {
    uint32_t colour = 0;
    bool isMixture = false;
    for (const uint64_t sum : sums) {
        colour = colour << 8 | static_cast<uint32_t>(255 - sum / pixels);
        isMixture = isMixture || sum % pixels != 0;
    }
    return isMixture ? roundedColour(colour) : colour;
}

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

// ---- rows ----

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

// ---- pixels ----

std::size_t PixelFormat::planes() const {
    switch (encoding) {
        case Encoding::IndexByPlane:
            return static_cast<std::size_t>(std::clamp(bits, 1, BITS_OF_BYTE));
        case Encoding::DirectByPlane:
            return 3;
        default:
            return 1;
    }
}

std::size_t PixelFormat::bitsPerPixel() const {
    switch (encoding) {
        case Encoding::IndexByPixel:
            // Packed without a gap only where they fill a byte evenly.
            return std::bit_ceil(static_cast<unsigned>(std::clamp(bits, 1, BITS_OF_BYTE)));
        case Encoding::DirectByPixel:
            return bits > 1 ? 3 * BITS_OF_BYTE : 3;
        default:
            return 1;
    }
}

Raster::Raster(Draw draw, Report& report) : draw_(std::move(draw)), report_(report) {}

void Raster::setFileSize(std::size_t bytes) {
    stepsLeft_ = MOST_STEPS + MOST_STEPS_TO_ONE * static_cast<double>(bytes);
}

void Raster::begin(const RasterPlace& place, const PixelFormat& format, std::vector<Colour> palette) {
    end();
    open_ = true;
    place_ = place;
    format_ = format;
    palette_ = std::move(palette);
    if (place_.columns) place_.columns = std::min(*place_.columns, MOST_COLUMNS);
    const std::size_t columns = place_.columns.value_or(MOST_COLUMNS);
    planes_.resize(format_.planes());
    for (RowDecoder& plane : planes_) {
        plane.reset((columns * format_.bitsPerPixel() + BITS_OF_BYTE - 1) / BITS_OF_BYTE);
    }
    plane_ = rows_ = left_ = mixedRows_ = 0;
    reduction_ = (place_.columns.value_or(0) + MOST_CELLS - 1) / MOST_CELLS;
    reduction_ = std::max<std::size_t>(reduction_, 1);
    cells_.clear();
    mixed_.clear();
    runs_.clear();
    colours_.assign(1, WHITE_PIXEL);
    indices_.clear();
    indices_.emplace(WHITE_PIXEL, uint16_t{0});
}

bool Raster::spend(double steps) {
    if (stepsLeft_ < steps) {
        report_.meetBound("raster: steps of decoding");
        return false;
    }
    stepsLeft_ -= steps;
    return true;
}

Raster::Decoded Raster::decodeInto(std::size_t plane, int method, std::string_view data) {
    if (plane >= planes_.size() || !spend(static_cast<double>(data.size()))) return Decoded::Nothing;
    if (planes_[plane].decode(method, data)) return Decoded::Row;
    if (method == 1) return Decoded::Nothing;
    report_.passOver("raster compression " + std::to_string(method));
    return Decoded::Unknown;
}

void Raster::addPlane(int method, std::string_view data) {
    if (open_) decodeInto(plane_++, method, data);
}

void Raster::addRow(int method, std::string_view data) {
    constexpr int ADAPTIVE = 5;
    if (!open_) return;
    if (method == ADAPTIVE) {
        addBlock(data);
        return;
    }
    const bool isDelta = method == 3 || method == 9;
    if (isDelta && data.empty() && planes_.size() == 1) {
        repeatRow(1);
        return;
    }
    if (plane_ >= planes_.size()) {
        finishRow();  // one plane more than there are colours for
        return;
    }
    switch (decodeInto(plane_++, method, data)) {
        case Decoded::Row:
            for (; plane_ < planes_.size(); ++plane_) {
                planes_[plane_].clear();
            }
            finishRow();
            break;
        case Decoded::Unknown:
            skipRows(1);  // the rows below stay where they belong
            break;
        case Decoded::Nothing:
            plane_ = 0;
            break;
    }
}

// Rows with a method each, or how many are empty or as the one before; in a file with planes each is one plane.
void Raster::addBlock(std::string_view data) {
    constexpr std::size_t HEAD = 3;
    while (data.size() >= HEAD) {
        const int command = toByte(data[0]);
        const std::size_t length = static_cast<std::size_t>(toByte(data[1]) << 8 | toByte(data[2]));
        data.remove_prefix(HEAD);
        if (command == 4) {
            skipRows(static_cast<double>(length));
        } else if (command == 5) {
            repeatRow(length);
        } else {
            const std::string_view row = data.substr(0, length);
            data.remove_prefix(row.size());
            if (command > 3) continue;
            decodeInto(plane_++, command, row);
            if (plane_ >= planes_.size()) finishRow();
        }
    }
}

void Raster::finishRow() {
    plane_ = 0;
    double bytes = 1;
    for (const RowDecoder& plane : planes_) {
        bytes += static_cast<double>(plane.row().size());
    }
    if (spend(bytes)) {
        findRuns();
        repeatRow(1);
    }
}

void Raster::repeatRow(std::size_t times) {
    const std::size_t most = std::min(place_.rows.value_or(MOST_ROWS), MOST_ROWS);
    if (rows_ + times > most && !(place_.rows && *place_.rows <= MOST_ROWS)) report_.meetBound("raster: rows");
    times = std::min(times, most - std::min(rows_, most));
    const std::size_t cells = runs_.empty() ? 0 : runs_.back().end / reduction_;
    const std::size_t rowsOfCells = times / reduction_ + 1;
    // What a row costs however empty it is, and what a cell does while colours do not change.
    constexpr double ROW = 16;
    constexpr double CELL = 0.25;
    const double steps = ROW + CELL * static_cast<double>(cells) + static_cast<double>(runs_.size());
    if (times > 0 && spend(static_cast<double>(rowsOfCells) * steps)) layRow(times);
}

void Raster::skipRows(double count) {
    if (!open_ || !(count > 0)) return;
    plane_ = 0;
    for (RowDecoder& plane : planes_) {
        plane.clear();
    }
    runs_.clear();
    repeatRow(static_cast<std::size_t>(std::min(count, static_cast<double>(MOST_ROWS))));
}

void Raster::setLeft(double columns) {
    left_ = columns > 0 ? static_cast<std::size_t>(std::min(columns, static_cast<double>(MOST_COLUMNS))) : 0;
}

std::size_t Raster::columnsOfRow() const {
    std::size_t bytes = 0;
    for (const RowDecoder& plane : planes_) {
        bytes = std::max(bytes, plane.row().size());
    }
    const std::size_t ofData = bytes * BITS_OF_BYTE / format_.bitsPerPixel();
    return std::min(place_.columns.value_or(ofData), MOST_COLUMNS - std::min(left_, MOST_COLUMNS));
}

uint32_t Raster::colourOfIndex(std::size_t index) const {
    return index < palette_.size() ? packed(palette_[index]) : 0;
}

void Raster::addRun(std::size_t columns, uint32_t colour) {
    if (!runs_.empty() && runs_.back().colour == colour) {
        runs_.back().end += static_cast<uint32_t>(columns);
        return;
    }
    const std::size_t first = runs_.empty() ? left_ : runs_.back().end;
    runs_.push_back({static_cast<uint32_t>(first), static_cast<uint32_t>(first + columns), colour});
}

void Raster::findRuns() {
    runs_.clear();
    switch (format_.encoding) {
        case PixelFormat::Encoding::IndexByPlane:
        case PixelFormat::Encoding::DirectByPlane:
            findRunsOfPlanes();
            break;
        default:
            findRunsOfPixels();
            break;
    }
    while (!runs_.empty() && runs_.back().colour == WHITE_PIXEL) {
        runs_.pop_back();
    }
}

// A bit of each plane is a pixel: eight at once where they are equal, as they mostly are.
void Raster::findRunsOfPlanes() {
    const bool direct = format_.encoding == PixelFormat::Encoding::DirectByPlane;
    const auto colourOf = [&](std::size_t byte, int bit) {
        std::size_t index = 0;
        for (std::size_t plane = 0; plane < planes_.size(); ++plane) {
            index |= static_cast<std::size_t>(planes_[plane].at(byte) >> bit & 1) << plane;
        }
        if (!direct) return colourOfIndex(index);
        const uint32_t light = (index & 1 ? 0xff0000u : 0) | (index & 2 ? 0xff00u : 0) | (index & 4 ? 0xffu : 0);
        return format_.subtractive ? WHITE_PIXEL - light : light;
    };
    const auto isEven = [&](const RowDecoder& plane, std::size_t byte) {
        const uint8_t bits = plane.at(byte);
        return bits == 0 || bits == 0xff;
    };
    std::size_t left = columnsOfRow();
    for (std::size_t byte = 0; left > 0; ++byte) {
        const std::size_t here = std::min<std::size_t>(left, BITS_OF_BYTE);
        left -= here;
        if (std::ranges::all_of(planes_, [&](const RowDecoder& plane) { return isEven(plane, byte); })) {
            addRun(here, colourOf(byte, 0));
            continue;
        }
        for (std::size_t bit = 0; bit < here; ++bit) {
            addRun(1, colourOf(byte, BITS_OF_BYTE - 1 - static_cast<int>(bit)));
        }
    }
}

uint32_t Raster::colourOfBits(std::size_t column) const {
    const RowDecoder& row = planes_.front();
    const std::size_t width = format_.bitsPerPixel();
    if (format_.encoding == PixelFormat::Encoding::IndexByPixel) {
        const std::size_t bit = column * width;
        const unsigned byte = row.at(bit / BITS_OF_BYTE);
        return colourOfIndex(byte >> (BITS_OF_BYTE - width - bit % BITS_OF_BYTE) & ((1u << width) - 1));
    }
    std::array<uint32_t, 3> primaries{};
    for (std::size_t i = 0; i < primaries.size(); ++i) {
        const std::size_t bit = column * 3 + i;
        primaries[i] = width > 3 ? row.at(bit) : (row.at(bit / BITS_OF_BYTE) >> (7 - bit % BITS_OF_BYTE) & 1) * 255u;
    }
    if (format_.grey) primaries[1] = primaries[2] = primaries[0];
    const uint32_t light = primaries[0] << 16 | primaries[1] << 8 | primaries[2];
    return format_.subtractive ? WHITE_PIXEL - light : light;
}

void Raster::findRunsOfPixels() {
    const std::size_t columns = columnsOfRow();
    for (std::size_t column = 0; column < columns; ++column) {
        addRun(1, colourOfBits(column));
    }
}

// ---- cells ----

void Raster::layRow(std::size_t times) {
    rows_ += times;
    while (times > 0) {
        const std::size_t together = std::min(times, reduction_ - mixedRows_);
        mix(together);
        mixedRows_ += together;
        times -= together;
        if (mixedRows_ == reduction_) store();
    }
}

// Adds the row's runs to the cells under way.
void Raster::mix(std::size_t times) {
    const std::size_t width = runs_.empty() ? 0 : runs_.back().end;
    while ((width + reduction_ - 1) / reduction_ > MOST_CELLS) {
        coarsen();
    }
    mixed_.resize(std::max(mixed_.size(), (width + reduction_ - 1) / reduction_));
    std::size_t cell = 0;
    std::size_t cellEnd = reduction_;
    for (const Run& run : runs_) {
        if (run.colour == WHITE_PIXEL) continue;
        const uint64_t dark[] = {255 - (run.colour >> 16), 255 - (run.colour >> 8 & 0xff), 255 - (run.colour & 0xff)};
        for (std::size_t first = run.first; first < run.end;) {
            if (first >= cellEnd) {  // a division a cell at most, not one a run
                cell = first / reduction_;
                cellEnd = (cell + 1) * reduction_;
            }
            const std::size_t end = std::min<std::size_t>(run.end, cellEnd);
            for (std::size_t i = 0; i < 3; ++i) {
                mixed_[cell][i] += dark[i] * (end - first) * times;
            }
            first = end;
        }
    }
}

// Pixels that a cell has across: the last one of a row may reach beyond the picture.
std::size_t Raster::columnsOf(std::size_t cell, std::size_t reduction) const {
    const std::size_t first = cell * reduction;
    const std::size_t end = place_.columns ? *place_.columns + left_ : first + reduction;
    return std::clamp<std::size_t>(end > first ? end - first : 0, 1, reduction);
}

void Raster::store() {
    std::vector<uint16_t> row;
    row.reserve(mixed_.size());
    for (std::size_t cell = 0; cell < mixed_.size(); ++cell) {
        const bool isLast = cell + 1 == mixed_.size();
        const bool isSame = cell > 0 && !isLast && mixed_[cell] == mixed_[cell - 1];
        const uint64_t pixels = uint64_t{isLast ? columnsOf(cell, reduction_) : reduction_} * mixedRows_;
        row.push_back(isSame ? row.back() : indexOf(colourOfSums(mixed_[cell], pixels)));
    }
    cells_.push_back(std::move(row));
    mixed_.clear();
    mixedRows_ = 0;
    if (cells_.size() >= MOST_CELLS) coarsen();
}

uint16_t Raster::indexOf(uint32_t colour) {
    if (colours_.size() >= EXACT_COLOURS && !indices_.contains(colour)) {
        colour = roundedColour(colour);  // of these there are no more than 4096
    }
    const auto [at, isNew] = indices_.try_emplace(colour, static_cast<uint16_t>(colours_.size()));
    if (isNew) colours_.push_back(colour);
    return at->second;
}

// Adds a row of cells as wide as `finer` pixels to the one under way, whose cells are twice as wide.
void Raster::fold(const std::vector<uint16_t>& row, std::size_t finer) {
    mixed_.resize(std::max(mixed_.size(), (row.size() + 1) / 2));
    for (std::size_t cell = 0; cell < row.size(); ++cell) {
        const std::size_t columns = cell + 1 < row.size() ? finer : columnsOf(cell, finer);
        const uint32_t colour = colours_[row[cell]];
        Sums& sums = mixed_[cell / 2];
        sums[0] += (255 - (colour >> 16)) * uint64_t{columns} * finer;
        sums[1] += (255 - (colour >> 8 & 0xff)) * uint64_t{columns} * finer;
        sums[2] += (255 - (colour & 0xff)) * uint64_t{columns} * finer;
    }
}

// Four cells become one; the row under way, and one without a partner, go on in larger ones.
void Raster::coarsen() {
    std::vector<std::vector<uint16_t>> rows = std::exchange(cells_, {});
    const std::vector<Sums> mixed = std::exchange(mixed_, {});
    const std::size_t mixedRows = std::exchange(mixedRows_, 0);
    const std::size_t finer = reduction_;
    reduction_ *= 2;
    for (std::vector<uint16_t>& row : rows) {
        fold(row, finer);
        row = {};
        mixedRows_ += finer;
        if (mixedRows_ == reduction_) store();
    }
    mixed_.resize(std::max(mixed_.size(), (mixed.size() + 1) / 2));
    for (std::size_t cell = 0; cell < mixed.size(); ++cell) {
        for (std::size_t i = 0; i < 3; ++i) {
            mixed_[cell / 2][i] += mixed[cell][i];
        }
    }
    mixedRows_ += mixedRows;
}

// ---- rectangles ----

void Raster::end() {
    if (!open_) return;
    open_ = false;
    if (mixedRows_ > 0) store();
    const std::size_t most = std::max<std::size_t>(rectanglesLeft_ / 2, 1);
    std::vector<Rectangle> found;
    while (!findRectangles(most, found)) {
        coarsen();
        if (mixedRows_ > 0) store();
    }
    rectanglesLeft_ -= std::min(rectanglesLeft_, found.size());
    drawRectangles(found);
    cells_ = {};
    mixed_ = {};
}

// Runs of equal cells, one below the other joined where they begin and end alike. False: more than `most`.
bool Raster::findRectangles(std::size_t most, std::vector<Rectangle>& found) const {
    found.clear();
    std::vector<Rectangle> above;
    std::vector<Rectangle> here;
    const auto close = [&](const Rectangle& rectangle) { found.push_back(rectangle); };
    for (uint32_t row = 0; row <= cells_.size(); ++row) {
        const std::span<const uint16_t> cells =
            row < cells_.size() ? std::span<const uint16_t>(cells_[row]) : std::span<const uint16_t>();
        auto old = above.begin();
        here.clear();
        for (uint32_t first = 0; first < cells.size();) {
            uint32_t end = first + 1;
            while (end < cells.size() && cells[end] == cells[first]) {
                ++end;
            }
            Rectangle run = {cells[first], first, end, row, row + 1};
            first = end;
            if (run.colour == 0) continue;
            for (; old != above.end() && old->left < run.left; ++old) {
                close(*old);
            }
            if (old != above.end() && old->left == run.left && old->right == run.right && old->colour == run.colour) {
                run.top = old->top;
                ++old;
            }
            here.push_back(run);
        }
        std::for_each(old, above.end(), close);
        std::swap(above, here);
        if (found.size() + above.size() > most && cells_.size() > 1) return false;
    }
    return true;
}

Ring Raster::ringOf(const Rectangle& rectangle) const {
    // The last cell may reach beyond the picture.
    const auto toColumn = [&](uint32_t cell) {
        const std::size_t column = cell * reduction_;
        return static_cast<double>(place_.columns ? std::min(column, *place_.columns + left_) : column);
    };
    const auto toRow = [&](uint32_t cell) { return static_cast<double>(std::min(cell * reduction_, rows_)); };
    const double left = toColumn(rectangle.left), right = toColumn(rectangle.right);
    const double top = toRow(rectangle.top), bottom = toRow(rectangle.bottom);
    const Affine& map = place_.toPaper;
    return {map({left, top}), map({right, top}), map({right, bottom}), map({left, bottom})};
}

void Raster::drawRectangles(std::vector<Rectangle>& found) {
    std::ranges::stable_sort(found, {}, &Rectangle::colour);
    Area area;
    for (std::size_t i = 0; i < found.size(); ++i) {
        area.push_back(ringOf(found[i]));
        const bool isLast = i + 1 == found.size() || found[i + 1].colour != found[i].colour;
        if (isLast || area.size() == RINGS_AT_ONCE) {
            Ink ink;
            ink.pen = -1;
            ink.colour = unpacked(colours_[found[i].colour]);
            draw_(area, ink);
            area.clear();
        }
    }
}

}  // namespace plotter
