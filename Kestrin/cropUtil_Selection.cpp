// What is selected, what of it can be cropped, and where a composition is used.

#include "Operation.h"
#include "ProjectItems.h"
#include "cropUtil.h"

A_Err cropUtil::GetSelectedLayers(SPBasicSuite* basic, int pluginId, AEGP_ItemH* activeItem, AEGP_CompH* comp,
                                  AEGP_Collection2H* selection, unsigned int* count) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        step(result, "get the active item",
             [&] { return suites.ItemSuite8()->AEGP_GetActiveItem(activeItem); });
        step(result, "get the composition",
             [&] { return suites.CompSuite7()->AEGP_GetCompFromItem(*activeItem, comp); });
        if (comp == nullptr) {
            return;
        }
        step(result, "get the selection", [&] {
            return suites.CompSuite7()->AEGP_GetNewCollectionFromCompSelection(pluginId, *comp, selection);
        });
        step(result, "count the selection",
             [&] { return suites.CollectionSuite2()->AEGP_GetCollectionNumItems(*selection, count); });
    });
}

A_Err cropUtil::RemoveNonPrecomps(SPBasicSuite* basic, AEGP_Collection2H* selection, unsigned int* count) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        A_u_long index = 0;  // into the shrinking collection
        for (unsigned int seen = 0; seen < *count && result.ok(); ++seen) {
            AEGP_CollectionItemV2 item{};
            step(result, "get a selected item", [&] {
                return suites.CollectionSuite2()->AEGP_GetCollectionItemByIndex(*selection, index, &item);
            });
            if (!result.ok()) {
                break;
            }
            if (item.type == AEGP_CollectionItemType_LAYER && LayerIsPrecomp(basic, item.u.layer.layerH)) {
                ++index;
            } else {
                step(result, "drop an item that cannot be cropped", [&] {
                    return suites.CollectionSuite2()->AEGP_CollectionErase(*selection, index, index + 1);
                });
            }
        }
        step(result, "count what is left",
             [&] { return suites.CollectionSuite2()->AEGP_GetCollectionNumItems(*selection, count); });
    });
}

bool cropUtil::LayerIsPrecomp(SPBasicSuite* basic, AEGP_LayerH layer) {
    if (layer == nullptr) {
        return false;
    }
    bool isPrecomp = false;
    const A_Err error = operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        AEGP_ObjectType objectType = AEGP_ObjectType_NONE;
        AEGP_ItemH source = nullptr;
        AEGP_ItemType itemType = AEGP_ItemType_NONE;
        step(result, "read the layer's type",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerObjectType(layer, &objectType); });
        if (objectType == AEGP_ObjectType_AV) {
            step(result, "get the layer's source",
                 [&] { return suites.LayerSuite7()->AEGP_GetLayerSourceItem(layer, &source); });
        }
        if (source != nullptr) {
            step(result, "read the source's type",
                 [&] { return suites.ItemSuite8()->AEGP_GetItemType(source, &itemType); });
        }
        isPrecomp = itemType == AEGP_ItemType_COMP;
    });
    return error == A_Err_NONE && isPrecomp;
}

A_Err cropUtil::FindAllCompUses(SPBasicSuite* basic, int, AEGP_ItemH source, std::vector<AEGP_LayerH>* uses) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        forEachProjectItem(suites, result, [&](AEGP_ItemH item) {
            AEGP_ItemType type = AEGP_ItemType_NONE;
            AEGP_CompH comp = nullptr;
            A_long layerCount = 0;
            step(result, "read an item's type",
                 [&] { return suites.ItemSuite8()->AEGP_GetItemType(item, &type); });
            if (type != AEGP_ItemType_COMP) {
                return;
            }
            step(result, "get a composition",
                 [&] { return suites.CompSuite7()->AEGP_GetCompFromItem(item, &comp); });
            step(result, "count its layers",
                 [&] { return suites.LayerSuite7()->AEGP_GetCompNumLayers(comp, &layerCount); });
            for (A_long i = 0; i < layerCount && result.ok(); ++i) {
                AEGP_LayerH layer = nullptr;
                AEGP_ItemH layerSource = nullptr;
                step(result, "get a layer",
                     [&] { return suites.LayerSuite7()->AEGP_GetCompLayerByIndex(comp, i, &layer); });
                step(result, "get its source",
                     [&] { return suites.LayerSuite7()->AEGP_GetLayerSourceItem(layer, &layerSource); });
                if (result.ok() && layerSource == source) {
                    uses->push_back(layer);
                }
            }
        });
    });
}
