// The numbers that correct a use of a cropped composition, without a host.

#pragma once

#include "Crop.h"

namespace crop {

// What cropUtil::ShiftLayerXY takes, in its order. By the time a use is corrected the host has scaled its
// Anchor Point and masks with the composition's size; the divisors undo that.
struct UseCorrection {
    double xOffset;
    double yOffset;
    double zFactor;
    double xDivisor;
    double yDivisor;
    double xSizeChange;
    double ySizeChange;
};

UseCorrection correctionOfUses(const CroppingBounds& bounds, double newWidth, double newHeight);

// A mask vertex of a use, in the use's source pixels.
AEGP_MaskVertex corrected(const AEGP_MaskVertex& vertex, const UseCorrection& correction,
                          const CroppingBounds& bounds);

}  // namespace crop
