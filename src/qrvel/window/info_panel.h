// The product information.
#pragma once

#include <QMessageBox>
#include <QPointer>

#include "qrvel/base/handles.h"

namespace qrvel {

struct InfoPanel : Object {
    static constexpr Kind KIND = Kind::InfoPanel;
    ~InfoPanel() override { delete box; }

    QPointer<QMessageBox> box;
};

}  // namespace qrvel
