// Applies a crop rectangle to a composition.
//
// All top-level layers are hung on a temporary null layer; one move of the null moves them, and deleting it
// leaves them there. So keyframes, expressions and cameras need no case of their own.

#include <iterator>

#include "Crop.h"
#include "Numbers.h"
#include "Operation.h"
#include "cropUtil.h"

namespace crop {

A_Err SetAllEmptyParents(SPBasicSuite* basic, AEGP_LayerH* newParent, AEGP_CompH* comp) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        const AEGP_LayerSuite7* layers = suites.LayerSuite7();
        A_long count = 0;
        step(result, "count the layers", [&] { return layers->AEGP_GetCompNumLayers(*comp, &count); });
        for (A_long i = 0; i < count && result.ok(); ++i) {
            AEGP_LayerH layer = nullptr;
            AEGP_LayerH parent = nullptr;
            step(result, "get a layer", [&] { return layers->AEGP_GetCompLayerByIndex(*comp, i, &layer); });
            step(result, "get its parent", [&] { return layers->AEGP_GetLayerParent(layer, &parent); });
            if (parent == nullptr && layer != *newParent) {
                step(result, "set its parent", [&] { return layers->AEGP_SetLayerParent(layer, *newParent); });
            }
        }
    });
}

A_Err finishCropping(SPBasicSuite* basic, int pluginId, AEGP_ItemH* item, CroppingBounds bounds, A_Time time,
                     unsigned char fullRes, AEGP_RenderOptionsH* renderOptions, short xFactor, short yFactor) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        constexpr wchar_t nullName[] = L"Kestrin Null";
        constexpr A_long stackBottom = -1;
        constexpr A_Ratio squarePixels{1, 1};
        const double newWidth = bounds.right - bounds.left + 1;
        const double newHeight = bounds.bottom - bounds.top + 1;

        AEGP_CompH comp = nullptr;
        AEGP_LayerH null = nullptr;
        AEGP_ItemH nullItem = nullptr;
        A_Ratio aspect = squarePixels;
        A_UTF16Char name[std::size(nullName)];
        step(result, "get the composition",
             [&] { return suites.CompSuite7()->AEGP_GetCompFromItem(*item, &comp); });
        step(result, "resize the composition", [&] {
            return suites.CompSuite7()->AEGP_SetCompDimensions(comp, truncateToLong(newWidth),
                                                               truncateToLong(newHeight));
        });
        cropUtil::copyConvertStringLiteralIntoUTF16(nullName, name);
        step(result, "create the null",
             [&] { return suites.CompSuite7()->AEGP_CreateNullInComp(name, comp, nullptr, &null); });
        step(result, "move the null to the bottom",
             [&] { return suites.LayerSuite7()->AEGP_ReorderLayer(null, stackBottom); });
        step(result, "hang the layers on the null", [&] { return SetAllEmptyParents(basic, &null, &comp); });

        step(result, "read the pixel aspect ratio",
             [&] { return suites.ItemSuite8()->AEGP_GetItemPixelAspectRatio(*item, &aspect); });
        const bool squeezed = aspect.num != squarePixels.num || aspect.den != squarePixels.den;
        if (squeezed) {
            step(result, "set square pixels",
                 [&] { return suites.CompSuite7()->AEGP_SetCompPixelAspectRatio(comp, &squarePixels); });
        }
        // Tried whatever happened before, and its outcome does not count.
        cropUtil::ShiftLayerPosition(basic, pluginId, &null, A_Time{0, 1}, 0 - bounds.left, 0 - bounds.top, 0,
                                     1);
        step(result, "get the null's item",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerSourceItem(null, &nullItem); });
        step(result, "delete the null", [&] { return suites.LayerSuite7()->AEGP_DeleteLayer(null); });
        step(result, "delete the null's item", [&] { return suites.ItemSuite8()->AEGP_DeleteItem(nullItem); });
        if (squeezed) {
            step(result, "set the pixel aspect ratio back",
                 [&] { return suites.CompSuite7()->AEGP_SetCompPixelAspectRatio(comp, &aspect); });
        }

        step(result, "correct the uses",
             [&] { return findAndCorrectAllUses(basic, pluginId, item, time, bounds, newWidth, newHeight); });
        if (fullRes != 0) {
            step(result, "set the render resolution back", [&] {
                return suites.RenderOptionsSuite3()->AEGP_SetDownsampleFactor(*renderOptions, xFactor, yFactor);
            });
        }
        if (*renderOptions != nullptr) {
            // Not released after a failure.
            step(result, "release the render options",
                 [&] { return suites.RenderOptionsSuite3()->AEGP_Dispose(*renderOptions); });
        }
    });
}

}  // namespace crop
