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
    // name: of what is loaded, may be empty. The panel asks for the progress while it is shown. givenUp is called at
    // most once.
    LoadPanel(QString name, std::function<Progress()> progress, std::function<void()> givenUp);
    ~LoadPanel() { delete dialog_; }
    LoadPanel(const LoadPanel&) = delete;
    LoadPanel& operator=(const LoadPanel&) = delete;

  private:
    void tick();
    void show();
    void showProgress();

    QString name_;
    std::function<Progress()> progress_;
    std::function<void()> givenUp_;
    QTimer timer_;
    QPointer<QProgressDialog> dialog_;  // once it has taken long
};

// As its button does; for the keys that the main window gets while the panel is shown. False when none is.
bool giveUpLoading();

}  // namespace qrvel
