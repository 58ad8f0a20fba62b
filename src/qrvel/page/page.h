// The output device of a sheet of paper. It draws nothing itself: it keeps the drawing until it is written.
//
// Its pixels are the units of the sheet. No background is filled, for paper is white; the box that clears a window is
// forgotten with the reset that follows it.
#pragma once

#include "qrvel/base/paper.h"
#include "qrvel/output/output_device.h"
#include "qrvel/page/recording.h"

namespace qrvel {

// Bytes that the pages of one file may take together: an eighth of the memory, for the picture that they come from and
// the file that they become need some, too. KEL_MOST_PAGE_BYTES in the environment asks for another number.
std::size_t mostPageBytes();

class Page final : public OutputDevice {
  public:
    // mostBytes: of its drawing.
    explicit Page(const SheetLayout& sheet, std::size_t mostBytes = mostPageBytes())
        : sheet_(sheet), mostBytes_(mostBytes), recording_(sheet) {}

    const SheetLayout& sheet() const { return sheet_; }
    const Recording& recording() const { return recording_; }
    // Whether the drawing was too large to be kept. What has been kept is gone then.
    bool isTooLarge() const { return tooLarge_; }

    QSize size() const override { return {sheet_.areaWidth, sheet_.areaHeight}; }
    void reset() override;
    void endPaint() override {}
    void line(OUTPoint from, OUTPoint to) override;
    void wideLine(std::span<const OUTPoint> points, int32_t width) override;
    void outline(const PixelBox& box) override;
    void fill(const PixelBox& box) override;
    void polygons(std::span<const OUTPoint> points, std::span<const int32_t> counts) override;
    void text(OUTPoint baseline, std::string_view bytes) override;
    void trackBox(const PixelBox& /*box*/) override {}

  private:
    template <class Keep>
    void keep(Keep keep);

    SheetLayout sheet_;
    std::size_t mostBytes_;
    Recording recording_;
    bool tooLarge_ = false;
};

}  // namespace qrvel
