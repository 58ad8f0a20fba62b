#include "qrvel/window/strip.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QToolTip>
#include <algorithm>
#include <chrono>

#include "qrvel/base/application.h"
#include "qrvel/window/shell.h"

namespace qrvel {

namespace {

constexpr auto TO_READ_IT = std::chrono::seconds(8);
constexpr int MARGIN = 6;  // logical pixels around the text

class Strip final : public QLabel {
  public:
    explicit Strip(QWidget* drawing) : QLabel(drawing) {
        setTextFormat(Qt::PlainText);  // a file's bytes may be in it
        setWordWrap(true);
        setMargin(MARGIN);
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::ArrowCursor);
        setPalette(QToolTip::palette());
        setBackgroundRole(QPalette::ToolTipBase);
        setForegroundRole(QPalette::ToolTipText);
        setAutoFillBackground(true);
        time_.setSingleShot(true);
        connect(&time_, &QTimer::timeout, this, &QWidget::hide);
        drawing->installEventFilter(this);
    }

    void tell(const QString& text) {
        setText(text);
        setAccessibleName(text);
        place();
        raise();
        show();
        time_.start(TO_READ_IT);
        QAccessibleEvent said(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&said);
    }

    bool eventFilter(QObject* /*drawing*/, QEvent* event) override {
        if (event->type() == QEvent::Resize) place();
        return false;
    }

  protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { hide(); }

  private:
    void place() {
        const QSize room = parentWidget()->size();
        const int height = std::min(heightForWidth(room.width()), room.height());
        setGeometry(0, room.height() - height, room.width(), height);
    }

    QTimer time_;
};

QPointer<Strip> strip;  // of the shell's inside, which owns it

}  // namespace

void showStrip(const QString& text) {
    const auto* inside = handles().findFirst<Container>([](const Container& found) { return found.widget != nullptr; });
    if (inside == nullptr || isUnattended()) return;
    if (strip == nullptr) strip = new Strip(inside->widget);
    strip->tell(text);
}

void hideStrip() {
    if (strip != nullptr) strip->hide();
}

}  // namespace qrvel
