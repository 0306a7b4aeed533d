// From a rendered frame to the rectangle that a crop works with.

#include <cmath>

#include "Crop.h"
#include "Crop_Scan.h"
#include "Kestrin_Strings.h"
#include "Numbers.h"
#include "Operation.h"
#include "Preferences.h"

namespace crop {
namespace {

// All of the edges round down, the upper limits too.
A_long floorToLong(double value) {
    return truncateToLong(std::floor(value));
}

void limitTo(const A_FloatRect& region, VisibleRange& range) {
    if (region.bottom == -1.0 || region.right == -1.0) {
        return;
    }
    if (region.top > range.minRow) {
        range.minRow = floorToLong(region.top);
    }
    if (range.maxRow > region.bottom) {
        range.maxRow = floorToLong(region.bottom);
    }
    if (region.left > range.minCol) {
        range.minCol = floorToLong(region.left);
    }
    if (range.maxCol > region.right) {
        range.maxCol = floorToLong(region.right);
    }
}

// Scales back to full resolution, then pads. The last visible pixel's block is not extended to its end.
CroppingBounds scaledAndPadded(const VisibleRange& range, A_long width, A_long height, short xFactor,
                               short yFactor, std::int64_t padding) {
    // In 64 bits: a padding beyond every size stays one, for the host to refuse.
    const auto scaled = [](A_long index, short factor) { return std::int64_t{index} * factor; };
    return {static_cast<double>(scaled(range.minRow, yFactor) - padding),
            static_cast<double>(scaled(range.maxRow, yFactor) + padding),
            static_cast<double>(scaled(range.minCol, xFactor) - padding),
            static_cast<double>(scaled(range.maxCol, xFactor) + padding),
            wrapToLong(scaled(width, xFactor)),
            wrapToLong(scaled(height, yFactor))};
}

template <class Pixel>
VisibleRange scan(const AEGP_WorldSuite3* worlds, Result& result, AEGP_WorldH world, A_long width,
                  A_long height, A_u_long rowBytes,
                  A_Err (*AEGP_WorldSuite3::*baseAddress)(AEGP_WorldH, Pixel**), bool knownDepth) {
    Pixel* base = nullptr;
    step(result, "get the pixels", [&] { return (worlds->*baseAddress)(world, &base); });
    return base == nullptr || !knownDepth ? nothingVisible(width, height)
                                          : findVisible<Pixel>(base, width, height, rowBytes);
}

}  // namespace

A_Err findCropBounds(SPBasicSuite* basic, AEGP_WorldH* world, short xFactor, short yFactor,
                     CroppingBounds* bounds, A_FloatRect region) {
    *bounds = {};
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        const AEGP_WorldSuite3* worlds = suites.WorldSuite3();
        A_long width = 0;
        A_long height = 0;
        A_u_long rowBytes = 0;
        AEGP_WorldType type = AEGP_WorldType_NONE;
        step(result, "read the frame's size", [&] { return worlds->AEGP_GetSize(*world, &width, &height); });
        step(result, "read the frame's row bytes", [&] { return worlds->AEGP_GetRowBytes(*world, &rowBytes); });
        step(result, "read the frame's depth", [&] { return worlds->AEGP_GetType(*world, &type); });

        const auto scanAs = [&](auto baseAddress, bool knownDepth) {
            return scan(worlds, result, *world, width, height, rowBytes, baseAddress, knownDepth);
        };
        VisibleRange range = type == AEGP_WorldType_8 ? scanAs(&AEGP_WorldSuite3::AEGP_GetBaseAddr8, true)
                             : type == AEGP_WorldType_16
                                 ? scanAs(&AEGP_WorldSuite3::AEGP_GetBaseAddr16, true)
                                 : scanAs(&AEGP_WorldSuite3::AEGP_GetBaseAddr32, type == AEGP_WorldType_32);
        limitTo(region, range);

        Preferences preferences(suites);
        A_Boolean pad = 0;
        A_long padding = 0;
        step(result, "open the preferences", [&] { return preferences.open(); });
        step(result, "read Padding", [&] { return preferences.readFlag(StrID_Padding, &pad); });
        if (pad != 0) {
            step(result, "read PaddingAmount",
                 [&] { return preferences.readNumber(StrID_PaddingAmount, &padding); });
        }
        *bounds = scaledAndPadded(range, width, height, xFactor, yFactor, padding);
    });
}

}  // namespace crop
