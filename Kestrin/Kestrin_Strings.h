// The string table: menu texts, undo names, preference section and keys.

#pragma once

enum StringId : int {
    StrID_Kestrin = 1,  // menu text and undo name
    StrID_KestrinDuration = 2,
    StrID_MultipleLayers = 3,
    StrID_KestrinPreferences = 4,
    StrID_MaskCrop = 5,
    StrID_StartUpProblem = 7,
    StrID_Section = 8,  // of the host's preferences; the keys follow
    StrID_Padding = 9,
    StrID_PaddingAmount = 10,
    StrID_DeleteMask = 11,
    StrID_IncludeMasks = 12,
    StrID_Expand = 13,
    StrID_ExpandAmount = 14,
    StrID_Resolution = 15,
    StrID_ThreeD = 16,
    StrID_PanelRun = 17,
    StrID_MenuCmd = 18,
};

// The text of row `id`, which must be one of the table's. Static storage.
const char* GetStringPtr(int id);
