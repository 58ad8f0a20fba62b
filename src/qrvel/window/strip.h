// A remark about the picture, over the lower edge of the drawing: it takes neither room nor the focus, and goes by
// itself or at a click.
#pragma once

#include <QString>

namespace qrvel {

// Takes the place of the one before. Nothing is shown where nobody looks.
void showStrip(const QString& text);

// The picture that it is about is not there any more.
void hideStrip();

}  // namespace qrvel
