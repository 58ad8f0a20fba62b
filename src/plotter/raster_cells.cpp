#include "plotter/raster_cells.h"

#include <algorithm>
#include <utility>

namespace plotter {

namespace {

constexpr std::size_t EXACT_COLOURS = 4096;  // of a picture; with more they are rounded

// To one of 16 steps, so that mixtures of neighbouring pixels make few colours.
uint32_t rounded(uint32_t primary) {
    constexpr uint32_t STEP = 17;
    return (primary + STEP / 2) / STEP * STEP;
}

uint32_t roundedColour(uint32_t colour) {
    return rounded(colour >> 16) << 16 | rounded(colour >> 8 & 0xff) << 8 | rounded(colour & 0xff);
}

inline Darkness darknessOf(uint32_t colour) {
    return {255 - (colour >> 16), 255 - (colour >> 8 & 0xff), 255 - (colour & 0xff)};
}

inline void add(Darkness& sums, const Darkness& dark, uint64_t times) {
    for (std::size_t i = 0; i < sums.size(); ++i) {
        sums[i] += dark[i] * times;
    }
}

inline uint32_t mixtureOf(const Darkness& sums, uint64_t pixels) {
    uint32_t colour = 0;
    bool isMixture = false;
    for (const uint64_t sum : sums) {
        colour = colour << 8 | static_cast<uint32_t>(255 - sum / pixels);
        isMixture = isMixture || sum % pixels != 0;
    }
    return isMixture ? roundedColour(colour) : colour;
}

}  // namespace

void RasterCells::begin(std::size_t columns) {
    reduction_ = std::max<std::size_t>((columns + MOST_CELLS - 1) / MOST_CELLS, 1);
    rows_ = mixedRows_ = 0;
    cells_.clear();
    mixed_.clear();
    colours_.assign(1, WHITE_PIXEL);
    indices_.clear();
    indices_.emplace(WHITE_PIXEL, uint16_t{0});
}

// ---- cells ----

void RasterCells::lay(std::span<const PixelRun> runs, std::size_t times) {
    rows_ += times;
    while (times > 0) {
        const std::size_t together = std::min(times, reduction_ - mixedRows_);
        mix(runs, together);
        mixedRows_ += together;
        times -= together;
        if (mixedRows_ == reduction_) store();
    }
}

// Adds the runs to the cells under way.
void RasterCells::mix(std::span<const PixelRun> runs, std::size_t times) {
    const std::size_t width = runs.empty() ? 0 : runs.back().end;
    while ((width + reduction_ - 1) / reduction_ > MOST_CELLS) {
        coarsen();
    }
    mixed_.resize(std::max(mixed_.size(), (width + reduction_ - 1) / reduction_));
    std::size_t cell = 0;
    std::size_t cellEnd = reduction_;
    for (const PixelRun& run : runs) {
        if (run.colour == WHITE_PIXEL) continue;
        const Darkness dark = darknessOf(run.colour);
        for (std::size_t first = run.first; first < run.end;) {
            if (first >= cellEnd) {  // a division a cell at most, not one a run
                cell = first / reduction_;
                cellEnd = (cell + 1) * reduction_;
            }
            const std::size_t end = std::min<std::size_t>(run.end, cellEnd);
            add(mixed_[cell], dark, (end - first) * times);
            first = end;
        }
    }
}

// Pixels that a cell has across: the last one of a row may reach beyond the picture.
std::size_t RasterCells::columnsOf(std::size_t cell, std::size_t reduction) const {
    const std::size_t first = cell * reduction;
    const std::size_t end = end_.value_or(first + reduction);
    return std::clamp<std::size_t>(end > first ? end - first : 0, 1, reduction);
}

void RasterCells::store() {
    std::vector<uint16_t> row;
    row.reserve(mixed_.size());
    for (std::size_t cell = 0; cell < mixed_.size(); ++cell) {
        const bool isLast = cell + 1 == mixed_.size();
        const bool isSame = cell > 0 && !isLast && mixed_[cell] == mixed_[cell - 1];
        const uint64_t pixels = uint64_t{isLast ? columnsOf(cell, reduction_) : reduction_} * mixedRows_;
        row.push_back(isSame ? row.back() : indexOf(mixtureOf(mixed_[cell], pixels)));
    }
    cells_.push_back(std::move(row));
    mixed_.clear();
    mixedRows_ = 0;
    if (cells_.size() >= MOST_CELLS) coarsen();
}

uint16_t RasterCells::indexOf(uint32_t colour) {
    if (colours_.size() >= EXACT_COLOURS && !indices_.contains(colour)) {
        colour = roundedColour(colour);  // of these there are no more than 4096
    }
    const auto [at, isNew] = indices_.try_emplace(colour, static_cast<uint16_t>(colours_.size()));
    if (isNew) colours_.push_back(colour);
    return at->second;
}

// Adds a row of cells as wide as `finer` pixels to the one under way, whose cells are twice as wide.
void RasterCells::fold(const std::vector<uint16_t>& row, std::size_t finer) {
    mixed_.resize(std::max(mixed_.size(), (row.size() + 1) / 2));
    for (std::size_t cell = 0; cell < row.size(); ++cell) {
        const std::size_t columns = cell + 1 < row.size() ? finer : columnsOf(cell, finer);
        add(mixed_[cell / 2], darknessOf(colours_[row[cell]]), uint64_t{columns} * finer);
    }
}

// Four cells become one; the row under way, and one without a partner, go on in larger ones.
void RasterCells::coarsen() {
    std::vector<std::vector<uint16_t>> rows = std::exchange(cells_, {});
    const std::vector<Darkness> mixed = std::exchange(mixed_, {});
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
        add(mixed_[cell / 2], mixed[cell], 1);
    }
    mixedRows_ += mixedRows;
}

// ---- rectangles ----

std::vector<PixelRectangle> RasterCells::takeRectangles(std::size_t most) {
    if (mixedRows_ > 0) store();
    Rectangles found;
    while (!findRectangles(most, found)) {
        coarsen();
        if (mixedRows_ > 0) store();
    }
    std::ranges::stable_sort(found, {}, &PixelRectangle::colour);
    std::ranges::transform(found, found.begin(), [this](const PixelRectangle& cells) { return inPixels(cells); });
    cells_ = {};
    mixed_ = {};
    return found;
}

// Runs of equal cells, one below the other joined where they begin and end alike. False: more than `most`.
bool RasterCells::findRectangles(std::size_t most, Rectangles& found) const {
    found.clear();
    Rectangles above, here;
    for (uint32_t row = 0; row <= cells_.size(); ++row) {
        findRuns(row, here);
        auto old = above.begin();
        for (PixelRectangle& run : here) {
            for (; old != above.end() && old->left < run.left; ++old) {
                found.push_back(*old);
            }
            if (old != above.end() && old->left == run.left && old->right == run.right && old->colour == run.colour) {
                run.top = old->top;
                ++old;
            }
        }
        found.insert(found.end(), old, above.end());
        std::swap(above, here);
        if (found.size() + above.size() > most && cells_.size() > 1) return false;
    }
    return true;
}

// None behind the last row.
void RasterCells::findRuns(uint32_t row, Rectangles& runs) const {
    runs.clear();
    if (row >= cells_.size()) return;
    const std::vector<uint16_t>& cells = cells_[row];
    for (uint32_t first = 0; first < cells.size();) {
        uint32_t end = first + 1;
        while (end < cells.size() && cells[end] == cells[first]) {
            ++end;
        }
        if (cells[first] != 0) runs.push_back({cells[first], first, end, row, row + 1});
        first = end;
    }
}

// The last cell may reach beyond the picture.
PixelRectangle RasterCells::inPixels(const PixelRectangle& cells) const {
    const auto column = [&](std::size_t cell) {
        return static_cast<uint32_t>(std::min(cell * reduction_, end_.value_or(SIZE_MAX)));
    };
    const auto row = [&](std::size_t cell) { return static_cast<uint32_t>(std::min(cell * reduction_, rows_)); };
    return {colours_[cells.colour], column(cells.left), column(cells.right), row(cells.top), row(cells.bottom)};
}

}  // namespace plotter
