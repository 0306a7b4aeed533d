// The idle hook: the menu entry follows the modifier keys, and the script panel's requests are served.

#include "Kestrin.h"
#include "Kestrin_Strings.h"
#include "Operation.h"
#include "Preferences.h"
#include "Scripts.h"
#include "cropUtil.h"
#include "platform/keys.h"

namespace {

// The panel's requests bear these numbers; others set no mode and are refused.
enum class Mode : A_long { standard = 1, duration = 2, maskCrop = 3, preferences = 4 };

Mode currentMode() {
    return maskCropActive       ? Mode::maskCrop
           : preferencesActive  ? Mode::preferences
           : cropDurationActive ? Mode::duration
                                : Mode::standard;
}

void setMode(Mode mode) {
    maskCropActive = mode == Mode::maskCrop;
    cropDurationActive = mode == Mode::duration;
    preferencesActive = mode == Mode::preferences;
}

Mode modeOfKeys(platform::ModifierKeys keys) {
    if (keys.shift) {
        return keys.command ? Mode::maskCrop : Mode::preferences;
    }
    return keys.command ? Mode::duration : Mode::standard;
}

int menuTextOf(Mode mode) {
    switch (mode) {
        case Mode::maskCrop:
            return StrID_MaskCrop;
        case Mode::preferences:
            return StrID_KestrinPreferences;
        case Mode::duration:
            return durationMenuStrId;
        case Mode::standard:
            break;
    }
    return StrID_Kestrin;
}

bool canRun(Mode mode) {
    switch (mode) {
        case Mode::maskCrop:
            return maskCrop;
        case Mode::preferences:
            return true;
        case Mode::duration:
            return kestrinDuration;
        case Mode::standard:
            return kestrinStandard;
    }
    return false;  // a request with a number of its own
}

void followKeys(AEGP_SuiteHandler& suites, Result& result) {
    const Mode mode = modeOfKeys(platform::readModifierKeys(sP));
    if (mode == currentMode()) {
        return;
    }
    setMode(mode);
    step(result, "rename the menu entry", [&] {
        return suites.CommandSuite1()->AEGP_SetMenuCommandName(S_Kestrin_cmd, GetStringPtr(menuTextOf(mode)));
    });
    step(result, "enable the menu entry",
         [&] { return cropUtil::EnableDisableMenu(sP, S_Kestrin_cmd, canRun(mode)); });
}

void servePanel(AEGP_SuiteHandler& suites, Result& result) {
    Preferences preferences(suites);
    A_long panelRun = 0;
    A_long menuCommand = 0;
    step(result, "open the preferences", [&] { return preferences.open(); });
    // Read and removed, so that a request is served once.
    step(result, "read Panel_Run", [&] { return preferences.readNumber(StrID_PanelRun, &panelRun); });
    step(result, "remove Panel_Run", [&] { return preferences.remove(StrID_PanelRun); });
    if (panelRun == 0) {
        return;
    }
    step(result, "read Menu_Cmd", [&] { return preferences.readNumber(StrID_MenuCmd, &menuCommand); });
    step(result, "remove Menu_Cmd", [&] { return preferences.remove(StrID_MenuCmd); });
    if (menuCommand == 0) {
        step(result, "tell of the panel's error",
             [&] { return cropUtil::RunScript(suites, S_my_id, scripts::panelErrorAlert); });
        return;
    }

    const auto requested = static_cast<Mode>(panelRun);
    setMode(requested);
    step(result, "inspect the selection", [&] { return UpdateMenuHook(nullptr, nullptr, AEGP_WindowType{}); });
    if (canRun(requested)) {
        step(result, "run the command", [&] { return suites.CommandSuite1()->AEGP_DoCommand(menuCommand); });
    } else {
        step(result, "tell of the invalid selection",
             [&] { return cropUtil::RunScript(suites, S_my_id, scripts::invalidSelectionAlert); });
    }
    step(result, "disable the menu entry",
         [&] { return cropUtil::EnableDisableMenu(sP, S_Kestrin_cmd, false); });
}

}  // namespace

A_Err IdleHookCmd(AEGP_GlobalRefcon, AEGP_IdleRefcon, A_long*) {
    return hostCallback(sP, [](AEGP_SuiteHandler& suites, Result& result) {
        followKeys(suites, result);
        servePanel(suites, result);
    });
}
