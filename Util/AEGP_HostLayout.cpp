// Compile-time proof that the declared tables have the host's layout: the size of each table and the
// offset of each slot that the plug-in calls.

#include "AEGP_Host.h"

namespace {

constexpr std::size_t slot = sizeof(void (*)());

static_assert(slot == 8, "the host is a 64-bit program");
static_assert(sizeof(SPBasicSuite) == 7 * slot);
static_assert(offsetof(SPBasicSuite, AcquireSuite) == 0);
static_assert(offsetof(SPBasicSuite, ReleaseSuite) == 1 * slot);

static_assert(sizeof(A_Time) == 8 && offsetof(A_Time, scale) == 4);
static_assert(sizeof(A_Ratio) == 8 && offsetof(A_Ratio, den) == 4);
static_assert(sizeof(A_FloatRect) == 32 && offsetof(A_FloatRect, bottom) == 24);
static_assert(sizeof(AEGP_DownsampleFactor) == 4);
static_assert(sizeof(PF_Pixel8) == 4 && sizeof(PF_Pixel16) == 8 && sizeof(PF_PixelFloat) == 16);
static_assert(sizeof(AEGP_StreamVal2) == 32 && alignof(AEGP_StreamVal2) == 8);
static_assert(sizeof(AEGP_StreamValue2) == 40 && offsetof(AEGP_StreamValue2, val) == 8);
static_assert(sizeof(AEGP_MaskVertex) == 48);
static_assert(sizeof(AEGP_MaskCollectionItem) == 16);
static_assert(sizeof(AEGP_StreamCollectionItem) == 32 && sizeof(AEGP_KeyframeCollectionItem) == 40);
static_assert(sizeof(AEGP_CollectionItemV2) == 56 && offsetof(AEGP_CollectionItemV2, u) == 8);
static_assert(offsetof(AEGP_CollectionItemV2, stream_refH) == 48);

static_assert(sizeof(AEGP_CommandSuite1) == 8 * slot);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_GetUniqueCommand) == 0 * slot);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_InsertMenuCommand) == 1 * slot);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_SetMenuCommandName) == 3 * slot);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_EnableCommand) == 4 * slot);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_DisableCommand) == 5 * slot);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_DoCommand) == 7 * slot);

static_assert(sizeof(AEGP_RegisterSuite5) == 12 * slot);
static_assert(offsetof(AEGP_RegisterSuite5, AEGP_RegisterCommandHook) == 0 * slot);
static_assert(offsetof(AEGP_RegisterSuite5, AEGP_RegisterUpdateMenuHook) == 1 * slot);
static_assert(offsetof(AEGP_RegisterSuite5, AEGP_RegisterIdleHook) == 8 * slot);

static_assert(sizeof(AEGP_UtilitySuite5) == 31 * slot);
static_assert(offsetof(AEGP_UtilitySuite5, AEGP_ReportInfo) == 0 * slot);
static_assert(offsetof(AEGP_UtilitySuite5, AEGP_GetLastErrorMessage) == 5 * slot);
static_assert(offsetof(AEGP_UtilitySuite5, AEGP_StartUndoGroup) == 6 * slot);
static_assert(offsetof(AEGP_UtilitySuite5, AEGP_EndUndoGroup) == 7 * slot);
static_assert(offsetof(AEGP_UtilitySuite5, AEGP_ExecuteScript) == 27 * slot);

static_assert(sizeof(AEGP_PersistentDataSuite3) == 18 * slot);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_GetApplicationBlob) == 0 * slot);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_GetData) == 7 * slot);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_GetLong) == 9 * slot);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_DeleteEntry) == 16 * slot);

static_assert(sizeof(AEGP_MemorySuite1) == 8 * slot);
static_assert(offsetof(AEGP_MemorySuite1, AEGP_FreeMemHandle) == 1 * slot);
static_assert(offsetof(AEGP_MemorySuite1, AEGP_LockMemHandle) == 2 * slot);
static_assert(offsetof(AEGP_MemorySuite1, AEGP_UnlockMemHandle) == 3 * slot);
static_assert(offsetof(AEGP_MemorySuite1, AEGP_GetMemHandleSize) == 4 * slot);

static_assert(sizeof(AEGP_ProjSuite5) == 14 * slot);
static_assert(offsetof(AEGP_ProjSuite5, AEGP_GetNumProjects) == 0 * slot);
static_assert(offsetof(AEGP_ProjSuite5, AEGP_GetProjectByIndex) == 1 * slot);
static_assert(offsetof(AEGP_ProjSuite5, AEGP_GetProjectName) == 2 * slot);

static_assert(sizeof(AEGP_ProjSuite6) == 14 * slot);
static_assert(offsetof(AEGP_ProjSuite6, AEGP_GetNumProjects) == 0 * slot);
static_assert(offsetof(AEGP_ProjSuite6, AEGP_GetProjectByIndex) == 1 * slot);
static_assert(offsetof(AEGP_ProjSuite6, AEGP_GetProjectName) == 2 * slot);

static_assert(sizeof(AEGP_ItemSuite1) == 20 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetActiveItem) == 1 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_IsItemSelected) == 2 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemType) == 4 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemName) == 6 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemID) == 7 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemFlags) == 8 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemDuration) == 11 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemCurrentTime) == 12 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemDimensions) == 13 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_GetItemPixelAspectRatio) == 14 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_DeleteItem) == 15 * slot);
static_assert(offsetof(AEGP_ItemSuite1, AEGP_SetItemCurrentTime) == 18 * slot);

static_assert(sizeof(AEGP_ItemSuite6) == 26 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetFirstProjItem) == 0 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetNextProjItem) == 1 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetActiveItem) == 2 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_IsItemSelected) == 3 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemType) == 5 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemName) == 7 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_SetItemName) == 8 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemID) == 9 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemFlags) == 10 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemDuration) == 14 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemCurrentTime) == 15 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemDimensions) == 16 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_GetItemPixelAspectRatio) == 17 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_DeleteItem) == 18 * slot);
static_assert(offsetof(AEGP_ItemSuite6, AEGP_SetItemCurrentTime) == 20 * slot);

static_assert(sizeof(AEGP_ItemSuite8) == 27 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetFirstProjItem) == 0 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetNextProjItem) == 1 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetActiveItem) == 2 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_IsItemSelected) == 3 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemType) == 5 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemName) == 7 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_SetItemName) == 8 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemID) == 9 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemFlags) == 10 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemDuration) == 14 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemCurrentTime) == 15 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemDimensions) == 16 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_GetItemPixelAspectRatio) == 17 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_DeleteItem) == 18 * slot);
static_assert(offsetof(AEGP_ItemSuite8, AEGP_SetItemCurrentTime) == 20 * slot);

static_assert(sizeof(AEGP_CompSuite4) == 28 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_GetCompFromItem) == 0 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_GetItemFromComp) == 1 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_GetCompDownsampleFactor) == 2 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_SetCompDownsampleFactor) == 3 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_GetCompFramerate) == 6 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_GetNewCollectionFromCompSelection) == 17 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_SetSelection) == 18 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_CreateNullInComp) == 22 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_SetCompPixelAspectRatio) == 23 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_SetCompDimensions) == 25 * slot);
static_assert(offsetof(AEGP_CompSuite4, AEGP_DuplicateComp) == 26 * slot);

static_assert(sizeof(AEGP_CompSuite7) == 34 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_GetCompFromItem) == 0 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_GetItemFromComp) == 1 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_GetCompDownsampleFactor) == 2 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_SetCompDownsampleFactor) == 3 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_GetCompFramerate) == 7 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_GetNewCollectionFromCompSelection) == 20 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_SetSelection) == 21 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_CreateNullInComp) == 25 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_SetCompPixelAspectRatio) == 26 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_SetCompDimensions) == 28 * slot);
static_assert(offsetof(AEGP_CompSuite7, AEGP_DuplicateComp) == 29 * slot);

static_assert(sizeof(AEGP_CompSuite9) == 37 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_GetCompFromItem) == 0 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_GetItemFromComp) == 1 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_GetCompDownsampleFactor) == 2 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_SetCompDownsampleFactor) == 3 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_GetCompFramerate) == 7 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_GetNewCollectionFromCompSelection) == 20 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_SetSelection) == 21 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_CreateNullInComp) == 25 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_SetCompPixelAspectRatio) == 26 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_SetCompDimensions) == 29 * slot);
static_assert(offsetof(AEGP_CompSuite9, AEGP_DuplicateComp) == 30 * slot);

static_assert(sizeof(AEGP_LayerSuite5) == 46 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetCompNumLayers) == 0 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetCompLayerByIndex) == 1 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetActiveLayer) == 2 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerIndex) == 3 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerSourceItem) == 4 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerParentComp) == 6 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerName) == 7 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerFlags) == 10 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerCurrentTime) == 14 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerInPoint) == 15 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerDuration) == 16 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerOffset) == 18 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_AddLayer) == 25 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_ReorderLayer) == 26 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerMaskedBounds) == 27 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerObjectType) == 28 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_IsLayer3D) == 29 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_GetLayerParent) == 41 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_SetLayerParent) == 42 * slot);
static_assert(offsetof(AEGP_LayerSuite5, AEGP_DeleteLayer) == 43 * slot);

static_assert(sizeof(AEGP_LayerSuite7) == 48 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetCompNumLayers) == 0 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetCompLayerByIndex) == 1 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetActiveLayer) == 2 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerIndex) == 3 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerSourceItem) == 4 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerParentComp) == 6 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerName) == 7 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerFlags) == 10 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerCurrentTime) == 14 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerInPoint) == 15 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerDuration) == 16 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerOffset) == 18 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_AddLayer) == 25 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_ReorderLayer) == 26 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerMaskedBounds) == 27 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerObjectType) == 28 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_IsLayer3D) == 29 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_GetLayerParent) == 41 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_SetLayerParent) == 42 * slot);
static_assert(offsetof(AEGP_LayerSuite7, AEGP_DeleteLayer) == 43 * slot);

static_assert(sizeof(AEGP_CollectionSuite2) == 6 * slot);
static_assert(offsetof(AEGP_CollectionSuite2, AEGP_NewCollection) == 0 * slot);
static_assert(offsetof(AEGP_CollectionSuite2, AEGP_DisposeCollection) == 1 * slot);
static_assert(offsetof(AEGP_CollectionSuite2, AEGP_GetCollectionNumItems) == 2 * slot);
static_assert(offsetof(AEGP_CollectionSuite2, AEGP_GetCollectionItemByIndex) == 3 * slot);
static_assert(offsetof(AEGP_CollectionSuite2, AEGP_CollectionPushBack) == 4 * slot);
static_assert(offsetof(AEGP_CollectionSuite2, AEGP_CollectionErase) == 5 * slot);

static_assert(sizeof(AEGP_MaskSuite5) == 19 * slot);
static_assert(offsetof(AEGP_MaskSuite5, AEGP_GetLayerNumMasks) == 0 * slot);
static_assert(offsetof(AEGP_MaskSuite5, AEGP_GetLayerMaskByIndex) == 1 * slot);
static_assert(offsetof(AEGP_MaskSuite5, AEGP_DisposeMask) == 2 * slot);
static_assert(offsetof(AEGP_MaskSuite5, AEGP_DeleteMaskFromLayer) == 11 * slot);

static_assert(sizeof(AEGP_MaskOutlineSuite2) == 7 * slot);
static_assert(offsetof(AEGP_MaskOutlineSuite2, AEGP_IsMaskOutlineOpen) == 0 * slot);
static_assert(offsetof(AEGP_MaskOutlineSuite2, AEGP_GetMaskOutlineNumSegments) == 2 * slot);
static_assert(offsetof(AEGP_MaskOutlineSuite2, AEGP_GetMaskOutlineVertexInfo) == 3 * slot);
static_assert(offsetof(AEGP_MaskOutlineSuite2, AEGP_SetMaskOutlineVertexInfo) == 4 * slot);

static_assert(sizeof(AEGP_StreamSuite4) == 22 * slot);
static_assert(offsetof(AEGP_StreamSuite4, AEGP_GetNewLayerStream) == 3 * slot);
static_assert(offsetof(AEGP_StreamSuite4, AEGP_GetNewMaskStream) == 6 * slot);
static_assert(offsetof(AEGP_StreamSuite4, AEGP_DisposeStream) == 7 * slot);
static_assert(offsetof(AEGP_StreamSuite4, AEGP_GetNewStreamValue) == 13 * slot);
static_assert(offsetof(AEGP_StreamSuite4, AEGP_DisposeStreamValue) == 14 * slot);
static_assert(offsetof(AEGP_StreamSuite4, AEGP_SetStreamValue) == 15 * slot);

static_assert(sizeof(AEGP_KeyframeSuite4) == 20 * slot);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_GetStreamNumKFs) == 0 * slot);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_GetKeyframeTime) == 1 * slot);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_GetNewKeyframeValue) == 4 * slot);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_SetKeyframeValue) == 5 * slot);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_GetKeyframeInterpolation) == 14 * slot);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_SetKeyframeInterpolation) == 15 * slot);

static_assert(sizeof(AEGP_RenderOptionsSuite3) == 21 * slot);
static_assert(offsetof(AEGP_RenderOptionsSuite3, AEGP_NewFromItem) == 0 * slot);
static_assert(offsetof(AEGP_RenderOptionsSuite3, AEGP_Dispose) == 2 * slot);
static_assert(offsetof(AEGP_RenderOptionsSuite3, AEGP_SetTime) == 3 * slot);
static_assert(offsetof(AEGP_RenderOptionsSuite3, AEGP_GetTime) == 4 * slot);
static_assert(offsetof(AEGP_RenderOptionsSuite3, AEGP_GetTimeStep) == 6 * slot);
static_assert(offsetof(AEGP_RenderOptionsSuite3, AEGP_SetDownsampleFactor) == 11 * slot);
static_assert(offsetof(AEGP_RenderOptionsSuite3, AEGP_GetDownsampleFactor) == 12 * slot);

static_assert(sizeof(AEGP_RenderSuite3) == 11 * slot);
static_assert(offsetof(AEGP_RenderSuite3, AEGP_RenderAndCheckoutFrame) == 0 * slot);
static_assert(offsetof(AEGP_RenderSuite3, AEGP_CheckinFrame) == 1 * slot);
static_assert(offsetof(AEGP_RenderSuite3, AEGP_GetReceiptWorld) == 2 * slot);

static_assert(sizeof(AEGP_WorldSuite3) == 13 * slot);
static_assert(offsetof(AEGP_WorldSuite3, AEGP_Dispose) == 1 * slot);
static_assert(offsetof(AEGP_WorldSuite3, AEGP_GetType) == 2 * slot);
static_assert(offsetof(AEGP_WorldSuite3, AEGP_GetSize) == 3 * slot);
static_assert(offsetof(AEGP_WorldSuite3, AEGP_GetRowBytes) == 4 * slot);
static_assert(offsetof(AEGP_WorldSuite3, AEGP_GetBaseAddr8) == 5 * slot);
static_assert(offsetof(AEGP_WorldSuite3, AEGP_GetBaseAddr16) == 6 * slot);
static_assert(offsetof(AEGP_WorldSuite3, AEGP_GetBaseAddr32) == 7 * slot);
}  // namespace
