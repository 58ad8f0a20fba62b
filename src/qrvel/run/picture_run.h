// --picture: the first picture goes to a file instead of a window, and the application ends.
#pragma once

#include "qrvel/run/window_run.h"

namespace qrvel {

class PictureRun final : public WindowRun {
  public:
    // Not before the picture is written is all well.
    int32_t status() const override { return written_ ? 0 : 1; }
    void failed() override;
    bool delivered(bool whole) override { return whole && WindowRun::delivered(whole); }
    void painted(WHandle child) override;

  private:
    bool written_ = false;
};

}  // namespace qrvel
