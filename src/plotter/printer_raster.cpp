// Raster in the printer's language: where it lies, and its colours.
#include <algorithm>
#include <cmath>

#include "plotter/printer.h"

namespace plotter {

namespace {

constexpr Colour RED = {255, 0, 0};
constexpr Colour GREEN = {0, 255, 0};
constexpr Colour YELLOW = {255, 255, 0};
constexpr Colour BLUE = {0, 0, 255};
constexpr Colour MAGENTA = {255, 0, 255};
constexpr Colour CYAN = {0, 255, 255};

constexpr int MOST_INDEX_BITS = 8;

// What a palette of so many bits begins with; entries beyond are black.
std::vector<Colour> additivePalette(int bits) {
    std::vector<Colour> palette = {BLACK, RED, GREEN, YELLOW, BLUE, MAGENTA, CYAN, WHITE};
    if (bits == 1) {
        palette = {WHITE, BLACK};
    } else if (bits == 2) {
        palette = {BLACK, RED, GREEN, WHITE};
    }
    palette.resize(std::size_t{1} << bits, BLACK);
    return palette;
}

std::vector<Colour> subtractivePalette(int bits) {
    std::vector<Colour> palette = {WHITE, CYAN, MAGENTA, BLUE, YELLOW, GREEN, RED, BLACK};
    if (bits == 1) {
        palette = {WHITE, BLACK};
    } else if (bits == 2) {
        palette = {WHITE, CYAN, MAGENTA, BLACK};
    }
    palette.resize(std::size_t{1} << bits, BLACK);
    return palette;
}

// The first plane is black, the others are cyan, magenta and yellow.
std::vector<Colour> blackFirstPalette() {
    std::vector<Colour> palette;
    for (const Colour colour : subtractivePalette(3)) {
        palette.push_back(colour);
        palette.push_back(BLACK);
    }
    return palette;
}

uint8_t toLevel(double value, double largest) {
    return static_cast<uint8_t>(std::lround(std::clamp(value / largest, 0.0, 1.0) * 255));
}

std::size_t toCount(double value) {
    return static_cast<std::size_t>(std::clamp(value, 0.0, static_cast<double>(MOST_COLUMNS)));
}

}  // namespace

// ---- where it lies ----

// Pixels to the logical page: along the text, or along the paper's width.
Affine Printer::rasterMap(Point origin, bool scaled) const {
    const Settings& s = settings_;
    const auto pixel = [&](double destination, double source) {
        return scaled && destination > 0 && source > 0 ? destination / source : UNITS_PER_INCH / s.resolution;
    };
    const double wide = pixel(s.destination.x, s.source.x);
    const double high = pixel(s.destination.y, s.source.y);
    int turns = s.direction;
    if (s.alongPaper) {
        turns = s.page.isLandscape() ? 3 : 0;  // the upright sheet's top is on the right when it lies
    }
    switch (turns) {
        case 1:
            return {0, high, origin.x, -wide, 0, origin.y};
        case 2:
            return {-wide, 0, origin.x, 0, -high, origin.y};
        case 3:
            return {0, -high, origin.x, wide, 0, origin.y};
        default:
            return {wide, 0, origin.x, 0, high, origin.y};
    }
}

void Printer::openRaster(bool fromCursor, bool scaled) {
    if (raster_.isOpen()) return;
    settings_.fromCursor = fromCursor;
    Point origin = settings_.cursor;
    if (!fromCursor) {
        const bool lies = settings_.alongPaper && settings_.page.isLandscape();
        origin = lies ? Point{settings_.page.logical().x, 0} : toLogical({0, turnedCursor().y});
    }
    rasterToLogical_ = rasterMap(origin, scaled);
    const Affine& map = rasterToLogical_;
    const Point zero = settings_.page.toPaper({0, 0});

    RasterPlace place;
    place.toPaper = {map.xx, map.xy, zero.x + map.dx, -map.yx, -map.yy, zero.y - map.dy};
    if (settings_.source.x > 0) place.columns = toCount(settings_.source.x);
    // What would lie beyond the edges of a page is not on it.
    const bool isUpright = map.xx > 0 && map.yy > 0;
    if (isPrinterPage_ && isUpright) {
        const Point room = settings_.page.logical() - origin;
        place.columns = place.columns ? std::min(*place.columns, toCount(std::ceil(room.x / map.xx))) : place.columns;
        place.rows = toCount(std::ceil((settings_.page.paper().y - origin.y) / map.yy));
    }
    raster_.begin(place, settings_.pixels, settings_.palette);
}

void Printer::closeRaster() {
    if (!raster_.isOpen()) return;
    raster_.end();
    settings_.cursor = rasterToLogical_({0, static_cast<double>(raster_.rows())});
}

void Printer::resetRaster() {
    closeRaster();
    settings_.compression = 0;
    settings_.fromCursor = false;
}

void Printer::addRasterRow(const EscapeField& field) {
    if (isEngraver_) {
        machine_.report().passOver("engraving (ESC*b#W)");
        return;
    }
    openRaster(settings_.fromCursor, false);
    if (field.letter == 'V') {
        raster_.addPlane(settings_.compression, field.data);
    } else {
        raster_.addRow(settings_.compression, field.data);
    }
}

void Printer::skipRasterRows(double count) {
    if (raster_.isOpen()) {
        raster_.skipRows(count);
        return;
    }
    const Affine map = rasterMap(settings_.cursor, false);
    settings_.cursor = map({0, std::clamp(count, 0.0, static_cast<double>(MOST_ROWS))});
}

// ---- colours ----

// A palette is what the pens have, too.
void Printer::setPalette(std::vector<Colour> palette) {
    settings_.palette = std::move(palette);
    machine_.state.pens.colours.clear();
    for (std::size_t pen = 0; pen < settings_.palette.size(); ++pen) {
        machine_.state.pens.colours[static_cast<int32_t>(pen)] = settings_.palette[pen];
    }
}

void Printer::simpleColour(double planes) {
    closeRaster();
    settings_.pixels = {};
    if (planes == 3) {
        setPalette(additivePalette(3));
    } else if (planes == -3) {
        setPalette(subtractivePalette(3));
    } else if (planes == -4) {
        setPalette(blackFirstPalette());
    } else {
        settings_.palette = additivePalette(1);
        return;
    }
    settings_.pixels.bits = planes == -4 ? 4 : 3;
    colourPrinter_ = true;
}

void Printer::configureImage(std::string_view data) {
    constexpr std::size_t SHORT_FORM = 6;
    constexpr int CMY = 1, LAB = 3, LUMINANCE = 4;
    if (data.size() < SHORT_FORM) return;
    closeRaster();
    const auto number = [&](std::size_t index) { return static_cast<int>(static_cast<uint8_t>(data[index])); };
    const int space = number(0);
    PixelFormat& pixels = settings_.pixels;
    pixels = {};
    pixels.encoding = static_cast<PixelFormat::Encoding>(std::clamp(number(1), 0, 3));
    pixels.subtractive = space == CMY;
    pixels.grey = space == LAB || space == LUMINANCE;
    const int indexBits = std::clamp(number(2), 1, MOST_INDEX_BITS);
    const bool isDirect = number(1) >= 2;
    pixels.bits = isDirect ? std::clamp(number(3), 1, MOST_INDEX_BITS) : indexBits;
    for (std::size_t i = 0; i < settings_.largest.size(); ++i) {
        settings_.largest[i] = std::exp2(std::clamp(number(3 + i), 1, MOST_INDEX_BITS)) - 1;
    }
    colourPrinter_ = true;
    const std::vector<Colour> palette = pixels.subtractive ? subtractivePalette(indexBits) : additivePalette(indexBits);
    if (isDirect) {
        settings_.palette = palette;  // for no pixel, and the pens go on with their own colours
    } else {
        setPalette(palette);
    }
}

void Printer::assignColour(double index) {
    const auto at = static_cast<std::size_t>(std::clamp(index, 0.0, 255.0));
    std::array<uint8_t, 3> levels{};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        levels[i] = toLevel(settings_.primaries[i], settings_.largest[i]);
        if (settings_.pixels.subtractive) levels[i] = static_cast<uint8_t>(255 - levels[i]);
    }
    settings_.primaries = {};
    if (index < 0 || at >= settings_.palette.size()) return;
    closeRaster();
    const Colour colour = {levels[0], levels[1], levels[2]};
    settings_.palette[at] = colour;
    machine_.state.pens.colours[static_cast<int32_t>(at)] = colour;
    colourPrinter_ = true;
}

void Printer::storePalette(bool push) {
    if (push && palettes_.size() < MOST_PUSHED) {
        palettes_.push_back({settings_.palette, machine_.state.pens.colours});
    } else if (!push && !palettes_.empty()) {
        settings_.palette = palettes_.back().palette;
        machine_.state.pens.colours = palettes_.back().pens;
        palettes_.pop_back();
    }
}

}  // namespace plotter
