// Tells the user that data is being loaded when that takes long, and offers to give up.
#pragma once

#include <QPointer>
#include <QProgressDialog>
#include <QTimer>
#include <functional>

#include "qrvel/base/run.h"

namespace qrvel {

class LoadPanel {
  public:
    // The panel asks for the progress while it is shown. givenUp is called at most once.
    LoadPanel(std::function<Progress()> progress, std::function<void()> givenUp);
    ~LoadPanel() { delete dialog_; }
    LoadPanel(const LoadPanel&) = delete;
    LoadPanel& operator=(const LoadPanel&) = delete;

  private:
    void tick();
    void show();
    void showProgress();

    std::function<Progress()> progress_;
    std::function<void()> givenUp_;
    QTimer timer_;
    QPointer<QProgressDialog> dialog_;  // once it has taken long
};

}  // namespace qrvel
