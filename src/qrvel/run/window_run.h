// Pictures are shown in a window.
#pragma once

#include <memory>

#include "qrvel/base/run.h"
#include "qrvel/window/load_panel.h"

namespace qrvel {

class WindowRun : public Run {
  public:
    bool delivered(bool whole) override;
    bool takesPages() const override;
    void sendPage(std::string_view format, std::string_view bytes) override;
    void waiting(const QByteArray& file, const std::function<Progress()>& progress,
                 const std::function<void()>& givenUp) override;
    void waited() override { panel_.reset(); }
    void shows(const ShownPicture& picture) override;
    void remark(const QString& text) override;

  private:
    std::unique_ptr<LoadPanel> panel_;
    bool keepsView_ = false;  // of the picture before
};

}  // namespace qrvel
