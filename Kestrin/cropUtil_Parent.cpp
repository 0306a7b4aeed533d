// Re-parenting through the script engine, whose assignment compensates the child's transform.

#include "Numbers.h"
#include "Operation.h"
#include "Scripts.h"
#include "cropUtil.h"

A_Err cropUtil::SetParentNoShift(SPBasicSuite* basic, int pluginId, AEGP_LayerH child, AEGP_LayerH parent) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        AEGP_CompH comp = nullptr;
        AEGP_ItemH item = nullptr;
        A_long itemId = 0;
        A_long childIndex = 0;
        A_long parentIndex = -1;
        step(result, "get the composition",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerParentComp(child, &comp); });
        step(result, "get its item", [&] { return suites.CompSuite7()->AEGP_GetItemFromComp(comp, &item); });
        step(result, "get the item's id", [&] { return suites.ItemSuite8()->AEGP_GetItemID(item, &itemId); });
        step(result, "get the child's index",
             [&] { return suites.LayerSuite7()->AEGP_GetLayerIndex(child, &childIndex); });
        if (parent != nullptr) {
            step(result, "get the parent's index",
                 [&] { return suites.LayerSuite7()->AEGP_GetLayerIndex(parent, &parentIndex); });
        }
        step(result, "run the script", [&] {
            constexpr std::size_t longestNumber = 11;
            char script[1024] = "";
            static_assert(sizeof scripts::setParent + 3 * longestNumber <= sizeof script);
            // Scripts count layers from 1; 0 stands for no parent.
            SprintOS(script, sizeof script, scripts::setParent, itemId,
                     wrapToLong(std::int64_t{childIndex} + 1), wrapToLong(std::int64_t{parentIndex} + 1));
            return RunScript(suites, pluginId, script);
        });
    });
}
