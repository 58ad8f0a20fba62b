#include "qrvel/run/picture_run.h"

#include <QBuffer>
#include <string>

#include "qrvel/base/application.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/output/child.h"
#include "system/whole_file.h"

namespace qrvel {

namespace {

// Answers what went wrong, or nothing.
std::string save(const QImage& image, const QByteArray& name) {
    QBuffer content;
    content.open(QBuffer::WriteOnly);
    if (!image.save(&content, "PNG")) return "no PNG";
    return kelsystem::writeWhole(name.toStdString(),
                                 {content.data().constData(), static_cast<std::size_t>(content.size())});
}

}  // namespace

void PictureRun::painted(WHandle child) {
    const Application* app = application();
    if (app->state.quit != 0) return;
    const DataChannel* channel = findDataChannel();
    const auto* found = handles().find<Child>(child);
    if (channel == nullptr || !channel->hasDelivered() || found == nullptr) return;
    if (!found->surface || !found->surface->isComplete()) return;
    const std::string problem = app->filesRead.hold(app->options.picture.toStdString())
                                    ? qPrintable(ownText(OwnText::IsSource))
                                    : save(found->surface->shown(), app->options.picture);
    if (!problem.empty()) {
        showNotice(ownText(OwnText::CannotWrite)
                       .arg(QString::fromLocal8Bit(app->options.picture), QString::fromStdString(problem)));
    }
    written_ = problem.empty();
    quitApplication();
}

void PictureRun::failed() {
    quitApplication();
}

}  // namespace qrvel
