#include "configuration.h"

#include <QSettings>
#include <QStandardPaths>

#include "application.h"
#include "text_buffer.h"
#include "toolkit_trace.h"
#include "wi.h"

namespace qrvel {

namespace {

QStringList configurationFolders() {
    const QString named = namedConfigurationFolder();
    if (!named.isEmpty()) return {named};
    return QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
}

}  // namespace

QString namedConfigurationFolder() {
    return qEnvironmentVariable("KEL_CONFIG_DIR");
}

std::optional<QString> configurationValue(const QString& application, const QString& key) {
    for (const QString& folder : configurationFolders()) {
        const QSettings file(folder + '/' + application + ".ini", QSettings::IniFormat);
        // A comma makes a list of a value; here it is part of the text.
        if (file.contains(key)) return file.value(key).toStringList().join(",");
    }
    return std::nullopt;
}

}  // namespace qrvel

using namespace qrvel;

int32_t WIstdinit_cfg(WHandle app, const char* application, const char* const* keys, const char** values, int32_t count,
                      char* buffer, int32_t size) {
    if (handles().find<Application>(app, __func__) == nullptr) return 0;
    TextBuffer texts(buffer, size);
    for (int32_t i = 0; i < count; ++i) {
        const std::optional<QString> value = configurationValue(QString::fromUtf8(application), keys[i]);
        values[i] = value ? texts.add(value->toLocal8Bit()) : nullptr;
        if (value && values[i] == nullptr) traceLine("WIstdinit_cfg: %s does not fit\n", keys[i]);
    }
    return 1;
}
