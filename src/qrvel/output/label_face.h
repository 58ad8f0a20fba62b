// The one face of all labels. It is monospaced, because a label's width is character width times length.
#pragma once

#include <QPainterPath>
#include <string_view>

namespace qrvel {

inline constexpr std::string_view LABEL_FAMILY = "DejaVu Sans Mono";

// Whether the face is installed.
bool hasLabelFace();

// The outline of a character (Latin-1), measured so that every character is 1 wide and a capital 1 high; the
// baseline's start is (0, 0), y grows downward. Empty for what has no picture.
QPainterPath labelOutline(unsigned char character);

}  // namespace qrvel
