// Corrects the layers that show a cropped composition.

#include "Crop_Uses.h"

#include <vector>

#include "HostHandles.h"
#include "Operation.h"
#include "cropUtil.h"

namespace crop {
namespace {

struct Correction {
    UseCorrection use;
    CroppingBounds bounds;
    A_Time time;  // where static outlines are read, in layer time
};

// Over the segments, not the vertices: an open outline keeps its last vertex.
void correctOutline(AEGP_SuiteHandler& suites, Result& result, AEGP_MaskOutlineValH outline,
                    const Correction& correction) {
    A_long segmentCount = 0;
    step(result, "count the outline's segments",
         [&] { return suites.MaskOutlineSuite2()->AEGP_GetMaskOutlineNumSegments(outline, &segmentCount); });
    for (A_long i = 0; i < segmentCount && result.ok(); ++i) {
        AEGP_MaskVertex vertex{};
        step(result, "read a vertex",
             [&] { return suites.MaskOutlineSuite2()->AEGP_GetMaskOutlineVertexInfo(outline, i, &vertex); });
        step(result, "write a vertex", [&] {
            vertex = corrected(vertex, correction.use, correction.bounds);
            return suites.MaskOutlineSuite2()->AEGP_SetMaskOutlineVertexInfo(outline, i, &vertex);
        });
    }
}

void correctMask(AEGP_SuiteHandler& suites, Result& result, int pluginId, AEGP_LayerH layer, A_long maskIndex,
                 const Correction& correction) {
    Mask mask(suites, result);
    Stream stream(suites, result);
    StreamValue outline(suites, result, pluginId);
    A_long keyframeCount = 0;

    const auto readAndCorrect = [&](A_Time time) {
        outline.read("read the outline", stream, AEGP_LTimeMode_LayerTime, time, Expressions::before);
        if (result.ok()) {
            correctOutline(suites, result, outline.get()->val.mask, correction);
        }
    };

    step(result, "get the mask",
         [&] { return suites.MaskSuite5()->AEGP_GetLayerMaskByIndex(layer, maskIndex, mask.put()); });
    step(result, "get the mask's outline", [&] {
        return suites.StreamSuite4()->AEGP_GetNewMaskStream(pluginId, mask.get(), AEGP_MaskStream_OUTLINE,
                                                            stream.put());
    });
    step(result, "count its keyframes",
         [&] { return suites.KeyframeSuite4()->AEGP_GetStreamNumKFs(stream.get(), &keyframeCount); });
    if (keyframeCount <= 0) {
        readAndCorrect(correction.time);
        step(result, "write the outline",
             [&] { return suites.StreamSuite4()->AEGP_SetStreamValue(pluginId, stream.get(), outline.get()); });
    }
    for (A_long i = 0; i < keyframeCount && result.ok(); ++i) {
        A_Time time{0, 1};
        step(result, "read a keyframe's time", [&] {
            return suites.KeyframeSuite4()->AEGP_GetKeyframeTime(stream.get(), i, AEGP_LTimeMode_LayerTime,
                                                                 &time);
        });
        readAndCorrect(time);
        step(result, "write a keyframe's outline",
             [&] { return suites.KeyframeSuite4()->AEGP_SetKeyframeValue(stream.get(), i, outline.get()); });
    }
}

}  // namespace

UseCorrection correctionOfUses(const CroppingBounds& bounds, double newWidth, double newHeight) {
    const double oldWidth = bounds.width;
    const double oldHeight = bounds.height;
    const double halfOldWidth = bounds.width / 2;  // whole: an odd size loses half a pixel
    const double halfOldHeight = bounds.height / 2;
    return {-((bounds.left - halfOldWidth) + newWidth / 2),
            -((bounds.top - halfOldHeight) + newHeight / 2),
            oldHeight / (bounds.bottom - bounds.top + 1),
            newWidth / oldWidth,
            newHeight / oldHeight,
            oldWidth - newWidth,
            oldHeight - newHeight};
}

AEGP_MaskVertex corrected(const AEGP_MaskVertex& vertex, const UseCorrection& correction,
                          const CroppingBounds& bounds) {
    return {vertex.x / correction.xDivisor - bounds.left, vertex.y / correction.yDivisor - bounds.top,
            vertex.tan_in_x / correction.xDivisor,        vertex.tan_in_y / correction.yDivisor,
            vertex.tan_out_x / correction.xDivisor,       vertex.tan_out_y / correction.yDivisor};
}

A_Err findAndCorrectAllUses(SPBasicSuite* basic, int pluginId, AEGP_ItemH* item, A_Time time,
                            CroppingBounds bounds, double newWidth, double newHeight) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        std::vector<AEGP_LayerH> uses;
        step(result, "find the uses", [&] { return cropUtil::FindAllCompUses(basic, pluginId, *item, &uses); });
        const Correction correction{correctionOfUses(bounds, newWidth, newHeight), bounds, time};
        for (std::size_t i = 0; i < uses.size() && result.ok(); ++i) {
            step(result, "correct the Anchor Point", [&] {
                const UseCorrection& use = correction.use;
                return cropUtil::ShiftLayerXY(basic, pluginId, uses[i], use.xOffset, use.yOffset, use.zFactor,
                                              use.xDivisor, use.yDivisor, use.xSizeChange, use.ySizeChange);
            });
            A_long maskCount = 0;
            step(result, "count the masks",
                 [&] { return suites.MaskSuite5()->AEGP_GetLayerNumMasks(uses[i], &maskCount); });
            for (A_long mask = 0; mask < maskCount && result.ok(); ++mask) {
                correctMask(suites, result, pluginId, uses[i], mask, correction);
            }
        }
    });
}

}  // namespace crop
