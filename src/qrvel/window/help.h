// Help by topic: HTML pages that the library carries with it, in a window of their own.
#pragma once

#include <QPointer>
#include <QTextBrowser>
#include <QWidget>

#include "qrvel/base/handles.h"

namespace qrvel {

// An application's name, under which its help is asked for.
struct HelpName : Object {
    static constexpr Kind KIND = Kind::HelpName;
};

class HelpWindow : public QWidget {
  public:
    explicit HelpWindow(const QString& title);

    // Shows a page, in front of the other windows.
    void open(const QString& page);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QTextBrowser* pages_;
};

struct Help : Object {
    static constexpr Kind KIND = Kind::Help;
    explicit Help(QString shown) : title(std::move(shown)) {}
    ~Help() override { delete window; }

    QString title;
    QPointer<HelpWindow> window;  // made when it is asked for first
};

}  // namespace qrvel
