// The plug-in as the host sees it: the entry point, the three hooks, and the values they share.
//
// The host calls all of them on its main thread, one at a time; the shared values are plain variables that
// live until the host unloads the plug-in.

#pragma once

#include "AEGP_Host.h"

#if defined(_WIN32)
#define KESTRIN_EXPORT __declspec(dllexport)
#else
#define KESTRIN_EXPORT __attribute__((visibility("default")))
#endif

// Set once by the entry point.
extern SPBasicSuite* sP;
extern AEGP_PluginID S_my_id;
extern AEGP_Command S_Kestrin_cmd;
extern char VERSION_NUMBER[20];

// What the one menu command means; none set: the standard crop. Written by the idle hook alone.
extern bool cropDurationActive;
extern bool maskCropActive;
extern bool preferencesActive;

// What the project and the selection allow. Written by the menu hook alone.
extern bool kestrinStandard;
extern bool kestrinDuration;
extern bool maskCrop;
extern A_short durationMenuStrId;  // string table id of the menu text in duration mode

extern "C" {

// Inserts the menu command and registers the hooks. Returns the first failure, having reported it; 516 where
// a suite is missing. Everything inserted or registered before the failure stays.
KESTRIN_EXPORT A_Err EntryPointFunc(SPBasicSuite* pica_basicP, A_long major_versionL, A_long minor_versionL,
                                    AEGP_PluginID aegp_plugin_id, AEGP_GlobalRefcon* global_refconP);

// Runs the plug-in's command. Other commands, and ones already handled, are left alone: 0 is returned and
// `*handledPB` not touched. Else it becomes true, also when a failure is returned.
A_Err CommandHook(AEGP_GlobalRefcon plugin_refconP, AEGP_CommandRefcon refconP, AEGP_Command command,
                  AEGP_HookPriority hook_priority, A_Boolean already_handledB, A_Boolean* handledPB);

// Works out what can run and enables or disables the menu entry for the current mode. The arguments are not
// used. Returns the first host failure; the entry is enabled or disabled also then.
A_Err UpdateMenuHook(AEGP_GlobalRefcon plugin_refconP, AEGP_UpdateMenuRefcon refconP,
                     AEGP_WindowType active_window);

// Follows the modifier keys and serves a request that the script panel left in the preferences.
// `*max_sleepPL` is left as it is. Returns the first host failure.
A_Err IdleHookCmd(AEGP_GlobalRefcon plugin_refconP, AEGP_IdleRefcon refconP, A_long* max_sleepPL);

}  // extern "C"
