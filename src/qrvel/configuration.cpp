#include "configuration.h"

#include <QStandardPaths>

#include "application.h"
#include "keyed_texts.h"
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

std::optional<QByteArray> configurationValue(const QString& application, const QString& key) {
    for (const QString& folder : configurationFolders()) {
        const auto values = readKeyedTexts(folder + '/' + application + ".ini");
        const auto value = values ? values->constFind(key.toUtf8()) : KeyedTexts::const_iterator();
        if (values && value != values->cend()) return *value;
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
        const std::optional<QByteArray> value = configurationValue(QString::fromUtf8(application), keys[i]);
        values[i] = value ? texts.add(*value) : nullptr;
        if (value && values[i] == nullptr) traceLine("WIstdinit_cfg: %s does not fit\n", keys[i]);
    }
    return 1;
}
