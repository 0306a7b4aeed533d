// The menu, and the hooks that the plug-in registers.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

A_Err getUniqueCommand(AEGP_Command* command) noexcept {
    return gate("AEGP_GetUniqueCommand", [&](Session& session) { need(command) = session.newCommand(); });
}

A_Err insertMenuCommand(AEGP_Command command, const A_char* name, AEGP_MenuID, A_long place) noexcept {
    return gate("AEGP_InsertMenuCommand",
                [&](Session& session) { session.insertMenuEntry(command, &need(name), place); });
}

A_Err setMenuCommandName(AEGP_Command command, const A_char* name) noexcept {
    return gate("AEGP_SetMenuCommandName",
                [&](Session& session) { session.menuEntry(command).name = &need(name); });
}

A_Err enableCommand(AEGP_Command command) noexcept {
    return gate("AEGP_EnableCommand", [&](Session& session) { session.menuEntry(command).enabled = true; });
}

A_Err disableCommand(AEGP_Command command) noexcept {
    return gate("AEGP_DisableCommand", [&](Session& session) { session.menuEntry(command).enabled = false; });
}

A_Err doCommand(AEGP_Command command) noexcept {
    return gate("AEGP_DoCommand", [&](Session& session) {
        if (const A_Err error = session.offerCommand(command)) {
            throw HostError{error, "the command " + std::to_string(command) + " failed"};
        }
    });
}

A_Err registerCommandHook(AEGP_PluginID, AEGP_HookPriority, AEGP_Command command, AEGP_CommandHook hook,
                          AEGP_CommandRefcon refcon) noexcept {
    return gate("AEGP_RegisterCommandHook",
                [&](Session& session) { session.registerCommandHook(command, &need(hook), refcon); });
}

A_Err registerUpdateMenuHook(AEGP_PluginID, AEGP_UpdateMenuHook hook, AEGP_UpdateMenuRefcon refcon) noexcept {
    return gate("AEGP_RegisterUpdateMenuHook",
                [&](Session& session) { session.registerMenuHook(&need(hook), refcon); });
}

A_Err registerIdleHook(AEGP_PluginID, AEGP_IdleHook hook, AEGP_IdleRefcon refcon) noexcept {
    return gate("AEGP_RegisterIdleHook",
                [&](Session& session) { session.registerIdleHook(&need(hook), refcon); });
}

}  // namespace

const AEGP_CommandSuite1 tableCommandSuite1 = makeTable<AEGP_CommandSuite1>([](auto& table) {
    table.AEGP_GetUniqueCommand = getUniqueCommand;
    table.AEGP_InsertMenuCommand = insertMenuCommand;
    table.AEGP_SetMenuCommandName = setMenuCommandName;
    table.AEGP_EnableCommand = enableCommand;
    table.AEGP_DisableCommand = disableCommand;
    table.AEGP_DoCommand = doCommand;
});

const AEGP_RegisterSuite5 tableRegisterSuite5 = makeTable<AEGP_RegisterSuite5>([](auto& table) {
    table.AEGP_RegisterCommandHook = registerCommandHook;
    table.AEGP_RegisterUpdateMenuHook = registerUpdateMenuHook;
    table.AEGP_RegisterIdleHook = registerIdleHook;
});

}  // namespace headless
