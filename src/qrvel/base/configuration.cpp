#include "qrvel/base/configuration.h"

#include <QFileInfo>
#include <QStandardPaths>

#include "qrvel/base/application.h"
#include "qrvel/base/keyed_texts.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/base/text_buffer.h"
#include "toolkit/wi.h"

namespace qrvel {

namespace {

QStringList configurationFolders() {
    const QString named = namedConfigurationFolder();
    if (!named.isEmpty()) return {named};
    return QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
}

// The application's files, the user's first. One that is there and cannot be read is passed over.
std::vector<KeyedTexts> readConfiguration(const QString& application) {
    std::vector<KeyedTexts> files;
    for (const QString& folder : configurationFolders()) {
        const QString name = folder + '/' + application + ".ini";
        QString reason;
        if (const auto values = readKeyedTexts(name, &reason)) {
            files.push_back(*values);
        } else if (QFileInfo::exists(name)) {
            sayLine(ownText(OwnText::CannotRead).arg(name, reason));
        }
    }
    return files;
}

}  // namespace

QString namedConfigurationFolder() {
    return qEnvironmentVariable("KEL_CONFIG_DIR");
}

std::optional<QByteArray> configurationValue(const Application& app, const QByteArray& key) {
    for (const KeyedTexts& file : app.configuration) {
        const QByteArray value = file.value(key).trimmed();
        if (!value.isEmpty()) return value;
    }
    return std::nullopt;
}

}  // namespace qrvel

using namespace qrvel;

int32_t WIstdinit_cfg(WHandle app, const char* application, const char* const* keys, const char** values, int32_t count,
                      char* buffer, int32_t size) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return 0;
    found->configuration = readConfiguration(QString::fromUtf8(application));
    TextBuffer texts(buffer, size);
    for (int32_t i = 0; i < count; ++i) {
        const std::optional<QByteArray> value = configurationValue(*found, keys[i]);
        values[i] = value ? texts.add(*value) : nullptr;
        if (value && values[i] == nullptr) sayLine(ownText(OwnText::TooLong).arg(keys[i]));
    }
    return 1;
}
