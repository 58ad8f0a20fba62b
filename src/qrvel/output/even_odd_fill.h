// Areas bounded by polygons, straight into the pixels of a surface.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "qrvel/output/pixel_area.h"
#include "toolkit/out.h"

namespace qrvel {

class EvenOddFill {
  public:
    // Fills polygons as one area: the pixels with an odd number of sides to their left. They stand one after the other
    // in `points`, as many points each as `counts` says; the last is joined to the first. A pixel right on a left or
    // lower side belongs to the area, one on a right or upper side does not, so areas side by side do not overlap.
    // Any coordinates will do: the time grows with the points, and with the rows of the surface that the sides cross.
    void fill(const PixelArea& area, std::span<const OUTPoint> points, std::span<const int32_t> counts,
              uint32_t colour);

  private:
    void fitTo(const PixelArea& area);
    void addSide(const PixelArea& area, OUTPoint from, OUTPoint to);
    void change(int64_t column, int64_t row);
    void fillRow(const PixelArea& area, int64_t row, uint32_t colour);

    // One bit a pixel, and one behind each row: where going to the right leads into the area or out of it. All are
    // clear between two fills.
    std::vector<uint64_t> changes_;
    std::size_t wordsARow_ = 0;
    // What the sides have touched.
    int64_t bottom_ = 0, top_ = -1;  // rows
    int64_t left_ = 0, right_ = -1;  // columns
};

}  // namespace qrvel
