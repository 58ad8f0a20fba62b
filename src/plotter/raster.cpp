#include "plotter/raster.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "plotter/ascii.h"

namespace plotter {

namespace {

constexpr std::size_t RINGS_AT_ONCE = 200;  // of an area that is handed over
constexpr int BITS_OF_BYTE = 8;

uint32_t packed(Colour colour) {
    return static_cast<uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue);
}

Colour unpacked(uint32_t colour) {
    return {static_cast<uint8_t>(colour >> 16), static_cast<uint8_t>(colour >> 8), static_cast<uint8_t>(colour)};
}

}  // namespace

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
    plane_ = 0;
    runs_.clear();
    cells_.begin(place_.columns.value_or(0));
    setLeft(0);
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
    if (rows() + times > most && !(place_.rows && *place_.rows <= MOST_ROWS)) report_.meetBound("raster: rows");
    times = std::min(times, most - std::min(rows(), most));
    const std::size_t cells = runs_.empty() ? 0 : runs_.back().end / cells_.reduction();
    const std::size_t rowsOfCells = times / cells_.reduction() + 1;
    // What a row costs however empty it is, and what a cell does while colours do not change.
    constexpr double ROW = 16;
    constexpr double CELL = 0.25;
    const double steps = ROW + CELL * static_cast<double>(cells) + static_cast<double>(runs_.size());
    if (times > 0 && spend(static_cast<double>(rowsOfCells) * steps)) cells_.lay(runs_, times);
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
    cells_.setEnd(place_.columns ? std::optional(*place_.columns + left_) : std::nullopt);
}

void Raster::end() {
    if (!open_) return;
    open_ = false;
    const std::vector<PixelRectangle> found = cells_.takeRectangles(std::max<std::size_t>(rectanglesLeft_ / 2, 1));
    rectanglesLeft_ -= std::min(rectanglesLeft_, found.size());
    Area area;
    for (std::size_t i = 0; i < found.size(); ++i) {
        area.push_back(ringOf(found[i]));
        const bool isLast = i + 1 == found.size() || found[i + 1].colour != found[i].colour;
        if (isLast || area.size() == RINGS_AT_ONCE) {
            Ink ink;
            ink.pen = -1;
            ink.colour = unpacked(found[i].colour);
            draw_(area, ink);
            area.clear();
        }
    }
}

Ring Raster::ringOf(const PixelRectangle& rectangle) const {
    const double left = rectangle.left, right = rectangle.right;
    const double top = rectangle.top, bottom = rectangle.bottom;
    const Affine& map = place_.toPaper;
    return {map({left, top}), map({right, top}), map({right, bottom}), map({left, bottom})};
}

// ---- from bits to colours ----

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

// Of what red, green and blue, or their opposites, say.
uint32_t Raster::ofPrimaries(uint32_t colour) const {
    return format_.subtractive ? WHITE_PIXEL - colour : colour;
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
        return ofPrimaries(light);
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
    return ofPrimaries(light);
}

void Raster::findRunsOfPixels() {
    const std::size_t columns = columnsOfRow();
    for (std::size_t column = 0; column < columns; ++column) {
        addRun(1, colourOfBits(column));
    }
}

}  // namespace plotter
