// The mask crop: a pre-composition layer's source, cropped to one of the layer's masks.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "Crop.h"
#include "HostHandles.h"
#include "Kestrin_Strings.h"
#include "Numbers.h"
#include "Operation.h"
#include "Preferences.h"
#include "Scripts.h"
#include "cropUtil.h"

namespace crop {
namespace {

enum class Choice { made, cancelled };

Choice askForMask(AEGP_SuiteHandler& suites, Result& result, int pluginId, A_long& maskIndex) {
    constexpr A_long cancelled = -1;
    Memory answer(suites, result);
    void* text = nullptr;
    step(result, "ask for the mask",
         [&] { return cropUtil::RunScript(suites, pluginId, scripts::maskChooser, answer.put()); });
    step(result, "lock the answer",
         [&] { return suites.MemorySuite1()->AEGP_LockMemHandle(answer.get(), &text); });
    if (text != nullptr) {
        maskIndex = wrapToLong(std::strtol(static_cast<const char*>(text), nullptr, 10));
    }
    if (result.ok() && maskIndex == cancelled) {
        answer.release();  // left to the host, locked
        return Choice::cancelled;
    }
    step(result, "unlock the answer",
         [&] { return suites.MemorySuite1()->AEGP_UnlockMemHandle(answer.get()); });
    return Choice::made;
}

// The layer's only mask, or the one that the user chooses.
Choice takeChosenMask(AEGP_SuiteHandler& suites, Result& result, int pluginId, AEGP_LayerH layer, Mask& mask) {
    A_long maskCount = 0;
    A_long maskIndex = 0;
    step(result, "count the masks",
         [&] { return suites.MaskSuite5()->AEGP_GetLayerNumMasks(layer, &maskCount); });
    if (maskCount != 1 && askForMask(suites, result, pluginId, maskIndex) == Choice::cancelled) {
        return Choice::cancelled;
    }
    step(result, "get the mask",
         [&] { return suites.MaskSuite5()->AEGP_GetLayerMaskByIndex(layer, maskIndex, mask.put()); });
    return Choice::made;
}

AEGP_CollectionItemV2 selectedItem(AEGP_SuiteHandler& suites, Result& result, AEGP_Collection2H selection,
                                   A_u_long index) {
    AEGP_CollectionItemV2 item{};
    step(result, "get a selected item",
         [&] { return suites.CollectionSuite2()->AEGP_GetCollectionItemByIndex(selection, index, &item); });
    return item;
}

// The last selected mask. Leaves only layers in the selection.
void takeSelectedMask(AEGP_SuiteHandler& suites, Result& result, AEGP_LayerH layer, AEGP_Collection2H selection,
                      A_u_long count, Mask& mask) {
    for (A_u_long i = 0; i < count && result.ok(); ++i) {
        const AEGP_CollectionItemV2 item = selectedItem(suites, result, selection, i);
        if (item.type == AEGP_CollectionItemType_MASK) {
            mask.release();  // an earlier one is not given back
            step(result, "get the selected mask", [&] {
                return suites.MaskSuite5()->AEGP_GetLayerMaskByIndex(layer, item.u.mask.index, mask.put());
            });
        }
    }
    for (std::int64_t i = std::int64_t{count} - 1; i >= 0 && result.ok(); --i) {
        const auto index = static_cast<A_u_long>(i);
        if (selectedItem(suites, result, selection, index).type != AEGP_CollectionItemType_LAYER) {
            step(result, "drop what is no layer",
                 [&] { return suites.CollectionSuite2()->AEGP_CollectionErase(selection, index, index + 1); });
        }
    }
}

// Compares coordinates as they are, keeps them rounded.
void widen(CroppingBounds& bounds, const AEGP_MaskVertex& vertex) {
    if (vertex.y < bounds.top) {
        bounds.top = std::round(vertex.y);
    }
    if (vertex.y > bounds.bottom) {
        bounds.bottom = std::round(vertex.y);
    }
    if (vertex.x < bounds.left) {
        bounds.left = std::round(vertex.x);
    }
    if (vertex.x > bounds.right) {
        bounds.right = std::round(vertex.x);
    }
}

// The box of the outline's vertices, one for each segment. A side on which the mask lies wholly outside the
// item keeps its starting value.
CroppingBounds boundsOfOutline(AEGP_SuiteHandler& suites, Result& result, AEGP_MaskOutlineValH outline,
                               AEGP_ItemH source) {
    A_long count = 0;
    A_long width = 0;
    A_long height = 0;
    step(result, "count the outline's segments",
         [&] { return suites.MaskOutlineSuite2()->AEGP_GetMaskOutlineNumSegments(outline, &count); });
    step(result, "read the source's size",
         [&] { return suites.ItemSuite8()->AEGP_GetItemDimensions(source, &width, &height); });
    CroppingBounds bounds{static_cast<double>(height), 0, static_cast<double>(width), 0, width, height};
    for (A_long i = 0; i < count && result.ok(); ++i) {
        AEGP_MaskVertex vertex{};
        step(result, "read a vertex",
             [&] { return suites.MaskOutlineSuite2()->AEGP_GetMaskOutlineVertexInfo(outline, i, &vertex); });
        if (result.ok()) {
            widen(bounds, vertex);
        }
    }
    return bounds;
}

}  // namespace

A_Err maskCrop(SPBasicSuite* basic, int pluginId) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        AEGP_LayerH layer = nullptr;
        AEGP_ItemH source = nullptr;
        AEGP_CompH parentComp = nullptr;
        Collection selection(suites, result);
        A_u_long selectedCount = 0;
        step(result, "start the undo group",
             [&] { return suites.UtilitySuite5()->AEGP_StartUndoGroup(GetStringPtr(StrID_MaskCrop)); });
        step(result, "get the active layer", [&] { return suites.LayerSuite7()->AEGP_GetActiveLayer(&layer); });
        step(result, "get its source",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerSourceItem(layer, &source); });
        step(result, "get its composition",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerParentComp(layer, &parentComp); });
        step(result, "get the selection", [&] {
            return suites.CompSuite7()->AEGP_GetNewCollectionFromCompSelection(pluginId, parentComp,
                                                                               selection.put());
        });
        step(result, "count the selection", [&] {
            return suites.CollectionSuite2()->AEGP_GetCollectionNumItems(selection.get(), &selectedCount);
        });

        Mask mask(suites, result);
        if (selectedCount >= 2) {
            takeSelectedMask(suites, result, layer, selection.get(), selectedCount, mask);
        } else if (takeChosenMask(suites, result, pluginId, layer, mask) == Choice::cancelled) {
            selection.release();  // not given back after a cancel; the undo group stays open, too
            return;
        }

        Stream stream(suites, result);
        StreamValue outline(suites, result, pluginId);
        A_Time time{0, 1};
        step(result, "get the mask's outline", [&] {
            return suites.StreamSuite4()->AEGP_GetNewMaskStream(pluginId, mask.get(), AEGP_MaskStream_OUTLINE,
                                                                stream.put());
        });
        step(result, "read the source's time",
             [&] { return suites.ItemSuite8()->AEGP_GetItemCurrentTime(source, &time); });
        outline.read("read the outline", stream, AEGP_LTimeMode_CompTime, time, Expressions::applied);
        if (!result.ok()) {
            return;
        }
        CroppingBounds bounds = boundsOfOutline(suites, result, outline.get()->val.mask, source);

        Preferences preferences(suites);
        A_Boolean deleteMask = 0;
        A_Boolean pad = 0;
        A_long padding = 0;
        step(result, "open the preferences", [&] { return preferences.open(); });
        outline.giveBack();
        stream.giveBack();
        step(result, "read DeleteMask", [&] { return preferences.readFlag(StrID_DeleteMask, &deleteMask); });
        if (deleteMask != 0) {
            step(result, "delete the mask",
                 [&] { return suites.MaskSuite5()->AEGP_DeleteMaskFromLayer(mask.get()); });
        }
        mask.giveBack();
        step(result, "read Padding", [&] { return preferences.readFlag(StrID_Padding, &pad); });
        if (pad != 0) {
            step(result, "read PaddingAmount",
                 [&] { return preferences.readNumber(StrID_PaddingAmount, &padding); });
        }
        bounds.top -= padding;
        bounds.left -= padding;
        bounds.right += padding;
        bounds.bottom += padding;

        step(result, "apply the crop", [&] {
            AEGP_RenderOptionsH noOptions = nullptr;
            return finishCropping(basic, pluginId, &source, bounds, time, 0, &noOptions, 0, 0);
        });
        step(result, "select the layers",
             [&] { return suites.CompSuite7()->AEGP_SetSelection(parentComp, selection.get()); });
        selection.giveBack();
        step(result, "end the undo group", [&] { return suites.UtilitySuite5()->AEGP_EndUndoGroup(); });
    });
}

}  // namespace crop
