// The configuration of an application: the INI file that is named after it.
#pragma once

#include <QString>
#include <optional>

namespace qrvel {

// The folder that replaces all others for configuration and texts (KEL_CONFIG_DIR); empty when none is named.
QString namedConfigurationFolder();

// A value without a section, from the user's file or else the system's.
std::optional<QString> configurationValue(const QString& application, const QString& key);

}  // namespace qrvel
