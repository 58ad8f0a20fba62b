#include "qrvel/window/load_panel.h"

#include <QLabel>
#include <chrono>
#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/window/shell.h"

namespace qrvel {

namespace {

constexpr auto APPEARS_AFTER = std::chrono::milliseconds(500);
constexpr auto TICK = std::chrono::milliseconds(100);
constexpr int STEPS = 1000;  // of the bar

QString textOf(const char* const* text) {
    return text != nullptr ? QString::fromUtf8(*text) : QString();
}

// It stays in front of that window, where it would not be seen behind it. Null when no window is shown yet.
QWidget* windowInSight() {
    const auto* shell = handles().findFirst<Shell>([](const Shell& candidate) { return candidate.window != nullptr; });
    return shell != nullptr && shell->window->isVisible() ? shell->window : nullptr;
}

QPointer<QProgressDialog> shownPanel;

}  // namespace

LoadPanel::LoadPanel(QString name, std::function<Progress()> progress, std::function<void()> givenUp)
    : name_(std::move(name)), progress_(std::move(progress)), givenUp_(std::move(givenUp)) {
    QObject::connect(&timer_, &QTimer::timeout, [this] { tick(); });
    timer_.start(APPEARS_AFTER);
}

void LoadPanel::tick() {
    if (dialog_ == nullptr) {
        timer_.setInterval(TICK);
        show();
    }
    showProgress();
}

void LoadPanel::show() {
    const Application* app = application();
    const QString text = textOf(app->loadText);
    auto* label = new QLabel(name_.isEmpty() ? text : text + '\n' + name_);
    label->setTextFormat(Qt::PlainText);
    dialog_ = new QProgressDialog(QString(), ownText(OwnText::GiveUp), 0, 0, windowInSight());
    dialog_->setLabel(label);
    shownPanel = dialog_;
    dialog_->setWindowTitle(textOf(app->loadTitle));
    dialog_->setAttribute(Qt::WA_ShowWithoutActivating);
    dialog_->setAutoReset(false);
    dialog_->setAutoClose(false);
    QObject::connect(dialog_, &QProgressDialog::canceled, dialog_, [this] {
        timer_.stop();
        if (const auto givenUp = std::exchange(givenUp_, nullptr)) givenUp();
    });
    dialog_->show();
}

bool giveUpLoading() {
    if (shownPanel == nullptr || !shownPanel->isVisible()) return false;
    shownPanel->cancel();
    return true;
}

void LoadPanel::showProgress() {
    const Progress progress = progress_();
    dialog_->setMaximum(progress.all > 0 ? STEPS : 0);
    if (progress.all > 0) dialog_->setValue(static_cast<int>(progress.done * STEPS / progress.all));
}

}  // namespace qrvel
