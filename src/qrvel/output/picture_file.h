// --picture: the first picture goes to a file instead of a window, and the application ends.
#pragma once

namespace qrvel {

struct Child;

// To be called after every paint of a child: writes the picture when it is there, and ends the application.
void savePictureAfterPaint(const Child& child);

// The picture cannot be had, because its data could not be read: ends the application with status 1. Without --picture
// it does nothing.
void failPicture();

}  // namespace qrvel
