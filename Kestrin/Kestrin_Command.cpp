// The command hook: which of the four functions runs, with the current time and the undo group around it.

#include <cstring>

#include "Crop.h"
#include "HostHandles.h"
#include "Kestrin.h"
#include "Kestrin_Strings.h"
#include "Operation.h"
#include "Preferences.h"
#include "ProjectItems.h"
#include "Scripts.h"
#include "cropUtil.h"

bool cropDurationActive = false;
bool maskCropActive = false;
bool preferencesActive = false;

namespace {

// Runs `body` and puts the item's current time back, unless something failed.
template <class Body>
void keepingCurrentTime(AEGP_SuiteHandler& suites, Result& result, AEGP_ItemH item, Body&& body) {
    A_Time saved{0, 1};
    step(result, "save the current time",
         [&] { return suites.ItemSuite8()->AEGP_GetItemCurrentTime(item, &saved); });
    body();
    step(result, "restore the current time",
         [&] { return suites.ItemSuite8()->AEGP_SetItemCurrentTime(item, &saved); });
}

void cropActiveItem(Result& result, Preferences& preferences) {
    A_Boolean expand = 0;
    A_long expandAmount = 0;
    step(result, "read Expand", [&] { return preferences.readFlag(StrID_Expand, &expand); });
    if (expand != 0) {
        step(result, "read ExpandAmount",
             [&] { return preferences.readNumber(StrID_ExpandAmount, &expandAmount); });
    }
    if (expandAmount != 0) {
        step(result, "expand",
             [&] { return crop::standardCrop(sP, S_my_id, nullptr, static_cast<A_short>(expandAmount)); });
    }
    step(result, "crop", [&] { return crop::standardCrop(sP, S_my_id, nullptr, 0); });
}

void runStandardCrop(AEGP_SuiteHandler& suites, Result& result) {
    Preferences preferences(suites);
    AEGP_ItemH active = nullptr;
    step(result, "open the preferences", [&] { return preferences.open(); });
    step(result, "start the undo group",
         [&] { return suites.UtilitySuite5()->AEGP_StartUndoGroup(GetStringPtr(StrID_Kestrin)); });
    step(result, "get the active item", [&] { return suites.ItemSuite8()->AEGP_GetActiveItem(&active); });
    if (active != nullptr) {
        keepingCurrentTime(suites, result, active, [&] { cropActiveItem(result, preferences); });
    } else {
        forEachSelectedComp(suites, result, [&](AEGP_ItemH comp) {
            keepingCurrentTime(suites, result, comp, [&] {
                step(result, "crop", [&] { return crop::standardCrop(sP, S_my_id, comp, 0); });
            });
        });
    }
    // After a failure the host closes the group.
    step(result, "end the undo group", [&] { return suites.UtilitySuite5()->AEGP_EndUndoGroup(); });
}

// The other crops open undo groups of their own.
template <class Run>
void runOnActiveItem(AEGP_SuiteHandler& suites, Result& result, Run&& run) {
    AEGP_ItemH active = nullptr;
    step(result, "get the active item", [&] { return suites.ItemSuite8()->AEGP_GetActiveItem(&active); });
    keepingCurrentTime(suites, result, active, [&] { step(result, "crop", run); });
}

void showPreferences(AEGP_SuiteHandler& suites, Result& result) {
    char script[6185] = "";
    static_assert(sizeof scripts::preferences <= sizeof script,
                  "the preferences dialog does not fit its buffer; a shorter KESTRIN_HELP_PAGE may help");

    Preferences preferences(suites);
    Memory answer(suites, result);
    step(result, "open the preferences", [&] { return preferences.open(); });
    std::memcpy(script, scripts::preferences, sizeof scripts::preferences);
    step(result, "show the preferences dialog",
         [&] { return cropUtil::RunScript(suites, S_my_id, script, answer.put()); });
}

}  // namespace

A_Err CommandHook(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command command, AEGP_HookPriority,
                  A_Boolean already_handledB, A_Boolean* handledPB) {
    if (command != S_Kestrin_cmd || already_handledB != 0) {
        return A_Err_NONE;
    }
    const A_Err error = hostCallback(sP, [](AEGP_SuiteHandler& suites, Result& result) {
        if (preferencesActive) {
            showPreferences(suites, result);
        } else if (cropDurationActive) {
            runOnActiveItem(suites, result, [] { return crop::cropDuration(sP, S_my_id); });
        } else if (maskCropActive) {
            runOnActiveItem(suites, result, [] { return crop::maskCrop(sP, S_my_id); });
        } else {
            runStandardCrop(suites, result);
        }
    });
    *handledPB = 1;
    return error;
}
