#include "qrvel/output/text_output.h"

#include <QPainter>
#include <QTransform>
#include <cmath>
#include <cstdlib>

#include "qrvel/output/label_face.h"
#include "qrvel/output/outline_fill.h"

namespace qrvel {

namespace {

constexpr int32_t LARGEST_KEPT = 64;  // pixels a side of a character whose picture is kept
constexpr std::size_t MOST_BYTES_KEPT = std::size_t{8} * 1024 * 1024;  // all pictures together; then they are made anew
constexpr std::size_t SET_COST = sizeof(void*) * 256;

// What a character may reach outside of its cell: accents, descenders, wide letters; in cells.
constexpr double REACH = 1.0;

bool isOutside(const PixelArea& area, double x, double cellWidth, const TextBox& box) {
    const double aside = std::abs(cellWidth) * REACH;
    const double above = box.height * (1.0 + REACH);
    return std::max(x, x + cellWidth) + aside < 0.0 || std::min(x, x + cellWidth) - aside > area.width ||
           box.y + above < 0.0 || box.y - above > area.height;
}

// A character too large to be kept.
void fillOutline(QImage& image, unsigned char character, double x, double cellWidth, const TextBox& box,
                 uint32_t colour) {
    const QTransform place(cellWidth, 0.0, 0.0, box.height, x, image.height() - static_cast<double>(box.y));
    fillOutlines(image, labelOutline(character).toSubpathPolygons(place), colour);
}

}  // namespace

TextOutput::Glyph TextOutput::makeGlyph(unsigned char character, double cellWidth, int32_t height) {
    const QPainterPath outline = QTransform::fromScale(cellWidth, height).map(labelOutline(character));
    const QRect bounds = outline.boundingRect().toAlignedRect();
    if (bounds.isEmpty()) return {};
    QImage picture(bounds.size(), QImage::Format_Alpha8);
    picture.fill(0);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-bounds.topLeft());
    painter.fillPath(outline, Qt::black);
    painter.end();

    Glyph glyph{.left = bounds.left(),
                .bottom = -(bounds.bottom() + 1),
                .width = bounds.width(),
                .height = bounds.height(),
                .coverage = {}};
    for (int row = bounds.height() - 1; row >= 0; --row) {
        const uint8_t* line = picture.constScanLine(row);
        glyph.coverage.insert(glyph.coverage.end(), line, line + glyph.width);
    }
    return glyph;
}

void TextOutput::putGlyph(const PixelArea& area, const Glyph& glyph, int64_t x, int64_t y, uint32_t colour) {
    x += glyph.left;
    y += glyph.bottom;
    const int64_t first = std::max<int64_t>(0, -x);
    const int64_t end = std::min<int64_t>(glyph.width, area.width - x);
    const int64_t top = std::min<int64_t>(glyph.height, area.height - y);
    if (first >= end) return;
    for (int64_t row = std::max<int64_t>(0, -y); row < top; ++row) {
        const uint8_t* coverage = glyph.coverage.data() + row * glyph.width;
        uint32_t* pixels = area.at(x + first, y + row) - first;
        for (int64_t column = first; column < end; ++column) {
            if (coverage[column] != 0) blendPixel(pixels[column], colour, coverage[column]);
        }
    }
}

TextOutput::GlyphSet& TextOutput::setOf(double cellWidth, int32_t height) {
    if (bytesKept_ > MOST_BYTES_KEPT) {
        sets_.clear();
        bytesKept_ = 0;
    }
    const auto width = static_cast<uint64_t>(std::lround(cellWidth * 64.0));
    const auto [place, isNew] = sets_.try_emplace(width << 32 | static_cast<uint32_t>(height));
    if (isNew) bytesKept_ += SET_COST;
    return place->second;
}

const TextOutput::Glyph& TextOutput::glyphOf(GlyphSet& set, unsigned char character, double cellWidth, int32_t height) {
    std::unique_ptr<Glyph>& glyph = set[character];
    if (!glyph) {
        glyph = std::make_unique<Glyph>(makeGlyph(character, cellWidth, height));
        bytesKept_ += sizeof(Glyph) + glyph->coverage.size();
    }
    return *glyph;
}

void TextOutput::draw(QImage& image, const PixelArea& area, std::string_view bytes, TextBox box, uint32_t colour) {
    if (bytes.empty() || box.width == 0 || box.height <= 0) return;
    const double cellWidth = box.width / static_cast<double>(bytes.size());
    const bool kept = cellWidth > 0.0 && cellWidth <= LARGEST_KEPT && box.height <= LARGEST_KEPT;
    GlyphSet* set = kept ? &setOf(cellWidth, box.height) : nullptr;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const double x = box.x + static_cast<double>(i) * cellWidth;
        if (bytes[i] == ' ' || isOutside(area, x, cellWidth, box)) continue;
        const auto character = static_cast<unsigned char>(bytes[i]);
        if (set != nullptr) {
            putGlyph(area, glyphOf(*set, character, cellWidth, box.height), std::llround(x), box.y, colour);
        } else {
            fillOutline(image, character, x, cellWidth, box, colour);
        }
    }
}

}  // namespace qrvel
