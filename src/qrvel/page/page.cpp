#include "qrvel/page/page.h"

#include <algorithm>
#include <new>

#include "system/memory.h"

namespace qrvel {

namespace {

QRectF rectangleOf(const PixelBox& box) {
    return {static_cast<double>(box.x), static_cast<double>(box.y), static_cast<double>(box.width),
            static_cast<double>(box.height)};
}

// A corner of a box; far outside of any sheet all are alike.
OUTPoint corner(int64_t x, int64_t y) {
    const auto near = [](int64_t value) {
        return static_cast<int32_t>(
            std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
    };
    return {.x = near(x), .y = near(y)};
}

}  // namespace

std::size_t mostPageBytes() {
    constexpr std::size_t PART_OF_MEMORY = 8;
    const auto asked = qgetenv("KEL_MOST_PAGE_BYTES").toULongLong();
    return asked > 0 ? asked : kelsystem::memoryInAll() / PART_OF_MEMORY;
}

template <class Keep>
void Page::keep(Keep keep) {
    if (tooLarge_) return;
    try {
        keep();
        if (recording_.bytes() > mostBytes_) throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
        tooLarge_ = true;
        recording_ = Recording(sheet_);
    }
}

void Page::reset() {
    OutputDevice::reset();
    recording_.clear();
}

void Page::line(OUTPoint from, OUTPoint to) {
    keep([&] { recording_.line(from, to, 0, attributes.lineColour); });
}

void Page::wideLine(std::span<const OUTPoint> points, int32_t width) {
    keep([&] {
        OUTPoint from = points.front();
        for (const OUTPoint to : points.size() > 1 ? points.subspan(1) : points) {
            recording_.line(from, to, width, attributes.lineColour);
            from = to;
        }
    });
}

void Page::outline(const PixelBox& box) {
    const OUTPoint corners[] = {corner(box.x, box.y), corner(box.x + box.width, box.y),
                                corner(box.x + box.width, box.y + box.height), corner(box.x, box.y + box.height)};
    OUTPoint from = corners[3];
    for (const OUTPoint to : corners) {
        line(from, to);
        from = to;
    }
}

void Page::fill(const PixelBox& box) {
    keep([&] { recording_.rectangle(rectangleOf(box), attributes.fillColour); });
}

void Page::polygons(std::span<const OUTPoint> points, std::span<const int32_t> counts) {
    keep([&] { recording_.area(points, counts, attributes.fillColour); });
}

void Page::text(OUTPoint baseline, std::string_view bytes) {
    keep([&] { recording_.text(baseline, attributes.textWidth, attributes.textHeight, bytes, attributes.lineColour); });
}

}  // namespace qrvel
