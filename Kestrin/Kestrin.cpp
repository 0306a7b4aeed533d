// The entry point: one menu command under a separator, and three hooks.

#include "Kestrin.h"

#include "Kestrin_Strings.h"
#include "Operation.h"
#include "cropUtil.h"

SPBasicSuite* sP = nullptr;
AEGP_PluginID S_my_id = 0;
AEGP_Command S_Kestrin_cmd = 0;
char VERSION_NUMBER[20] = "";

A_Err EntryPointFunc(SPBasicSuite* pica_basicP, A_long, A_long, AEGP_PluginID aegp_plugin_id,
                     AEGP_GlobalRefcon*) {
    sP = pica_basicP;
    S_my_id = aegp_plugin_id;
    return hostCallback(sP, [](AEGP_SuiteHandler& suites, Result& result) {
        cropUtil::SprintOS(VERSION_NUMBER, sizeof VERSION_NUMBER, "%d.%d.%d", KESTRIN_VERSION_MAJOR,
                           KESTRIN_VERSION_MINOR, KESTRIN_VERSION_PATCH);

        constexpr AEGP_Command noCommand = 0;  // the separator is nobody's command
        step(result, "insert the separator", [&] {
            return suites.CommandSuite1()->AEGP_InsertMenuCommand(noCommand, "-", AEGP_Menu_LAYER,
                                                                  AEGP_MENU_INSERT_AT_BOTTOM);
        });
        step(result, "get a command number",
             [&] { return suites.CommandSuite1()->AEGP_GetUniqueCommand(&S_Kestrin_cmd); });
        step(result, "insert the command", [&] {
            return suites.CommandSuite1()->AEGP_InsertMenuCommand(S_Kestrin_cmd, GetStringPtr(StrID_Kestrin),
                                                                  AEGP_Menu_LAYER, AEGP_MENU_INSERT_AT_BOTTOM);
        });
        step(result, "register the command hook", [&] {
            return suites.RegisterSuite5()->AEGP_RegisterCommandHook(S_my_id, AEGP_HP_BeforeAE,
                                                                     AEGP_Command_ALL, CommandHook, nullptr);
        });
        step(result, "register the menu hook", [&] {
            return suites.RegisterSuite5()->AEGP_RegisterUpdateMenuHook(S_my_id, UpdateMenuHook, nullptr);
        });
        step(result, "register the idle hook",
             [&] { return suites.RegisterSuite5()->AEGP_RegisterIdleHook(S_my_id, IdleHookCmd, nullptr); });
        if (!result.ok()) {
            suites.UtilitySuite5()->AEGP_ReportInfo(S_my_id, GetStringPtr(StrID_StartUpProblem));
        }
    });
}
