// Where on its paper a drawing comes to lie.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <array>
#include <optional>

#include "qrvel/base/paper.h"

namespace qrvel {

struct Placement {
    QSizeF paper;    // millimetres
    QPointF origin;  // of the sheet's coordinates: millimetres from the paper's lower left corner, y upward
    double unit;     // millimetres
    // What is to stay white around the drawing: millimetres from the paper's lower left corner, y upward.
    std::array<QRectF, 4> margins;
};

// drawn: what the drawing covers, units of the sheet; nothing when it is empty. It is centred by half of its slack, so
// what fills the area stays where it is; a sheet that fits is cut to the drawing and the margins around it.
Placement place(const std::optional<QRectF>& drawn, const SheetLayout& sheet);

}  // namespace qrvel
