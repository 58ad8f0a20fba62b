#include "geometry/sc_command.h"

#include "hpgl/compact_code_reader.h"
#include "trace/trace.h"

namespace {

enum ScaleType : int32_t { Anisotropic = 0, Isotropic = 1, PointFactor = 2 };

void applyType(int32_t type, const float (&bounds)[4], float* factorX, float* factorY) {
    if (type == PointFactor) {
        TRCTraceError(HPGLTraceHandle, "WARNING-handleSCCommand: Scale type %d not supported yet\n", type);
        *factorX = bounds[1];
        *factorY = bounds[3];
        return;
    }
    // A factor whose axis is not reversed keeps the value that it has.
    if (bounds[0] > bounds[1]) *factorX = -1.0F;
    if (bounds[2] > bounds[3]) *factorY = -1.0F;
}

}  // namespace

int32_t handleSCCommand(const uint8_t* params, int32_t count, int32_t* scalingSet, float* ScaleFactorX,
                        float* ScaleFactorY, int32_t rotationSign) {
    const auto sign = static_cast<float>(rotationSign);
    if (count == 0) {
        *ScaleFactorX = 1.0F * sign;
        *ScaleFactorY = 1.0F * sign;
        return 0;
    }
    *scalingSet = 1;
    const int32_t type = count >= 5 ? HPGLreadI(params + 16) : int32_t{Anisotropic};
    if (type == Anisotropic || type == Isotropic || type == PointFactor) {
        const float bounds[4] = {HPGLreadR(params), HPGLreadR(params + 4), HPGLreadR(params + 8),
                                 HPGLreadR(params + 12)};
        applyType(type, bounds, ScaleFactorX, ScaleFactorY);
        *ScaleFactorX *= sign;
        *ScaleFactorY *= sign;
    }
    const int32_t bytes = HPGLscParameterBytes(count);
    if (bytes == 0) {
        TRCTraceError(HPGLTraceHandle, "WARNING-handleSCCommand: unsupported number of parameters: %d\n", count);
    }
    return bytes;
}
