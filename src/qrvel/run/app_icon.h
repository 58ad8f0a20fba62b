// The application's icon, drawn by code.
#pragma once

#include <QIcon>

namespace qrvel {

QIcon makeAppIcon();

}  // namespace qrvel
