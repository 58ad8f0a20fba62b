// The HP-GL command SC. Its bounds set no window: the picture is always scaled to its extents. What is taken from it is
// mirroring, point factors, and through both the rotation by 180 degrees.
#pragma once

#include <cstdint>

// params: the record's parameter bytes (Xmin, Xmax, Ymin, Ymax as R, the type as I, two more R); at least 16 bytes for
// any count but 0, 18 from 5 on. Sets *scalingSet for any count but 0, and the factors, which keep what an earlier SC
// of the pass set and are multiplied by rotationSign again: a picture with two SC commands that do not set them anew is
// turned twice, which is deliberate. Answers the number of bytes to step over.
int32_t handleSCCommand(const uint8_t* params, int32_t count, int32_t* scalingSet, float* ScaleFactorX,
                        float* ScaleFactorY, int32_t rotationSign);
