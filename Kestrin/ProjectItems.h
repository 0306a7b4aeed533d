// A walk over all items of the open project, in the host's order.

#pragma once

#include "Operation.h"

// Calls `visit(item)` for each item; stops at the first failure. `visit` may add items and may delete those
// that it added itself.
template <class Visit>
void forEachProjectItem(AEGP_SuiteHandler& suites, Result& result, Visit&& visit) {
    AEGP_ProjectH project = nullptr;
    AEGP_ItemH item = nullptr;
    step(result, "get the project", [&] { return suites.ProjSuite6()->AEGP_GetProjectByIndex(0, &project); });
    step(result, "get the first item",
         [&] { return suites.ItemSuite8()->AEGP_GetFirstProjItem(project, &item); });
    while (result.ok() && item != nullptr) {
        visit(item);
        step(result, "get the next item", [&] {
            AEGP_ItemH next = nullptr;
            const A_Err error = suites.ItemSuite8()->AEGP_GetNextProjItem(project, item, &next);
            item = next;
            return error;
        });
    }
}

// The same, for the compositions that are selected in the Project panel.
template <class Visit>
void forEachSelectedComp(AEGP_SuiteHandler& suites, Result& result, Visit&& visit) {
    forEachProjectItem(suites, result, [&](AEGP_ItemH item) {
        A_Boolean selected = 0;
        AEGP_ItemType type = AEGP_ItemType_NONE;
        step(result, "ask whether the item is selected",
             [&] { return suites.ItemSuite8()->AEGP_IsItemSelected(item, &selected); });
        if (selected != 0) {
            step(result, "read the item's type",
                 [&] { return suites.ItemSuite8()->AEGP_GetItemType(item, &type); });
        }
        if (type == AEGP_ItemType_COMP) {
            visit(item);
        }
    });
}
