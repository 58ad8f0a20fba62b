// The configuration of an application: the INI file that is named after it.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace qrvel {

// The folder that replaces all others for configuration and texts (KEL_CONFIG_DIR); empty when none is named.
QString namedConfigurationFolder();

// A value as it stands behind its key's equals sign, from the user's file or else the system's.
std::optional<QByteArray> configurationValue(const QString& application, const QString& key);

}  // namespace qrvel
