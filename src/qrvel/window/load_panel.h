// Tells the user that data is being loaded when that takes long, and offers to give up.
#pragma once

#include <QPointer>
#include <QProgressDialog>
#include <QTimer>
#include <functional>

namespace qrvel {

struct LoadProgress {
    qint64 done;  // bytes
    qint64 all;   // 0: not known
};

class LoadPanel {
  public:
    // The panel asks for the progress while it is shown. givenUp is called at most once.
    LoadPanel(std::function<LoadProgress()> progress, std::function<void()> givenUp);
    ~LoadPanel() { delete dialog_; }
    LoadPanel(const LoadPanel&) = delete;
    LoadPanel& operator=(const LoadPanel&) = delete;

  private:
    void tick();
    void show();
    void showProgress();

    std::function<LoadProgress()> progress_;
    std::function<void()> givenUp_;
    QTimer timer_;
    QPointer<QProgressDialog> dialog_;  // once it has taken long
};

}  // namespace qrvel
