#include "qrvel/run/window_run.h"

#include <QFileInfo>

#include "qrvel/base/application.h"
#include "qrvel/base/recent_files.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/output/child.h"
#include "qrvel/window/child_widget.h"
#include "qrvel/window/shell.h"
#include "qrvel/window/strip.h"

namespace qrvel {

// Who looks would rather see a part of a drawing than nothing.
bool WindowRun::delivered(bool whole) {
    const auto* child = handles().findFirst<Child>([](const Child&) { return true; });
    if (child == nullptr || (isUnattended() && !whole)) return false;
    application()->messages.postPaint(child->handle);
    moveViews([&](ViewMotion& view) { view.began(keepsView_); });
    return true;
}

bool WindowRun::takesPages() const {
    const DataChannel* channel = findDataChannel();
    return channel != nullptr && channel->takesPages();
}

void WindowRun::sendPage(std::string_view format, std::string_view bytes) {
    if (DataChannel* channel = findDataChannel()) channel->sendPage(format, bytes);
}

void WindowRun::waiting(const QByteArray& file, const std::function<Progress()>& progress,
                        const std::function<void()>& givenUp) {
    if (isUnattended()) return;
    const QString name = QFileInfo(QString::fromLocal8Bit(file)).fileName();
    panel_ = std::make_unique<LoadPanel>(name, progress, givenUp);
}

void WindowRun::shows(const ShownPicture& picture) {
    keepsView_ = picture.again;
    showTitle(picture);
    if (!picture.file.isEmpty() && !isUnattended()) keepRecentFile(picture.file);
    const Options& options = application()->options;
    const bool isAlone = options.channelName.isEmpty() && options.channelDescriptor < 0 && !options.frames;
    handles().forEach<Child>([&](const Child& child) {
        auto* widget = static_cast<ChildWidget*>(child.widget.data());
        if (widget != nullptr) widget->invite(isAlone && picture.isNone);
    });
    hideStrip();
}

void WindowRun::remark(const QString& text) {
    showStrip(text);
}

}  // namespace qrvel
