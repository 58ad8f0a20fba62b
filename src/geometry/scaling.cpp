#include "geometry/scaling.h"

#include "trace/trace.h"

int32_t HPGLsetScaling(HPGLTransform* transform, int32_t MinX, int32_t MinY, int32_t MaxX, int32_t MaxY) {
    const int32_t width = wrapSub(MaxX, MinX);
    const int32_t height = wrapSub(MaxY, MinY);
    transform->FactorX = static_cast<double>(transform->DSizeX) / static_cast<double>(width);
    transform->FactorY = static_cast<double>(transform->DSizeY) / static_cast<double>(height);
    const bool xDecides = transform->FactorY > transform->FactorX;
    transform->DSize = xDecides ? transform->DSizeX : transform->DSizeY;
    transform->USize = xDecides ? width : height;
    transform->MaxX = MaxX;
    transform->MaxY = MaxY;
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "\nHPGLsetScaling: FactorX:  %f  FactorY:  %f  MaxX:  %ld  MaxY:   %ld\n",
             transform->FactorX, transform->FactorY, static_cast<long>(MaxX), static_cast<long>(MaxY));
    return 1;
}
