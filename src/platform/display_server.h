// Whether there is a display, asked before Qt asks and ends the process.
#pragma once

class QString;

// Whether one of the platforms that Qt would try (QT_QPA_PLATFORM) can be had and answers.
bool isDisplayReachable();

// Whether a platform of Qt's shows nothing to anybody: a box there would wait for ever.
bool isUnseen(const QString& platform);
