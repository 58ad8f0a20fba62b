#include "picture_file.h"

#include <QSaveFile>

#include "application.h"
#include "child.h"
#include "data_channel.h"
#include "notices.h"
#include "own_texts.h"

namespace qrvel {

namespace {

// The file appears under its name only when it is complete.
bool save(const QImage& image, const QString& name, QString& reason) {
    QSaveFile file(name);
    const bool saved = file.open(QFile::WriteOnly) && image.save(&file, "PNG") && file.commit();
    if (!saved) reason = file.errorString();
    return saved;
}

}  // namespace

void savePictureAfterPaint(const Child& child) {
    Application* app = application();
    if (app->options.picture.isEmpty() || app->state.quit != 0) return;
    const DataChannel* channel = findDataChannel();
    if (channel == nullptr || !channel->hasDelivered() || !child.surface || !child.surface->isComplete()) return;
    QString reason;
    if (!save(child.surface->shown(), app->options.picture, reason)) {
        showNotice(ownText(OwnText::CannotWrite).arg(app->options.picture, reason));
        app->status = 1;
    }
    quitApplication();
}

void failPicture() {
    Application* app = application();
    if (app->options.picture.isEmpty()) return;
    app->status = 1;
    quitApplication();
}

}  // namespace qrvel
