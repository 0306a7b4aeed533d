// The menu hook: what the project, the active item and the selection allow.

#include "HostHandles.h"
#include "Kestrin.h"
#include "Kestrin_Strings.h"
#include "Operation.h"
#include "ProjectItems.h"
#include "cropUtil.h"

bool kestrinStandard = false;
bool kestrinDuration = false;
bool maskCrop = false;
A_short durationMenuStrId = StrID_KestrinDuration;

namespace {

struct Counts {
    bool enable = false;
    int precompLayers = 0;
    int masks = 0;
};

void countPrecompLayer(AEGP_SuiteHandler& suites, Result& result, AEGP_LayerH layer, A_u_long selectedCount,
                       Counts& counts) {
    ++counts.precompLayers;
    counts.enable = true;
    kestrinStandard = true;
    if (selectedCount == 1) {
        A_long maskCount = 0;
        step(result, "count the layer's masks",
             [&] { return suites.MaskSuite5()->AEGP_GetLayerNumMasks(layer, &maskCount); });
        kestrinDuration = true;
        maskCrop = maskCount >= 1;
    } else {
        kestrinDuration = false;
        maskCrop = false;
        durationMenuStrId = StrID_MultipleLayers;
    }
}

void inspectSelection(AEGP_SuiteHandler& suites, Result& result, AEGP_Collection2H selection,
                      A_u_long selectedCount, Counts& counts) {
    // Bounds the work on a large selection: once something can run, twelve items are enough.
    constexpr A_u_long lastInspected = 10;
    for (A_u_long i = 0; i < selectedCount && result.ok(); ++i) {
        AEGP_CollectionItemV2 item{};
        step(result, "get a selected item",
             [&] { return suites.CollectionSuite2()->AEGP_GetCollectionItemByIndex(selection, i, &item); });
        if (!result.ok()) {
            return;
        }
        if (item.type == AEGP_CollectionItemType_LAYER && cropUtil::LayerIsPrecomp(sP, item.u.layer.layerH)) {
            countPrecompLayer(suites, result, item.u.layer.layerH, selectedCount, counts);
        } else if (item.type == AEGP_CollectionItemType_MASK) {
            ++counts.masks;
        }
        if (counts.enable && i > lastInspected) {
            break;
        }
    }
}

void inspectComp(AEGP_SuiteHandler& suites, Result& result, AEGP_ItemH item, Collection& selection,
                 Counts& counts) {
    AEGP_CompH comp = nullptr;
    A_u_long selectedCount = 0;
    step(result, "get the composition", [&] { return suites.CompSuite7()->AEGP_GetCompFromItem(item, &comp); });
    step(result, "get the selection", [&] {
        return suites.CompSuite7()->AEGP_GetNewCollectionFromCompSelection(S_my_id, comp, selection.put());
    });
    step(result, "count the selection", [&] {
        return suites.CollectionSuite2()->AEGP_GetCollectionNumItems(selection.get(), &selectedCount);
    });
    if (selectedCount > 0) {
        inspectSelection(suites, result, selection.get(), selectedCount, counts);
    } else {
        A_long layerCount = 0;
        step(result, "count the layers",
             [&] { return suites.LayerSuite7()->AEGP_GetCompNumLayers(comp, &layerCount); });
        if (layerCount > 0) {
            counts.enable = true;
            kestrinStandard = true;
            kestrinDuration = true;
        }
    }
}

bool currentModeCanRun() {
    if (maskCropActive) {
        return maskCrop;
    }
    return cropDurationActive ? kestrinDuration : kestrinStandard;
}

}  // namespace

A_Err cropUtil::EnableDisableMenu(SPBasicSuite* basic, AEGP_Command cmd, bool enable) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        step(result, "enable or disable the menu entry", [&] {
            return enable ? suites.CommandSuite1()->AEGP_EnableCommand(cmd)
                          : suites.CommandSuite1()->AEGP_DisableCommand(cmd);
        });
    });
}

A_Err UpdateMenuHook(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
    return hostCallback(sP, [](AEGP_SuiteHandler& suites, Result& result) {
        Counts counts;
        kestrinStandard = false;
        kestrinDuration = false;
        durationMenuStrId = StrID_KestrinDuration;
        // maskCrop keeps its value unless a step below writes it.

        Collection selection(suites, result);  // of an active composition; given back last
        AEGP_ItemH active = nullptr;
        AEGP_ItemType type = AEGP_ItemType_NONE;
        step(result, "get the active item", [&] { return suites.ItemSuite8()->AEGP_GetActiveItem(&active); });
        if (active == nullptr) {
            forEachSelectedComp(suites, result, [&](AEGP_ItemH) {
                counts.enable = true;
                kestrinStandard = true;
            });
        } else {
            step(result, "read the active item's type",
                 [&] { return suites.ItemSuite8()->AEGP_GetItemType(active, &type); });
        }
        if (type == AEGP_ItemType_COMP) {
            inspectComp(suites, result, active, selection, counts);
        }
        if (counts.precompLayers == 1 && counts.masks == 1) {
            counts.enable = true;
            maskCrop = true;
        }
        // Also after a failure, on the flags as far as they were worked out.
        const bool enable = (preferencesActive && !maskCropActive) || (counts.enable && currentModeCanRun());
        cropUtil::EnableDisableMenu(sP, S_Kestrin_cmd, enable);
    });
}
