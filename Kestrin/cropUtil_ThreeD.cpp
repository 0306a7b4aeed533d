// 3D layers: finding them, asking about them, and pre-composing what holds them.

#include <iterator>
#include <vector>

#include "HostHandles.h"
#include "Kestrin_Strings.h"
#include "Operation.h"
#include "Preferences.h"
#include "Scripts.h"
#include "cropUtil.h"

A_long threeDPref = 0;
A_u_char checkPrefsThreeD = 1;

namespace {

constexpr A_long ask = 0;
constexpr A_long preCompose = 1;
constexpr A_long leaveAsIs = 2;

void askAboutThreeD(AEGP_SuiteHandler& suites, Result& result, int pluginId) {
    Memory answer(suites, result);  // freed without being unlocked first
    void* text = nullptr;
    step(result, "ask about 3D layers",
         [&] { return cropUtil::RunScript(suites, pluginId, scripts::threeDQuestion, answer.put()); });
    step(result, "lock the answer",
         [&] { return suites.MemorySuite1()->AEGP_LockMemHandle(answer.get(), &text); });
    if (result.ok()) {
        const bool yes = text != nullptr && *static_cast<const char*>(text) == 't';
        threeDPref = yes ? preCompose : leaveAsIs;
    }
}

}  // namespace

A_Err cropUtil::LayerIsThreeD(SPBasicSuite* basic, AEGP_LayerH layer, unsigned char* is3D) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        AEGP_ObjectType type = AEGP_ObjectType_NONE;
        step(result, "read the layer's type",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerObjectType(layer, &type); });
        if (type != AEGP_ObjectType_CAMERA) {
            step(result, "ask whether the layer is 3D",
                 [&] { return suites.LayerSuite7()->AEGP_IsLayer3D(layer, is3D); });
            return;
        }
        AEGP_LayerFlags flags = 0;
        step(result, "read the camera's switches",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerFlags(layer, &flags); });
        if ((flags & AEGP_LayerFlag_VIDEO_ACTIVE) != 0) {
            *is3D = 1;
        }
    });
}

A_Err cropUtil::ThreeDInItem(SPBasicSuite* basic, int pluginId, AEGP_ItemH* item, unsigned char* checkPrefs) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        AEGP_CompH comp = nullptr;
        A_long layerCount = 0;
        step(result, "get the composition",
             [&] { return suites.CompSuite7()->AEGP_GetCompFromItem(*item, &comp); });
        step(result, "count its layers",
             [&] { return suites.LayerSuite7()->AEGP_GetCompNumLayers(comp, &layerCount); });

        A_u_char found = 0;
        for (A_long i = 0; i < layerCount && found == 0 && result.ok(); ++i) {
            AEGP_LayerH layer = nullptr;
            step(result, "get a layer",
                 [&] { return suites.LayerSuite7()->AEGP_GetCompLayerByIndex(comp, i, &layer); });
            step(result, "look for 3D", [&] { return LayerIsThreeD(basic, layer, &found); });
        }
        if (found == 0) {
            return;
        }

        Preferences preferences(suites);
        step(result, "open the preferences", [&] { return preferences.open(); });
        if (*checkPrefs != 0) {
            step(result, "read ThreeD", [&] { return preferences.readNumber(StrID_ThreeD, &threeDPref); });
            *checkPrefs = 0;  // also when the read failed
        }
        if (threeDPref == ask) {
            askAboutThreeD(suites, result, pluginId);
        }
        if (threeDPref == preCompose) {
            step(result, "pre-compose",
                 [&] { return PreCompose(pluginId, basic, comp, static_cast<unsigned int>(layerCount)); });
        }
    });
}

A_Err cropUtil::CheckForThreeD(SPBasicSuite* basic, int pluginId, AEGP_Collection2H selection,
                               unsigned int count, unsigned char* checkPrefs) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        for (unsigned int i = 0; i < count && result.ok(); ++i) {
            AEGP_CollectionItemV2 item{};
            AEGP_ItemH source = nullptr;
            step(result, "get a selected layer",
                 [&] { return suites.CollectionSuite2()->AEGP_GetCollectionItemByIndex(selection, i, &item); });
            step(result, "get its source",
                 [&] { return suites.LayerSuite7()->AEGP_GetLayerSourceItem(item.u.layer.layerH, &source); });
            step(result, "check it for 3D", [&] { return ThreeDInItem(basic, pluginId, &source, checkPrefs); });
        }
    });
}

A_Err cropUtil::PreCompose(int pluginId, SPBasicSuite* basic, AEGP_CompH comp, unsigned int numLayers) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        constexpr wchar_t suffixText[] = L" - Kestrin PreComp";
        A_UTF16Char suffix[std::size(suffixText)];
        copyConvertStringLiteralIntoUTF16(suffixText, suffix);

        AEGP_CompH duplicate = nullptr;
        AEGP_ItemH duplicateItem = nullptr;
        AEGP_ItemH item = nullptr;
        Memory name(suites, result);
        void* locked = nullptr;
        step(result, "duplicate the composition",
             [&] { return suites.CompSuite7()->AEGP_DuplicateComp(comp, &duplicate); });
        step(result, "get the duplicate's item",
             [&] { return suites.CompSuite7()->AEGP_GetItemFromComp(duplicate, &duplicateItem); });
        step(result, "get the composition's item",
             [&] { return suites.CompSuite7()->AEGP_GetItemFromComp(comp, &item); });
        step(result, "get the name",
             [&] { return suites.ItemSuite8()->AEGP_GetItemName(pluginId, item, name.put()); });
        step(result, "lock the name",
             [&] { return suites.MemorySuite1()->AEGP_LockMemHandle(name.get(), &locked); });
        step(result, "add the suffix to the composition's name", [&] {
            std::vector<A_UTF16Char> combined;
            for (auto unit = static_cast<const A_UTF16Char*>(locked); *unit != 0; ++unit) {
                combined.push_back(*unit);
            }
            combined.insert(combined.end(), std::begin(suffix), std::end(suffix));
            return suites.ItemSuite8()->AEGP_SetItemName(item, combined.data());
        });
        step(result, "give the duplicate the plain name", [&] {
            return suites.ItemSuite8()->AEGP_SetItemName(duplicateItem,
                                                         static_cast<const A_UTF16Char*>(locked));
        });
        step(result, "unlock the name",
             [&] { return suites.MemorySuite1()->AEGP_UnlockMemHandle(name.get()); });
        name.giveBack();

        for (unsigned int i = 0; i < numLayers && result.ok(); ++i) {
            AEGP_LayerH top = nullptr;
            step(result, "get the top layer",
                 [&] { return suites.LayerSuite7()->AEGP_GetCompLayerByIndex(comp, 0, &top); });
            step(result, "delete it", [&] { return suites.LayerSuite7()->AEGP_DeleteLayer(top); });
        }
        AEGP_LayerH nested = nullptr;
        step(result, "nest the duplicate",
             [&] { return suites.LayerSuite7()->AEGP_AddLayer(duplicateItem, comp, &nested); });
    });
}
