// Whether there is a display. Qt ends the process when it finds none, so everybody who makes an application asks first.
#pragma once

// True when Qt will find the display that the environment names, or needs none (QT_QPA_PLATFORM=offscreen).
bool isDisplayReachable();
