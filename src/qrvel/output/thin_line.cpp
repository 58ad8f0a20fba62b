#include "qrvel/output/thin_line.h"

#include <utility>

namespace qrvel {

namespace {

// A line seen along its longer (major) axis, walked in growing major direction. Step i of `length` lies at
//     major + i,  minor ± floor((i * rise + length / 2) / length)
// Both differences fit into 32 bits without a sign, so every product here fits into 64.
struct Course {
    int64_t major;
    int64_t minor;
    uint64_t length;
    uint64_t rise;
    bool falling;
    int64_t majorSize;  // of the area along that axis
    int64_t minorSize;
};

struct Steps {
    int64_t first;
    int64_t last;
};

Course courseOf(const PixelArea& area, int64_t x1, int64_t y1, int64_t x2, int64_t y2, bool alongX) {
    if (!alongX) {
        std::swap(x1, y1);
        std::swap(x2, y2);
    }
    if (x1 > x2) {
        std::swap(x1, x2);
        std::swap(y1, y2);
    }
    const bool falling = y2 < y1;
    return {.major = x1,
            .minor = y1,
            .length = static_cast<uint64_t>(x2 - x1),
            .rise = static_cast<uint64_t>(falling ? y1 - y2 : y2 - y1),
            .falling = falling,
            .majorSize = alongX ? area.width : area.height,
            .minorSize = alongX ? area.height : area.width};
}

// The first step at which the line has moved `offset` (1 to rise) pixels along the minor axis.
int64_t firstStepAt(const Course& course, int64_t offset) {
    const uint64_t reach = static_cast<uint64_t>(offset) * course.length - course.length / 2;
    return static_cast<int64_t>(reach / course.rise + (reach % course.rise != 0 ? 1 : 0));
}

// The steps that lie inside the area; first > last when there are none. rise is above 0.
Steps visibleSteps(const Course& course) {
    const int64_t least = course.falling ? course.minor - (course.minorSize - 1) : -course.minor;
    const int64_t most = course.falling ? course.minor : course.minorSize - 1 - course.minor;
    const auto rise = static_cast<int64_t>(course.rise);
    if (most < 0 || least > rise) return {.first = 1, .last = 0};

    Steps steps{.first = std::max<int64_t>(0, -course.major),
                .last = std::min(static_cast<int64_t>(course.length), course.majorSize - 1 - course.major)};
    if (least > 0) steps.first = std::max(steps.first, firstStepAt(course, least));
    if (most < rise) steps.last = std::min(steps.last, firstStepAt(course, most + 1) - 1);
    return steps;
}

// Sets `more` + 1 pixels: always one ahead, and one aside whenever the rest has gathered a length.
void walk(uint32_t* pixel, std::ptrdiff_t ahead, std::ptrdiff_t aside, int64_t more, uint64_t rest, uint64_t rise,
          uint64_t length, uint32_t colour) {
    for (; more > 0; --more) {
        *pixel = colour;
        rest += rise;
        const bool turn = rest >= length;
        rest -= turn ? length : 0;
        pixel += ahead + (turn ? aside : 0);
    }
    *pixel = colour;
}

}  // namespace

void drawThinLineCut(const PixelArea& area, int32_t x1, int32_t y1, int32_t x2, int32_t y2, uint32_t colour) {
    if (x1 == x2 || y1 == y2) {
        fillBox(area, std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2), colour);
        return;
    }
    const bool alongX = std::abs(int64_t{x2} - x1) >= std::abs(int64_t{y2} - y1);
    const Course course = courseOf(area, x1, y1, x2, y2, alongX);
    const Steps steps = visibleSteps(course);
    if (steps.first > steps.last) return;
    const uint64_t moved = course.length / 2 + static_cast<uint64_t>(steps.first) * course.rise;
    const auto offset = static_cast<int64_t>(moved / course.length);
    const int64_t major = course.major + steps.first;
    const int64_t minor = course.falling ? course.minor - offset : course.minor + offset;
    uint32_t* pixel = alongX ? area.at(major, minor) : area.at(minor, major);
    const std::ptrdiff_t upward = alongX ? area.stride : 1;
    walk(pixel, alongX ? 1 : area.stride, course.falling ? -upward : upward, steps.last - steps.first,
         moved % course.length, course.rise, course.length, colour);
}

// Nearly every line of a plot is one of these. Its way aside is a 32.32 fixed-point number, rounded up, which is exact
// on areas of up to 32767 pixels a side; so no pixel waits for the one before it.
void drawThinLineInside(const PixelArea& area, int32_t x1, int32_t y1, int32_t x2, int32_t y2, uint32_t colour) {
    const int32_t width = x2 - x1;
    const int32_t height = y2 - y1;
    const bool alongX = std::abs(width) >= std::abs(height);
    const bool fromFirst = (alongX ? width : height) > 0;
    const auto length = static_cast<uint32_t>(std::abs(alongX ? width : height));
    const auto rise = static_cast<uint32_t>(std::abs(alongX ? height : width));
    const std::ptrdiff_t ahead = alongX ? 1 : area.stride;
    const std::ptrdiff_t upward = alongX ? area.stride : 1;
    const std::ptrdiff_t aside = (width < 0) == (height < 0) ? upward : -upward;
    const uint64_t step = ((uint64_t{rise} << 32) + length) / std::max(length, 1U);
    uint64_t offset = uint64_t{1} << 31;
    uint32_t* pixel = fromFirst ? area.at(x1, y1) : area.at(x2, y2);
    for (uint32_t more = length + 1; more > 0; --more) {
        pixel[static_cast<std::ptrdiff_t>(offset >> 32) * aside] = colour;
        offset += step;
        pixel += ahead;
    }
}

}  // namespace qrvel
