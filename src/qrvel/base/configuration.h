// The configuration of an application: the INI file that is named after it.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace qrvel {

struct Application;

// The folder that replaces all others for configuration and texts (KEL_CONFIG_DIR); empty when none is named.
QString namedConfigurationFolder();

// A value without blanks around it, none where nothing is left, from the user's file or else the system's. The files
// are those that WIstdinit_cfg has read.
std::optional<QByteArray> configurationValue(const Application& app, const QByteArray& key);

}  // namespace qrvel
