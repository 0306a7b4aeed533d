// The host's binary interface, as far as a general plug-in uses it: types, constants and one struct
// of function pointers for each suite table.
//
// The layout is a contract with a program that we do not build: one wrong slot or width calls the
// wrong function there. AEGP_HostLayout.cpp asserts every table's size and every used slot's offset.
// Every function returns A_Err, uses the C calling convention and runs on the host's main thread.

#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

// ---- Scalars -------------------------------------------------------------------------------------

using A_long = std::int32_t;
using A_u_long = std::uint32_t;
using A_short = std::int16_t;
using A_u_short = std::uint16_t;
using A_u_longlong = std::uint64_t;
using A_char = char;
using A_u_char = std::uint8_t;
using A_Boolean = std::uint8_t;
using A_FpLong = double;
using A_FpShort = float;
using A_UTF16Char = std::uint16_t;
using A_Err = std::int32_t;
using SPErr = std::int32_t;
using SPBoolean = std::uint8_t;

using AEGP_PluginID = std::int32_t;
using AEGP_Command = std::int32_t;
using AEGP_LayerStream = std::int32_t;
using AEGP_MaskStream = std::int32_t;
using AEGP_LayerFlags = std::int32_t;
using AEGP_ItemFlags = std::int32_t;
using AEGP_ObjectType = std::int32_t;
using AEGP_WorldType = std::int32_t;
using AEGP_KeyframeIndex = std::int32_t;
using AEGP_MaskIndex = std::int32_t;
using AEGP_VertexIndex = std::int32_t;
using AEGP_KeyframeInterpolationType = std::int32_t;
using AEGP_HookPriority = std::uint32_t;
using AEGP_MemSize = std::uint32_t;
using AEGP_ItemType = std::int16_t;
using AEGP_LTimeMode = std::int16_t;

// One byte on macOS, four elsewhere.
#if defined(__APPLE__)
using A_LegacyEnumType = char;
#else
using A_LegacyEnumType = std::int32_t;
#endif
using AEGP_MenuID = A_LegacyEnumType;
using AEGP_WindowType = A_LegacyEnumType;
using AEGP_CollectionItemType = A_LegacyEnumType;
using AEGP_StreamCollectionItemType = A_LegacyEnumType;

// ---- Handles: pointer to pointer to something only the host knows ---------------------------------

#define AEGP_DECLARE_HANDLE(name) \
    struct name##_Opaque;         \
    using name = name##_Opaque**
AEGP_DECLARE_HANDLE(AEGP_ProjectH);
AEGP_DECLARE_HANDLE(AEGP_ItemH);
AEGP_DECLARE_HANDLE(AEGP_CompH);
AEGP_DECLARE_HANDLE(AEGP_LayerH);
AEGP_DECLARE_HANDLE(AEGP_MaskRefH);
AEGP_DECLARE_HANDLE(AEGP_StreamRefH);
AEGP_DECLARE_HANDLE(AEGP_MaskOutlineValH);
AEGP_DECLARE_HANDLE(AEGP_Collection2H);
AEGP_DECLARE_HANDLE(AEGP_WorldH);
AEGP_DECLARE_HANDLE(AEGP_RenderOptionsH);
AEGP_DECLARE_HANDLE(AEGP_FrameReceiptH);
AEGP_DECLARE_HANDLE(AEGP_MemHandle);
AEGP_DECLARE_HANDLE(AEGP_PersistentBlobH);
#undef AEGP_DECLARE_HANDLE

#define AEGP_DECLARE_REFCON(name) \
    struct name##_Opaque;         \
    using name = name##_Opaque*
AEGP_DECLARE_REFCON(AEGP_GlobalRefcon);
AEGP_DECLARE_REFCON(AEGP_CommandRefcon);
AEGP_DECLARE_REFCON(AEGP_UpdateMenuRefcon);
AEGP_DECLARE_REFCON(AEGP_IdleRefcon);
AEGP_DECLARE_REFCON(AEGP_CancelRefcon);
#undef AEGP_DECLARE_REFCON

// ---- Values ----------------------------------------------------------------------------------------

// Seconds are value / scale.
struct A_Time {
    A_long value;
    A_u_long scale;
};

struct A_Ratio {
    A_long num;
    A_u_long den;
};

struct A_FloatRect {
    A_FpLong left, top, right, bottom;
};

struct AEGP_DownsampleFactor {
    A_short xS, yS;
};

struct PF_Pixel8 {
    A_u_char alpha, red, green, blue;
};

// Channels run from 0 to 32768.
struct PF_Pixel16 {
    A_u_short alpha, red, green, blue;
};

struct PF_PixelFloat {
    A_FpShort alpha, red, green, blue;
};

using AEGP_OneDVal = A_FpLong;

struct AEGP_TwoDVal {
    A_FpLong x, y;
};

struct AEGP_ThreeDVal {
    A_FpLong x, y, z;
};

using AEGP_FourDVal = A_FpLong[4];

struct AEGP_ColorVal {
    A_FpLong alpha, red, green, blue;
};

union AEGP_StreamVal2 {
    AEGP_FourDVal four_d;
    AEGP_ThreeDVal three_d;
    AEGP_TwoDVal two_d;
    AEGP_OneDVal one_d;
    AEGP_ColorVal color;
    void** arbH;
    void* markerP;
    std::int32_t layer_id;
    std::int32_t mask_id;
    AEGP_MaskOutlineValH mask;
    void** text_documentH;
};

struct AEGP_StreamValue2 {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal2 val;
};

// Source pixels of the layer; both tangents are relative to the vertex.
struct AEGP_MaskVertex {
    A_FpLong x, y;
    A_FpLong tan_in_x, tan_in_y;
    A_FpLong tan_out_x, tan_out_y;
};

struct AEGP_LayerCollectionItem {
    AEGP_LayerH layerH;
};

struct AEGP_MaskCollectionItem {
    AEGP_LayerH layerH;
    AEGP_MaskIndex index;
};

struct AEGP_EffectCollectionItem {
    AEGP_LayerH layerH;
    std::int32_t index;
};

struct AEGP_LayerStreamCollectionItem {
    AEGP_LayerH layerH;
    AEGP_LayerStream stream;
};

struct AEGP_MaskStreamCollectionItem {
    AEGP_MaskCollectionItem mask;
    AEGP_MaskStream stream;
};

struct AEGP_EffectStreamCollectionItem {
    AEGP_EffectCollectionItem effect;
    std::int32_t param_index;
};

struct AEGP_StreamCollectionItem {
    AEGP_StreamCollectionItemType type;
    union {
        AEGP_LayerStreamCollectionItem layer_stream;
        AEGP_MaskStreamCollectionItem mask_stream;
        AEGP_EffectStreamCollectionItem effect_stream;
    } u;
};

struct AEGP_MaskVertexCollectionItem {
    AEGP_MaskCollectionItem mask;
    std::int32_t index;
};

struct AEGP_KeyframeCollectionItem {
    AEGP_StreamCollectionItem stream;
    std::int32_t index;
};

// The bytes between type and u are not defined: compare type as the type it is, never as a wider one.
struct AEGP_CollectionItemV2 {
    AEGP_CollectionItemType type;
    union {
        AEGP_LayerCollectionItem layer;
        AEGP_MaskCollectionItem mask;
        AEGP_EffectCollectionItem effect;
        AEGP_StreamCollectionItem stream;
        AEGP_MaskVertexCollectionItem mask_vertex;
        AEGP_KeyframeCollectionItem keyframe;
    } u;
    AEGP_StreamRefH stream_refH;
};

// ---- Constants -------------------------------------------------------------------------------------

enum : A_Err {
    A_Err_NONE = 0,
    A_Err_GENERIC = 1,
    A_Err_STRUCT = 2,
    A_Err_PARAMETER = 3,
    A_Err_ALLOC = 4,
    A_Err_WRONG_THREAD = 5,
    A_Err_CONST_PROJECT_MODIFICATION = 6,
    A_Err_MISSING_SUITE = 13,
    PF_Err_INVALID_INDEX = 513,
    PF_Err_BAD_CALLBACK_PARAM = 516,
};

enum : AEGP_ItemType {
    AEGP_ItemType_NONE = 0,
    AEGP_ItemType_FOLDER = 1,
    AEGP_ItemType_COMP = 2,
    AEGP_ItemType_FOOTAGE = 4,
};

enum : AEGP_ObjectType {
    AEGP_ObjectType_NONE = -1,
    AEGP_ObjectType_AV = 0,
    AEGP_ObjectType_LIGHT = 1,
    AEGP_ObjectType_CAMERA = 2,
    AEGP_ObjectType_TEXT = 3,
    AEGP_ObjectType_VECTOR = 4,
};

enum : AEGP_LayerStream {
    AEGP_LayerStream_ANCHORPOINT = 0,
    AEGP_LayerStream_POSITION = 1,
    AEGP_LayerStream_SCALE = 2,
    AEGP_LayerStream_ROTATION = 3,
    AEGP_LayerStream_OPACITY = 4,
    AEGP_LayerStream_MARKER = 6,
    AEGP_LayerStream_TIME_REMAP = 7,
};

enum : AEGP_MaskStream {
    AEGP_MaskStream_OUTLINE = 400,
    AEGP_MaskStream_OPACITY = 401,
    AEGP_MaskStream_FEATHER = 402,
    AEGP_MaskStream_EXPANSION = 403,
};

enum : AEGP_LTimeMode {
    AEGP_LTimeMode_LayerTime = 0,
    AEGP_LTimeMode_CompTime = 1,
};

enum : AEGP_KeyframeInterpolationType {
    AEGP_KeyInterp_NONE = 0,
    AEGP_KeyInterp_LINEAR = 1,
    AEGP_KeyInterp_BEZIER = 2,
    AEGP_KeyInterp_HOLD = 3,
};

enum : AEGP_CollectionItemType {
    AEGP_CollectionItemType_NONE = 0,
    AEGP_CollectionItemType_LAYER = 1,
    AEGP_CollectionItemType_MASK = 2,
    AEGP_CollectionItemType_EFFECT = 3,
    AEGP_CollectionItemType_STREAM = 4,
    AEGP_CollectionItemType_KEYFRAME = 5,
    AEGP_CollectionItemType_MASK_VERTEX = 6,
    AEGP_CollectionItemType_STREAMREF = 7,
};

enum : AEGP_LayerFlags {
    AEGP_LayerFlag_VIDEO_ACTIVE = 0x1,
    AEGP_LayerFlag_AUDIO_ACTIVE = 0x2,
    AEGP_LayerFlag_EFFECTS_ACTIVE = 0x4,
    AEGP_LayerFlag_LOCKED = 0x20,
    AEGP_LayerFlag_COLLAPSE = 0x80,
    AEGP_LayerFlag_ADJUSTMENT_LAYER = 0x200,
    AEGP_LayerFlag_TIME_REMAPPING = 0x400,
    AEGP_LayerFlag_LAYER_IS_3D = 0x800,
    AEGP_LayerFlag_NULL_LAYER = 0x10000,
    AEGP_LayerFlag_GUIDE_LAYER = 0x40000,
};

enum : AEGP_WorldType {
    AEGP_WorldType_NONE = 0,
    AEGP_WorldType_8 = 1,
    AEGP_WorldType_16 = 2,
    AEGP_WorldType_32 = 3,
};

enum : AEGP_MenuID { AEGP_Menu_LAYER = 5 };

enum : A_long {
    AEGP_MENU_INSERT_SORTED = -2,
    AEGP_MENU_INSERT_AT_BOTTOM = -1,
    AEGP_MENU_INSERT_AT_TOP = 0,
};

enum : AEGP_HookPriority {
    AEGP_HP_BeforeAE = 1,
    AEGP_HP_AfterAE = 2,
};

enum : AEGP_Command { AEGP_Command_ALL = 0 };

// A stream that cannot have keyframes reports this number of them.
enum : A_long { AEGP_NumKF_NO_DATA = -1 };

// ---- Callbacks -------------------------------------------------------------------------------------

using AEGP_CommandHook = A_Err (*)(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command, AEGP_HookPriority,
                                   A_Boolean already_handled, A_Boolean* handled);
using AEGP_UpdateMenuHook = A_Err (*)(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType);
using AEGP_IdleHook = A_Err (*)(AEGP_GlobalRefcon, AEGP_IdleRefcon, A_long* max_sleep);
using AEGP_RenderSuiteCheckForCancel = A_Err (*)(void* refcon, A_Boolean* cancel);

// ---- Tables ----------------------------------------------------------------------------------------

struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version);
    SPBoolean (*IsEqual)(const char*, const char*);
    SPErr (*AllocateBlock)(std::size_t size, void** block);
    SPErr (*FreeBlock)(void* block);
    SPErr (*ReallocateBlock)(void* block, std::size_t newSize, void** newblock);
    SPErr (*Undefined)();
};

// A slot that the plug-in never calls. It keeps the slots behind it in their place; its real
// arguments are not declared.
using AEGP_UnusedSlot = A_Err (*)();

// "AEGP Command Suite", acquired as number 1.
struct AEGP_CommandSuite1 {
    A_Err (*AEGP_GetUniqueCommand)(AEGP_Command*);
    A_Err (*AEGP_InsertMenuCommand)(AEGP_Command, const A_char*, AEGP_MenuID, A_long);
    AEGP_UnusedSlot AEGP_RemoveMenuCommand;
    A_Err (*AEGP_SetMenuCommandName)(AEGP_Command, const A_char*);
    A_Err (*AEGP_EnableCommand)(AEGP_Command);
    A_Err (*AEGP_DisableCommand)(AEGP_Command);
    AEGP_UnusedSlot AEGP_CheckMarkMenuCommand;
    A_Err (*AEGP_DoCommand)(AEGP_Command);
};

// "AEGP Register Suite", acquired as number 6.
struct AEGP_RegisterSuite5 {
    A_Err (*AEGP_RegisterCommandHook)(AEGP_PluginID, AEGP_HookPriority, AEGP_Command, AEGP_CommandHook,
                                      AEGP_CommandRefcon);
    A_Err (*AEGP_RegisterUpdateMenuHook)(AEGP_PluginID, AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon);
    AEGP_UnusedSlot AEGP_RegisterDeathHook;
    AEGP_UnusedSlot AEGP_RegisterVersionHook;
    AEGP_UnusedSlot AEGP_RegisterAboutStringHook;
    AEGP_UnusedSlot AEGP_RegisterAboutHook;
    AEGP_UnusedSlot AEGP_RegisterArtisan;
    AEGP_UnusedSlot AEGP_RegisterIO;
    A_Err (*AEGP_RegisterIdleHook)(AEGP_PluginID, AEGP_IdleHook, AEGP_IdleRefcon);
    AEGP_UnusedSlot AEGP_RegisterTracker;
    AEGP_UnusedSlot AEGP_RegisterInteractiveArtisan;
    AEGP_UnusedSlot AEGP_RegisterPresetLocalizationString;
};

// "AEGP Utility Suite", acquired as number 11.
struct AEGP_UtilitySuite5 {
    A_Err (*AEGP_ReportInfo)(AEGP_PluginID, const A_char*);
    AEGP_UnusedSlot AEGP_GetDriverPluginInitFuncVersion;
    AEGP_UnusedSlot AEGP_GetDriverImplementationVersion;
    AEGP_UnusedSlot AEGP_StartQuietErrors;
    AEGP_UnusedSlot AEGP_EndQuietErrors;
    A_Err (*AEGP_GetLastErrorMessage)(A_long, A_char*, A_Err*);
    A_Err (*AEGP_StartUndoGroup)(const A_char*);
    A_Err (*AEGP_EndUndoGroup)();
    AEGP_UnusedSlot AEGP_RegisterWithAEGP;
    AEGP_UnusedSlot AEGP_GetMainHWND;
    AEGP_UnusedSlot AEGP_ShowHideAllFloaters;
    AEGP_UnusedSlot AEGP_PaintPalGetForeColor;
    AEGP_UnusedSlot AEGP_PaintPalGetBackColor;
    AEGP_UnusedSlot AEGP_PaintPalSetForeColor;
    AEGP_UnusedSlot AEGP_PaintPalSetBackColor;
    AEGP_UnusedSlot AEGP_CharPalGetFillColor;
    AEGP_UnusedSlot AEGP_CharPalGetStrokeColor;
    AEGP_UnusedSlot AEGP_CharPalSetFillColor;
    AEGP_UnusedSlot AEGP_CharPalSetStrokeColor;
    AEGP_UnusedSlot AEGP_CharPalIsFillColorUIFrontmost;
    AEGP_UnusedSlot AEGP_ConvertFpLongToHSFRatio;
    AEGP_UnusedSlot AEGP_ConvertHSFRatioToFpLong;
    AEGP_UnusedSlot AEGP_CauseIdleRoutinesToBeCalled;
    AEGP_UnusedSlot AEGP_GetSuppressInteractiveUI;
    AEGP_UnusedSlot AEGP_WriteToOSConsole;
    AEGP_UnusedSlot AEGP_WriteToDebugLog;
    AEGP_UnusedSlot AEGP_IsScriptingAvailable;
    A_Err (*AEGP_ExecuteScript)(AEGP_PluginID, const A_char*, A_Boolean, AEGP_MemHandle*, AEGP_MemHandle*);
    AEGP_UnusedSlot AEGP_HostIsActivated;
    AEGP_UnusedSlot AEGP_GetPluginPlatformRef;
    AEGP_UnusedSlot AEGP_UpdateFontList;
};

// "AEGP Persistent Data Suite", acquired as number 3.
struct AEGP_PersistentDataSuite3 {
    A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentBlobH*);
    AEGP_UnusedSlot AEGP_GetNumSections;
    AEGP_UnusedSlot AEGP_GetSectionKeyByIndex;
    AEGP_UnusedSlot AEGP_DoesKeyExist;
    AEGP_UnusedSlot AEGP_GetNumKeys;
    AEGP_UnusedSlot AEGP_GetValueKeyByIndex;
    AEGP_UnusedSlot AEGP_GetDataHandle;
    A_Err (*AEGP_GetData)(AEGP_PersistentBlobH, const A_char*, const A_char*, A_u_long, const void*, void*);
    AEGP_UnusedSlot AEGP_GetString;
    A_Err (*AEGP_GetLong)(AEGP_PersistentBlobH, const A_char*, const A_char*, A_long, A_long*);
    AEGP_UnusedSlot AEGP_GetFpLong;
    AEGP_UnusedSlot AEGP_SetDataHandle;
    AEGP_UnusedSlot AEGP_SetData;
    AEGP_UnusedSlot AEGP_SetString;
    AEGP_UnusedSlot AEGP_SetLong;
    AEGP_UnusedSlot AEGP_SetFpLong;
    A_Err (*AEGP_DeleteEntry)(AEGP_PersistentBlobH, const A_char*, const A_char*);
    AEGP_UnusedSlot AEGP_GetPrefsDirectory;
};

// "AEGP Memory Suite", acquired as number 1.
struct AEGP_MemorySuite1 {
    AEGP_UnusedSlot AEGP_NewMemHandle;
    A_Err (*AEGP_FreeMemHandle)(AEGP_MemHandle);
    A_Err (*AEGP_LockMemHandle)(AEGP_MemHandle, void**);
    A_Err (*AEGP_UnlockMemHandle)(AEGP_MemHandle);
    A_Err (*AEGP_GetMemHandleSize)(AEGP_MemHandle, AEGP_MemSize*);
    AEGP_UnusedSlot AEGP_ResizeMemHandle;
    AEGP_UnusedSlot AEGP_SetMemReportingOn;
    AEGP_UnusedSlot AEGP_GetMemStats;
};

// "AEGP Proj Suite", acquired as number 8.
struct AEGP_ProjSuite5 {
    A_Err (*AEGP_GetNumProjects)(A_long*);
    A_Err (*AEGP_GetProjectByIndex)(A_long, AEGP_ProjectH*);
    A_Err (*AEGP_GetProjectName)(AEGP_ProjectH, A_char*);
    AEGP_UnusedSlot AEGP_GetProjectPath;
    AEGP_UnusedSlot AEGP_GetProjectRootFolder;
    AEGP_UnusedSlot AEGP_SaveProjectToPath;
    AEGP_UnusedSlot AEGP_GetProjectTimeDisplay;
    AEGP_UnusedSlot AEGP_SetProjectTimeDisplay;
    AEGP_UnusedSlot AEGP_ProjectIsDirty;
    AEGP_UnusedSlot AEGP_SaveProjectAs;
    AEGP_UnusedSlot AEGP_NewProject;
    AEGP_UnusedSlot AEGP_OpenProjectFromPath;
    AEGP_UnusedSlot AEGP_GetProjectBitDepth;
    AEGP_UnusedSlot AEGP_SetProjectBitDepth;
};

// "AEGP Proj Suite", acquired as number 9.
struct AEGP_ProjSuite6 {
    A_Err (*AEGP_GetNumProjects)(A_long*);
    A_Err (*AEGP_GetProjectByIndex)(A_long, AEGP_ProjectH*);
    A_Err (*AEGP_GetProjectName)(AEGP_ProjectH, A_char*);
    AEGP_UnusedSlot AEGP_GetProjectPath;
    AEGP_UnusedSlot AEGP_GetProjectRootFolder;
    AEGP_UnusedSlot AEGP_SaveProjectToPath;
    AEGP_UnusedSlot AEGP_GetProjectTimeDisplay;
    AEGP_UnusedSlot AEGP_SetProjectTimeDisplay;
    AEGP_UnusedSlot AEGP_ProjectIsDirty;
    AEGP_UnusedSlot AEGP_SaveProjectAs;
    AEGP_UnusedSlot AEGP_NewProject;
    AEGP_UnusedSlot AEGP_OpenProjectFromPath;
    AEGP_UnusedSlot AEGP_GetProjectBitDepth;
    AEGP_UnusedSlot AEGP_SetProjectBitDepth;
};

// "AEGP Item Suite", acquired as number 3.
struct AEGP_ItemSuite1 {
    AEGP_UnusedSlot AEGP_GetNextItem;
    A_Err (*AEGP_GetActiveItem)(AEGP_ItemH*);
    A_Err (*AEGP_IsItemSelected)(AEGP_ItemH, A_Boolean*);
    AEGP_UnusedSlot AEGP_SelectItem;
    A_Err (*AEGP_GetItemType)(AEGP_ItemH, AEGP_ItemType*);
    AEGP_UnusedSlot AEGP_GetTypeName;
    A_Err (*AEGP_GetItemName)(AEGP_ItemH, A_char*);
    A_Err (*AEGP_GetItemID)(AEGP_ItemH, A_long*);
    A_Err (*AEGP_GetItemFlags)(AEGP_ItemH, AEGP_ItemFlags*);
    AEGP_UnusedSlot AEGP_SetItemUseProxy;
    AEGP_UnusedSlot AEGP_GetItemParentFolder;
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemCurrentTime)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH, A_long*, A_long*);
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH, A_Ratio*);
    A_Err (*AEGP_DeleteItem)(AEGP_ItemH);
    AEGP_UnusedSlot AEGP_GetItemSolidColor;
    AEGP_UnusedSlot AEGP_CreateNewFolder;
    A_Err (*AEGP_SetItemCurrentTime)(AEGP_ItemH, const A_Time*);
    AEGP_UnusedSlot AEGP_RenderNewItemSoundData;
};

// "AEGP Item Suite", acquired as number 10.
struct AEGP_ItemSuite6 {
    A_Err (*AEGP_GetFirstProjItem)(AEGP_ProjectH, AEGP_ItemH*);
    A_Err (*AEGP_GetNextProjItem)(AEGP_ProjectH, AEGP_ItemH, AEGP_ItemH*);
    A_Err (*AEGP_GetActiveItem)(AEGP_ItemH*);
    A_Err (*AEGP_IsItemSelected)(AEGP_ItemH, A_Boolean*);
    AEGP_UnusedSlot AEGP_SelectItem;
    A_Err (*AEGP_GetItemType)(AEGP_ItemH, AEGP_ItemType*);
    AEGP_UnusedSlot AEGP_GetTypeName;
    A_Err (*AEGP_GetItemName)(AEGP_ItemH, A_char*);
    A_Err (*AEGP_SetItemName)(AEGP_ItemH, const A_char*);
    A_Err (*AEGP_GetItemID)(AEGP_ItemH, A_long*);
    A_Err (*AEGP_GetItemFlags)(AEGP_ItemH, AEGP_ItemFlags*);
    AEGP_UnusedSlot AEGP_SetItemUseProxy;
    AEGP_UnusedSlot AEGP_GetItemParentFolder;
    AEGP_UnusedSlot AEGP_SetItemParentFolder;
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemCurrentTime)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH, A_long*, A_long*);
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH, A_Ratio*);
    A_Err (*AEGP_DeleteItem)(AEGP_ItemH);
    AEGP_UnusedSlot AEGP_CreateNewFolder;
    A_Err (*AEGP_SetItemCurrentTime)(AEGP_ItemH, const A_Time*);
    AEGP_UnusedSlot AEGP_GetItemCommentLength;
    AEGP_UnusedSlot AEGP_GetItemComment;
    AEGP_UnusedSlot AEGP_SetItemComment;
    AEGP_UnusedSlot AEGP_GetItemLabel;
    AEGP_UnusedSlot AEGP_SetItemLabel;
};

// "AEGP Item Suite", acquired as number 13.
struct AEGP_ItemSuite8 {
    A_Err (*AEGP_GetFirstProjItem)(AEGP_ProjectH, AEGP_ItemH*);
    A_Err (*AEGP_GetNextProjItem)(AEGP_ProjectH, AEGP_ItemH, AEGP_ItemH*);
    A_Err (*AEGP_GetActiveItem)(AEGP_ItemH*);
    A_Err (*AEGP_IsItemSelected)(AEGP_ItemH, A_Boolean*);
    AEGP_UnusedSlot AEGP_SelectItem;
    A_Err (*AEGP_GetItemType)(AEGP_ItemH, AEGP_ItemType*);
    AEGP_UnusedSlot AEGP_GetTypeName;
    A_Err (*AEGP_GetItemName)(AEGP_PluginID, AEGP_ItemH, AEGP_MemHandle*);
    A_Err (*AEGP_SetItemName)(AEGP_ItemH, const A_UTF16Char*);
    A_Err (*AEGP_GetItemID)(AEGP_ItemH, A_long*);
    A_Err (*AEGP_GetItemFlags)(AEGP_ItemH, AEGP_ItemFlags*);
    AEGP_UnusedSlot AEGP_SetItemUseProxy;
    AEGP_UnusedSlot AEGP_GetItemParentFolder;
    AEGP_UnusedSlot AEGP_SetItemParentFolder;
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemCurrentTime)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH, A_long*, A_long*);
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH, A_Ratio*);
    A_Err (*AEGP_DeleteItem)(AEGP_ItemH);
    AEGP_UnusedSlot AEGP_CreateNewFolder;
    A_Err (*AEGP_SetItemCurrentTime)(AEGP_ItemH, const A_Time*);
    AEGP_UnusedSlot AEGP_GetItemCommentLength;
    AEGP_UnusedSlot AEGP_GetItemComment;
    AEGP_UnusedSlot AEGP_SetItemComment;
    AEGP_UnusedSlot AEGP_GetItemLabel;
    AEGP_UnusedSlot AEGP_SetItemLabel;
    AEGP_UnusedSlot AEGP_GetItemMRUView;
};

// "AEGP Comp Suite", acquired as number 9.
struct AEGP_CompSuite4 {
    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH, AEGP_CompH*);
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH, AEGP_ItemH*);
    A_Err (*AEGP_GetCompDownsampleFactor)(AEGP_CompH, AEGP_DownsampleFactor*);
    A_Err (*AEGP_SetCompDownsampleFactor)(AEGP_CompH, const AEGP_DownsampleFactor*);
    AEGP_UnusedSlot AEGP_GetCompBGColor;
    AEGP_UnusedSlot AEGP_GetCompFlags;
    A_Err (*AEGP_GetCompFramerate)(AEGP_CompH, A_FpLong*);
    AEGP_UnusedSlot AEGP_SetCompFrameRate;
    AEGP_UnusedSlot AEGP_GetCompShutterAnglePhase;
    AEGP_UnusedSlot AEGP_GetCompShutterFrameRange;
    AEGP_UnusedSlot AEGP_GetCompWorkAreaStart;
    AEGP_UnusedSlot AEGP_GetCompWorkAreaDuration;
    AEGP_UnusedSlot AEGP_SetCompWorkAreaStartAndDuration;
    AEGP_UnusedSlot AEGP_CreateSolidInComp;
    AEGP_UnusedSlot AEGP_CreateCameraInComp;
    AEGP_UnusedSlot AEGP_CreateLightInComp;
    AEGP_UnusedSlot AEGP_CreateComp;
    A_Err (*AEGP_GetNewCollectionFromCompSelection)(AEGP_PluginID, AEGP_CompH, AEGP_Collection2H*);
    A_Err (*AEGP_SetSelection)(AEGP_CompH, AEGP_Collection2H);
    AEGP_UnusedSlot AEGP_GetCompDisplayStartTime;
    AEGP_UnusedSlot AEGP_SetCompDisplayStartTime;
    AEGP_UnusedSlot AEGP_SetCompDuration;
    A_Err (*AEGP_CreateNullInComp)(const A_char*, AEGP_CompH, const A_Time*, AEGP_LayerH*);
    A_Err (*AEGP_SetCompPixelAspectRatio)(AEGP_CompH, const A_Ratio*);
    AEGP_UnusedSlot AEGP_CreateTextLayerInComp;
    A_Err (*AEGP_SetCompDimensions)(AEGP_CompH, A_long, A_long);
    A_Err (*AEGP_DuplicateComp)(AEGP_CompH, AEGP_CompH*);
    AEGP_UnusedSlot AEGP_GetCompFrameDuration;
};

// "AEGP Comp Suite", acquired as number 15.
struct AEGP_CompSuite7 {
    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH, AEGP_CompH*);
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH, AEGP_ItemH*);
    A_Err (*AEGP_GetCompDownsampleFactor)(AEGP_CompH, AEGP_DownsampleFactor*);
    A_Err (*AEGP_SetCompDownsampleFactor)(AEGP_CompH, const AEGP_DownsampleFactor*);
    AEGP_UnusedSlot AEGP_GetCompBGColor;
    AEGP_UnusedSlot AEGP_SetCompBGColor;
    AEGP_UnusedSlot AEGP_GetCompFlags;
    A_Err (*AEGP_GetCompFramerate)(AEGP_CompH, A_FpLong*);
    AEGP_UnusedSlot AEGP_SetCompFrameRate;
    AEGP_UnusedSlot AEGP_GetCompShutterAnglePhase;
    AEGP_UnusedSlot AEGP_GetCompShutterFrameRange;
    AEGP_UnusedSlot AEGP_GetCompSuggestedMotionBlurSamples;
    AEGP_UnusedSlot AEGP_SetCompSuggestedMotionBlurSamples;
    AEGP_UnusedSlot AEGP_GetCompWorkAreaStart;
    AEGP_UnusedSlot AEGP_GetCompWorkAreaDuration;
    AEGP_UnusedSlot AEGP_SetCompWorkAreaStartAndDuration;
    AEGP_UnusedSlot AEGP_CreateSolidInComp;
    AEGP_UnusedSlot AEGP_CreateCameraInComp;
    AEGP_UnusedSlot AEGP_CreateLightInComp;
    AEGP_UnusedSlot AEGP_CreateComp;
    A_Err (*AEGP_GetNewCollectionFromCompSelection)(AEGP_PluginID, AEGP_CompH, AEGP_Collection2H*);
    A_Err (*AEGP_SetSelection)(AEGP_CompH, AEGP_Collection2H);
    AEGP_UnusedSlot AEGP_GetCompDisplayStartTime;
    AEGP_UnusedSlot AEGP_SetCompDisplayStartTime;
    AEGP_UnusedSlot AEGP_SetCompDuration;
    A_Err (*AEGP_CreateNullInComp)(const A_UTF16Char*, AEGP_CompH, const A_Time*, AEGP_LayerH*);
    A_Err (*AEGP_SetCompPixelAspectRatio)(AEGP_CompH, const A_Ratio*);
    AEGP_UnusedSlot AEGP_CreateTextLayerInComp;
    A_Err (*AEGP_SetCompDimensions)(AEGP_CompH, A_long, A_long);
    A_Err (*AEGP_DuplicateComp)(AEGP_CompH, AEGP_CompH*);
    AEGP_UnusedSlot AEGP_GetCompFrameDuration;
    AEGP_UnusedSlot AEGP_GetMostRecentlyUsedComp;
    AEGP_UnusedSlot AEGP_CreateVectorLayerInComp;
    AEGP_UnusedSlot AEGP_GetNewCompMarkerStream;
};

// "AEGP Comp Suite", acquired as number 19.
struct AEGP_CompSuite9 {
    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH, AEGP_CompH*);
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH, AEGP_ItemH*);
    A_Err (*AEGP_GetCompDownsampleFactor)(AEGP_CompH, AEGP_DownsampleFactor*);
    A_Err (*AEGP_SetCompDownsampleFactor)(AEGP_CompH, const AEGP_DownsampleFactor*);
    AEGP_UnusedSlot AEGP_GetCompBGColor;
    AEGP_UnusedSlot AEGP_SetCompBGColor;
    AEGP_UnusedSlot AEGP_GetCompFlags;
    A_Err (*AEGP_GetCompFramerate)(AEGP_CompH, A_FpLong*);
    AEGP_UnusedSlot AEGP_SetCompFrameRate;
    AEGP_UnusedSlot AEGP_GetCompShutterAnglePhase;
    AEGP_UnusedSlot AEGP_GetCompShutterFrameRange;
    AEGP_UnusedSlot AEGP_GetCompSuggestedMotionBlurSamples;
    AEGP_UnusedSlot AEGP_SetCompSuggestedMotionBlurSamples;
    AEGP_UnusedSlot AEGP_GetCompWorkAreaStart;
    AEGP_UnusedSlot AEGP_GetCompWorkAreaDuration;
    AEGP_UnusedSlot AEGP_SetCompWorkAreaStartAndDuration;
    AEGP_UnusedSlot AEGP_CreateSolidInComp;
    AEGP_UnusedSlot AEGP_CreateCameraInComp;
    AEGP_UnusedSlot AEGP_CreateLightInComp;
    AEGP_UnusedSlot AEGP_CreateComp;
    A_Err (*AEGP_GetNewCollectionFromCompSelection)(AEGP_PluginID, AEGP_CompH, AEGP_Collection2H*);
    A_Err (*AEGP_SetSelection)(AEGP_CompH, AEGP_Collection2H);
    AEGP_UnusedSlot AEGP_GetCompDisplayStartTime;
    AEGP_UnusedSlot AEGP_SetCompDisplayStartTime;
    AEGP_UnusedSlot AEGP_SetCompDuration;
    A_Err (*AEGP_CreateNullInComp)(const A_UTF16Char*, AEGP_CompH, const A_Time*, AEGP_LayerH*);
    A_Err (*AEGP_SetCompPixelAspectRatio)(AEGP_CompH, const A_Ratio*);
    AEGP_UnusedSlot AEGP_CreateTextLayerInComp;
    AEGP_UnusedSlot AEGP_CreateBoxTextLayerInComp;
    A_Err (*AEGP_SetCompDimensions)(AEGP_CompH, A_long, A_long);
    A_Err (*AEGP_DuplicateComp)(AEGP_CompH, AEGP_CompH*);
    AEGP_UnusedSlot AEGP_GetCompFrameDuration;
    AEGP_UnusedSlot AEGP_GetMostRecentlyUsedComp;
    AEGP_UnusedSlot AEGP_CreateVectorLayerInComp;
    AEGP_UnusedSlot AEGP_GetNewCompMarkerStream;
    AEGP_UnusedSlot AEGP_GetCompDisplayDropFrame;
    AEGP_UnusedSlot AEGP_SetCompDisplayDropFrame;
};

// "AEGP Layer Suite", acquired as number 11.
struct AEGP_LayerSuite5 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH, A_long*);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH, A_long, AEGP_LayerH*);
    A_Err (*AEGP_GetActiveLayer)(AEGP_LayerH*);
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH, A_long*);
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH, AEGP_ItemH*);
    AEGP_UnusedSlot AEGP_GetLayerSourceItemID;
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH, AEGP_CompH*);
    A_Err (*AEGP_GetLayerName)(AEGP_LayerH, A_char*, A_char*);
    AEGP_UnusedSlot AEGP_GetLayerQuality;
    AEGP_UnusedSlot AEGP_SetLayerQuality;
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH, AEGP_LayerFlags*);
    AEGP_UnusedSlot AEGP_SetLayerFlag;
    AEGP_UnusedSlot AEGP_IsLayerVideoReallyOn;
    AEGP_UnusedSlot AEGP_IsLayerAudioReallyOn;
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    AEGP_UnusedSlot AEGP_SetLayerInPointAndDuration;
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH, A_Time*);
    AEGP_UnusedSlot AEGP_SetLayerOffset;
    AEGP_UnusedSlot AEGP_GetLayerStretch;
    AEGP_UnusedSlot AEGP_SetLayerStretch;
    AEGP_UnusedSlot AEGP_GetLayerTransferMode;
    AEGP_UnusedSlot AEGP_SetLayerTransferMode;
    AEGP_UnusedSlot AEGP_IsAddLayerValid;
    A_Err (*AEGP_AddLayer)(AEGP_ItemH, AEGP_CompH, AEGP_LayerH*);
    A_Err (*AEGP_ReorderLayer)(AEGP_LayerH, A_long);
    A_Err (*AEGP_GetLayerMaskedBounds)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, A_FloatRect*);
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH, AEGP_ObjectType*);
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH, A_Boolean*);
    AEGP_UnusedSlot AEGP_IsLayer2D;
    AEGP_UnusedSlot AEGP_IsVideoActive;
    AEGP_UnusedSlot AEGP_IsLayerUsedAsTrackMatte;
    AEGP_UnusedSlot AEGP_DoesLayerHaveTrackMatte;
    AEGP_UnusedSlot AEGP_ConvertCompToLayerTime;
    AEGP_UnusedSlot AEGP_ConvertLayerToCompTime;
    AEGP_UnusedSlot AEGP_GetLayerDancingRandValue;
    AEGP_UnusedSlot AEGP_GetLayerID;
    AEGP_UnusedSlot AEGP_GetLayerToWorldXform;
    AEGP_UnusedSlot AEGP_GetLayerToWorldXformFromView;
    AEGP_UnusedSlot AEGP_SetLayerName;
    A_Err (*AEGP_GetLayerParent)(AEGP_LayerH, AEGP_LayerH*);
    A_Err (*AEGP_SetLayerParent)(AEGP_LayerH, AEGP_LayerH);
    A_Err (*AEGP_DeleteLayer)(AEGP_LayerH);
    AEGP_UnusedSlot AEGP_DuplicateLayer;
    AEGP_UnusedSlot AEGP_GetLayerFromLayerID;
};

// "AEGP Layer Suite", acquired as number 13.
struct AEGP_LayerSuite7 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH, A_long*);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH, A_long, AEGP_LayerH*);
    A_Err (*AEGP_GetActiveLayer)(AEGP_LayerH*);
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH, A_long*);
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH, AEGP_ItemH*);
    AEGP_UnusedSlot AEGP_GetLayerSourceItemID;
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH, AEGP_CompH*);
    A_Err (*AEGP_GetLayerName)(AEGP_PluginID, AEGP_LayerH, AEGP_MemHandle*, AEGP_MemHandle*);
    AEGP_UnusedSlot AEGP_GetLayerQuality;
    AEGP_UnusedSlot AEGP_SetLayerQuality;
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH, AEGP_LayerFlags*);
    AEGP_UnusedSlot AEGP_SetLayerFlag;
    AEGP_UnusedSlot AEGP_IsLayerVideoReallyOn;
    AEGP_UnusedSlot AEGP_IsLayerAudioReallyOn;
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    AEGP_UnusedSlot AEGP_SetLayerInPointAndDuration;
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH, A_Time*);
    AEGP_UnusedSlot AEGP_SetLayerOffset;
    AEGP_UnusedSlot AEGP_GetLayerStretch;
    AEGP_UnusedSlot AEGP_SetLayerStretch;
    AEGP_UnusedSlot AEGP_GetLayerTransferMode;
    AEGP_UnusedSlot AEGP_SetLayerTransferMode;
    AEGP_UnusedSlot AEGP_IsAddLayerValid;
    A_Err (*AEGP_AddLayer)(AEGP_ItemH, AEGP_CompH, AEGP_LayerH*);
    A_Err (*AEGP_ReorderLayer)(AEGP_LayerH, A_long);
    A_Err (*AEGP_GetLayerMaskedBounds)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, A_FloatRect*);
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH, AEGP_ObjectType*);
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH, A_Boolean*);
    AEGP_UnusedSlot AEGP_IsLayer2D;
    AEGP_UnusedSlot AEGP_IsVideoActive;
    AEGP_UnusedSlot AEGP_IsLayerUsedAsTrackMatte;
    AEGP_UnusedSlot AEGP_DoesLayerHaveTrackMatte;
    AEGP_UnusedSlot AEGP_ConvertCompToLayerTime;
    AEGP_UnusedSlot AEGP_ConvertLayerToCompTime;
    AEGP_UnusedSlot AEGP_GetLayerDancingRandValue;
    AEGP_UnusedSlot AEGP_GetLayerID;
    AEGP_UnusedSlot AEGP_GetLayerToWorldXform;
    AEGP_UnusedSlot AEGP_GetLayerToWorldXformFromView;
    AEGP_UnusedSlot AEGP_SetLayerName;
    A_Err (*AEGP_GetLayerParent)(AEGP_LayerH, AEGP_LayerH*);
    A_Err (*AEGP_SetLayerParent)(AEGP_LayerH, AEGP_LayerH);
    A_Err (*AEGP_DeleteLayer)(AEGP_LayerH);
    AEGP_UnusedSlot AEGP_DuplicateLayer;
    AEGP_UnusedSlot AEGP_GetLayerFromLayerID;
    AEGP_UnusedSlot AEGP_GetLayerLabel;
    AEGP_UnusedSlot AEGP_SetLayerLabel;
};

// "AEGP Collection Suite", acquired as number 2.
struct AEGP_CollectionSuite2 {
    A_Err (*AEGP_NewCollection)(AEGP_PluginID, AEGP_Collection2H*);
    A_Err (*AEGP_DisposeCollection)(AEGP_Collection2H);
    A_Err (*AEGP_GetCollectionNumItems)(AEGP_Collection2H, A_u_long*);
    A_Err (*AEGP_GetCollectionItemByIndex)(AEGP_Collection2H, A_u_long, AEGP_CollectionItemV2*);
    A_Err (*AEGP_CollectionPushBack)(AEGP_Collection2H, const AEGP_CollectionItemV2*);
    A_Err (*AEGP_CollectionErase)(AEGP_Collection2H, A_u_long, A_u_long);
};

// "AEGP Layer Mask Suite", acquired as number 6.
struct AEGP_MaskSuite5 {
    A_Err (*AEGP_GetLayerNumMasks)(AEGP_LayerH, A_long*);
    A_Err (*AEGP_GetLayerMaskByIndex)(AEGP_LayerH, AEGP_MaskIndex, AEGP_MaskRefH*);
    A_Err (*AEGP_DisposeMask)(AEGP_MaskRefH);
    AEGP_UnusedSlot AEGP_GetMaskInvert;
    AEGP_UnusedSlot AEGP_SetMaskInvert;
    AEGP_UnusedSlot AEGP_GetMaskMode;
    AEGP_UnusedSlot AEGP_SetMaskMode;
    AEGP_UnusedSlot AEGP_GetMaskMotionBlurState;
    AEGP_UnusedSlot AEGP_SetMaskMotionBlurState;
    AEGP_UnusedSlot AEGP_GetMaskID;
    AEGP_UnusedSlot AEGP_CreateNewMask;
    A_Err (*AEGP_DeleteMaskFromLayer)(AEGP_MaskRefH);
    AEGP_UnusedSlot AEGP_GetMaskColor;
    AEGP_UnusedSlot AEGP_SetMaskColor;
    AEGP_UnusedSlot AEGP_GetMaskLockState;
    AEGP_UnusedSlot AEGP_SetMaskLockState;
    AEGP_UnusedSlot AEGP_GetMaskIsRotoBezier;
    AEGP_UnusedSlot AEGP_SetMaskIsRotoBezier;
    AEGP_UnusedSlot AEGP_DuplicateMask;
};

// "AEGP Mask Outline Suite", acquired as number 3.
struct AEGP_MaskOutlineSuite2 {
    A_Err (*AEGP_IsMaskOutlineOpen)(AEGP_MaskOutlineValH, A_Boolean*);
    AEGP_UnusedSlot AEGP_SetMaskOutlineOpen;
    A_Err (*AEGP_GetMaskOutlineNumSegments)(AEGP_MaskOutlineValH, A_long*);
    A_Err (*AEGP_GetMaskOutlineVertexInfo)(AEGP_MaskOutlineValH, AEGP_VertexIndex, AEGP_MaskVertex*);
    A_Err (*AEGP_SetMaskOutlineVertexInfo)(AEGP_MaskOutlineValH, AEGP_VertexIndex, const AEGP_MaskVertex*);
    AEGP_UnusedSlot AEGP_CreateVertex;
    AEGP_UnusedSlot AEGP_DeleteVertex;
};

// "AEGP Stream Suite", acquired as number 9.
struct AEGP_StreamSuite4 {
    AEGP_UnusedSlot AEGP_IsStreamLegal;
    AEGP_UnusedSlot AEGP_CanVaryOverTime;
    AEGP_UnusedSlot AEGP_GetValidInterpolations;
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID, AEGP_LayerH, AEGP_LayerStream, AEGP_StreamRefH*);
    AEGP_UnusedSlot AEGP_GetEffectNumParamStreams;
    AEGP_UnusedSlot AEGP_GetNewEffectStreamByIndex;
    A_Err (*AEGP_GetNewMaskStream)(AEGP_PluginID, AEGP_MaskRefH, AEGP_MaskStream, AEGP_StreamRefH*);
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH);
    AEGP_UnusedSlot AEGP_GetStreamName;
    AEGP_UnusedSlot AEGP_GetStreamUnitsText;
    AEGP_UnusedSlot AEGP_GetStreamProperties;
    AEGP_UnusedSlot AEGP_IsStreamTimevarying;
    AEGP_UnusedSlot AEGP_GetStreamType;
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_LTimeMode, const A_Time*, A_Boolean,
                                    AEGP_StreamValue2*);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue2*);
    A_Err (*AEGP_SetStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_StreamValue2*);
    AEGP_UnusedSlot AEGP_GetLayerStreamValue;
    AEGP_UnusedSlot AEGP_GetExpressionState;
    AEGP_UnusedSlot AEGP_SetExpressionState;
    AEGP_UnusedSlot AEGP_GetExpression;
    AEGP_UnusedSlot AEGP_SetExpression;
    AEGP_UnusedSlot AEGP_DuplicateStreamRef;
};

// "AEGP Keyframe Suite", acquired as number 4.
struct AEGP_KeyframeSuite4 {
    A_Err (*AEGP_GetStreamNumKFs)(AEGP_StreamRefH, A_long*);
    A_Err (*AEGP_GetKeyframeTime)(AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_LTimeMode, A_Time*);
    AEGP_UnusedSlot AEGP_InsertKeyframe;
    AEGP_UnusedSlot AEGP_DeleteKeyframe;
    A_Err (*AEGP_GetNewKeyframeValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_StreamValue2*);
    A_Err (*AEGP_SetKeyframeValue)(AEGP_StreamRefH, AEGP_KeyframeIndex, const AEGP_StreamValue2*);
    AEGP_UnusedSlot AEGP_GetStreamValueDimensionality;
    AEGP_UnusedSlot AEGP_GetStreamTemporalDimensionality;
    AEGP_UnusedSlot AEGP_GetNewKeyframeSpatialTangents;
    AEGP_UnusedSlot AEGP_SetKeyframeSpatialTangents;
    AEGP_UnusedSlot AEGP_GetKeyframeTemporalEase;
    AEGP_UnusedSlot AEGP_SetKeyframeTemporalEase;
    AEGP_UnusedSlot AEGP_GetKeyframeFlags;
    AEGP_UnusedSlot AEGP_SetKeyframeFlag;
    A_Err (*AEGP_GetKeyframeInterpolation)(AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_KeyframeInterpolationType*,
                                           AEGP_KeyframeInterpolationType*);
    A_Err (*AEGP_SetKeyframeInterpolation)(AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_KeyframeInterpolationType,
                                           AEGP_KeyframeInterpolationType);
    AEGP_UnusedSlot AEGP_StartAddKeyframes;
    AEGP_UnusedSlot AEGP_AddKeyframes;
    AEGP_UnusedSlot AEGP_SetAddKeyframe;
    AEGP_UnusedSlot AEGP_EndAddKeyframes;
};

// "AEGP Render Options Suite", acquired as number 3.
struct AEGP_RenderOptionsSuite3 {
    A_Err (*AEGP_NewFromItem)(AEGP_PluginID, AEGP_ItemH, AEGP_RenderOptionsH*);
    AEGP_UnusedSlot AEGP_Duplicate;
    A_Err (*AEGP_Dispose)(AEGP_RenderOptionsH);
    A_Err (*AEGP_SetTime)(AEGP_RenderOptionsH, A_Time);
    A_Err (*AEGP_GetTime)(AEGP_RenderOptionsH, A_Time*);
    AEGP_UnusedSlot AEGP_SetTimeStep;
    A_Err (*AEGP_GetTimeStep)(AEGP_RenderOptionsH, A_Time*);
    AEGP_UnusedSlot AEGP_SetFieldRender;
    AEGP_UnusedSlot AEGP_GetFieldRender;
    AEGP_UnusedSlot AEGP_SetWorldType;
    AEGP_UnusedSlot AEGP_GetWorldType;
    A_Err (*AEGP_SetDownsampleFactor)(AEGP_RenderOptionsH, A_short, A_short);
    A_Err (*AEGP_GetDownsampleFactor)(AEGP_RenderOptionsH, A_short*, A_short*);
    AEGP_UnusedSlot AEGP_SetRegionOfInterest;
    AEGP_UnusedSlot AEGP_GetRegionOfInterest;
    AEGP_UnusedSlot AEGP_SetMatteMode;
    AEGP_UnusedSlot AEGP_GetMatteMode;
    AEGP_UnusedSlot AEGP_SetChannelOrder;
    AEGP_UnusedSlot AEGP_GetChannelOrder;
    AEGP_UnusedSlot AEGP_GetRenderGuideLayers;
    AEGP_UnusedSlot AEGP_SetRenderGuideLayers;
};

// "AEGP Render Suite", acquired as number 3.
struct AEGP_RenderSuite3 {
    A_Err (*AEGP_RenderAndCheckoutFrame)(AEGP_RenderOptionsH, AEGP_RenderSuiteCheckForCancel, AEGP_CancelRefcon,
                                         AEGP_FrameReceiptH*);
    A_Err (*AEGP_CheckinFrame)(AEGP_FrameReceiptH);
    A_Err (*AEGP_GetReceiptWorld)(AEGP_FrameReceiptH, AEGP_WorldH*);
    AEGP_UnusedSlot AEGP_GetRenderedRegion;
    AEGP_UnusedSlot AEGP_IsRenderedFrameSufficient;
    AEGP_UnusedSlot AEGP_RenderNewItemSoundData;
    AEGP_UnusedSlot AEGP_GetCurrentTimestamp;
    AEGP_UnusedSlot AEGP_HasItemChangedSinceTimestamp;
    AEGP_UnusedSlot AEGP_IsItemWorthwhileToRender;
    AEGP_UnusedSlot AEGP_CheckinRenderedFrame;
    AEGP_UnusedSlot AEGP_GetReceiptGuid;
};

// "AEGP World Suite", acquired as number 3.
struct AEGP_WorldSuite3 {
    AEGP_UnusedSlot AEGP_New;
    A_Err (*AEGP_Dispose)(AEGP_WorldH);
    A_Err (*AEGP_GetType)(AEGP_WorldH, AEGP_WorldType*);
    A_Err (*AEGP_GetSize)(AEGP_WorldH, A_long*, A_long*);
    A_Err (*AEGP_GetRowBytes)(AEGP_WorldH, A_u_long*);
    A_Err (*AEGP_GetBaseAddr8)(AEGP_WorldH, PF_Pixel8**);
    A_Err (*AEGP_GetBaseAddr16)(AEGP_WorldH, PF_Pixel16**);
    A_Err (*AEGP_GetBaseAddr32)(AEGP_WorldH, PF_PixelFloat**);
    AEGP_UnusedSlot AEGP_FillOutPFEffectWorld;
    AEGP_UnusedSlot AEGP_FastBlur;
    AEGP_UnusedSlot AEGP_NewPlatformWorld;
    AEGP_UnusedSlot AEGP_DisposePlatformWorld;
    AEGP_UnusedSlot AEGP_NewReferenceFromPlatformWorld;
};
// Published by the headless host alone: what a build without a desktop asks instead of the system.
// Where it is missing there are no keys and no panel.
struct Kestrin_PlatformSuite1 {
    A_Err (*GetModifierKeys)(A_u_longlong* flags);  // bit 17 Shift, bit 20 Command
    A_Err (*OpenProgress)(const A_char* title, const A_char* message);
    A_Err (*SetProgress)(A_long percent);  // 0 to 100
    A_Err (*CloseProgress)();
};

}  // extern "C"

// The plug-in's one exported function; the host looks it up by this name.
using AEGP_PluginEntryPoint = A_Err (*)(SPBasicSuite* pica_basicP, A_long major_versionL, A_long minor_versionL,
                                        AEGP_PluginID aegp_plugin_id, AEGP_GlobalRefcon* global_refconP);
