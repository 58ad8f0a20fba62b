#include "plotter/plain_writer.h"

#include <algorithm>
#include <charconv>

#include "plotter/areas.h"
#include "plotter/units.h"

namespace plotter {

namespace {

constexpr int32_t PAIRS_IN_A_COMMAND = 127;  // the viewer takes 255 parameters
constexpr int32_t WIDEST = 32000;            // output units, of the viewer's 16 bits
constexpr std::size_t PIECE = 65536;
constexpr std::size_t ROOM = 256;           // longer than all that is written between two looks at what is left
constexpr std::size_t LONGEST_NUMBER = 12;  // of 32 bits, with the sign

// Half away from zero.
int32_t rounded(double value) {
    return static_cast<int32_t>(value < 0 ? value - 0.5 : value + 0.5);
}

}  // namespace

PlainWriter::PlainWriter(const Page& page, const Sink& sink)
    : page_(page), sink_(sink), buffer_(PIECE + ROOM), next_(buffer_.data()) {
    setReach();
}

// What was measured with few chords is a little larger with many. A chord that was too far away to be measured may
// still have points that are not: they must neither make the drawing small nor go beyond 32 bits.
void PlainWriter::setReach() {
    const Box& measured = page_.extents;
    if (measured.empty()) return;
    const double beyond = std::max({measured.width(), measured.height(), 1.0}) / 8;
    const auto bounded = [&](double value) { return std::clamp(value * page_.factor, -FARTHEST, FARTHEST); };
    lowest_ = {bounded(measured.low.x - beyond), bounded(measured.low.y - beyond)};
    highest_ = {bounded(measured.high.x + beyond), bounded(measured.high.y + beyond)};
}

void PlainWriter::begin() {
    text("IN;\n");
    for (const Palette::Pen& pen : page_.palette->pens()) {
        if (!pen.ownColour) continue;
        text("PC");
        for (const int32_t value : {pen.number, int32_t{pen.colour.red}, int32_t{pen.colour.green}}) {
            number(value);
            text(",");
        }
        number(pen.colour.blue);
        text(";\n");
    }
}

bool PlainWriter::end() {
    closeChain();
    flush();
    return !stopped_;
}

// What lies behind the last page that is counted is drawn on it.
void PlainWriter::nextPage() {
    closeChain();
}

// ---- text -----------------------------------------------------------------------------------------------------------

void PlainWriter::flush() {
    const auto size = static_cast<std::size_t>(next_ - buffer_.data());
    if (!stopped_ && size != 0) stopped_ = !sink_({buffer_.data(), size});
    written_ += size;
    next_ = buffer_.data();
}

// Asked once a point: what comes of one is shorter than the room.
void PlainWriter::makeRoom() {
    if (next_ >= buffer_.data() + PIECE) flush();
}

void PlainWriter::text(std::string_view text) {
    makeRoom();
    next_ = std::ranges::copy(text, next_).out;
}

void PlainWriter::number(int32_t number) {
    next_ = std::to_chars(next_, next_ + LONGEST_NUMBER, number).ptr;
}

void PlainWriter::pair(Place place) {
    makeRoom();
    number(place.x);
    character(',');
    number(place.y);
}

// ---- pen ------------------------------------------------------------------------------------------------------------

PlainWriter::Place PlainWriter::placeOf(Point paper) const {
    return {rounded(std::clamp(paper.x * page_.factor, lowest_.x, highest_.x)),
            rounded(std::clamp(paper.y * page_.factor, lowest_.y, highest_.y))};
}

void PlainWriter::takePen(const Ink& ink) {
    if (pen_ != 0 && ink == ink_) return;
    ink_ = ink;
    const int32_t pen = page_.palette->penOf(keyOf(ink, page_.coloursChosen));
    if (pen != pen_) {
        closeChain();
        text("SP");
        number(pen);
        text(";");
        pen_ = pen;
    }
    const int32_t width = std::min(rounded(std::min(ink.width * page_.factor, double{WIDEST})), WIDEST);
    int32_t& last = widths_[pen];
    if (width == last) return;
    last = width;
    closeChain();
    // A command says millimetres, of 40 units, and the viewer cuts off what is left: a fifth of a unit more is none
    // less.
    text("PW");
    next_ = std::to_chars(next_, next_ + ROOM / 2, width == 0 ? 0.0 : width / 40.0 + 0.005, std::chars_format::fixed, 3)
                .ptr;
    text(",");
    number(pen);
    text(";\n");
}

void PlainWriter::closeChain() {
    if (pairs_ == 0) return;
    pairs_ = 0;
    text(";\n");
}

void PlainWriter::moveTo(Place place) {
    if (placed_ && pairs_ != 0 && place == place_) return;
    closeChain();
    text("PU");
    pair(place);
    character(';');
    place_ = place;
    placed_ = true;
}

void PlainWriter::drawTo(Place place) {
    if (pairs_ == PAIRS_IN_A_COMMAND) {
        pairs_ = 0;
        text(";\n");
    }
    if (pairs_ == 0) {
        text("PD");
    } else {
        character(',');
    }
    pair(place);
    ++pairs_;
    place_ = place;
}

void PlainWriter::line(std::span<const Point> points, const Ink& ink) {
    if (!isWritten() || points.empty()) return;
    takePen(ink);
    const Place first = placeOf(points.front());
    moveTo(first);
    bool drawn = false;
    for (const Point point : points.subspan(1)) {
        const Place place = placeOf(point);
        if (place == place_) continue;
        drawTo(place);
        drawn = true;
    }
    if (!drawn) drawTo(first);
}

// ---- areas ----------------------------------------------------------------------------------------------------------

void PlainWriter::area(const Area& rings, const Ink& ink) {
    if (!isWritten()) return;
    takePen(ink);
    closeChain();
    cutArea(rings, {MOST_RING_POINTS, MOST_RINGS, 1 / page_.factor}, [this](const Area& piece) { fill(piece); });
}

// An area that rounding leaves nothing of is still seen, as a line.
void PlainWriter::fill(const Area& rings) {
    bool open = false;
    for (const Ring& ring : rings) {
        if (ring.empty()) continue;
        if (open) text("PM1;");
        const Place first = placeOf(ring.front());
        text("PU");
        pair(first);
        text(open ? ";" : ";PM0;");
        place_ = first;
        placed_ = open = true;
        for (const Point point : std::span(ring).subspan(1)) {
            const Place place = placeOf(point);
            if (place != place_) drawTo(place);
        }
        if (pairs_ == 0) drawTo(first);
        pairs_ = 0;
        text(";");
    }
    if (open) text("PM2;FP;\n");
    placed_ = false;
}

}  // namespace plotter
