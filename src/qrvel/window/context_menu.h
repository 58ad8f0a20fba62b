// The menu that comes where the right button is pressed on the drawing.
#pragma once

class QPoint;
class QWidget;

namespace qrvel {

// Shows it there on the screen; what is chosen is carried out.
void showContextMenu(QWidget& drawing, QPoint where);

}  // namespace qrvel
