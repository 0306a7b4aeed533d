// Layer and composition utilities of the crops.
//
// Each operation takes the host's basic suite, acquires what it needs for the length of the call and returns
// the first failure (516 for a missing suite), or 0. After a failure no further host call is made; handles of
// the operation's own are left to the host. Handles given in stay the caller's. Main thread only; nothing is
// shown to the user unless said.

#pragma once

#include <vector>

#include "AEGP_SuiteHandler.h"

// Whether to pre-compose compositions that hold 3D layers: 0 ask, 1 pre-compose, 2 leave. Holds the stored
// preference, then the user's answer, for the length of a command.
extern A_long threeDPref;
// Non-zero while the next 3D check has to read the stored preference first.
extern A_u_char checkPrefsThreeD;

namespace cropUtil {

// ---- Selection ---------------------------------------------------------------------------------------

// The active composition, its selection and the number of selected things. The collection becomes the
// caller's. A null `comp` ends the operation early; an active item that is no composition is the host's to
// refuse.
A_Err GetSelectedLayers(SPBasicSuite* basic, int pluginId, AEGP_ItemH* activeItem, AEGP_CompH* comp,
                        AEGP_Collection2H* selection, unsigned int* count);

// Leaves only layers whose source is a composition, in their order. `count` holds the collection's length on
// entry and on success afterwards; after a failure it is untouched.
A_Err RemoveNonPrecomps(SPBasicSuite* basic, AEGP_Collection2H* selection, unsigned int* count);

// Whether the layer's source is a composition. False for a null layer and after any failure.
bool LayerIsPrecomp(SPBasicSuite* basic, AEGP_LayerH layer);

// Appends every layer of the project whose source is `source`, in project order.
A_Err FindAllCompUses(SPBasicSuite* basic, int pluginId, AEGP_ItemH source, std::vector<AEGP_LayerH>* uses);

// ---- 3D ------------------------------------------------------------------------------------------------

// Writes whether the layer counts as 3D; for a camera, 1 if its video is on, else nothing at all.
A_Err LayerIsThreeD(SPBasicSuite* basic, AEGP_LayerH layer, unsigned char* is3D);

// Where the composition `item` itself holds a 3D layer, pre-composes it if the user wants that, asking at
// most once per command (a modal script dialog). `checkPrefs` is cleared once the preference has been read.
A_Err ThreeDInItem(SPBasicSuite* basic, int pluginId, AEGP_ItemH* item, unsigned char* checkPrefs);

// ThreeDInItem for the source of each layer of a collection that holds layers only.
A_Err CheckForThreeD(SPBasicSuite* basic, int pluginId, AEGP_Collection2H selection, unsigned int count,
                     unsigned char* checkPrefs);

// Moves the composition's `numLayers` layers into a duplicate that it then shows as its one 2D layer. The
// duplicate takes the name; the composition's gets a suffix.
A_Err PreCompose(int pluginId, SPBasicSuite* basic, AEGP_CompH comp, unsigned int numLayers);

// ---- Shifting ------------------------------------------------------------------------------------------

// Adds (dx, dy, dz) to the layer's Position at a composition time, or sets it to that if `absolute` is
// non-zero. Keyframes are not looked at: the host's answer to setting the value is the result.
A_Err ShiftLayerPosition(SPBasicSuite* basic, int pluginId, AEGP_LayerH* layer, A_Time time, double dx,
                         double dy, double dz, unsigned char absolute);

// Rewrites the layer's Anchor Point, static or in every keyframe: x / xDivisor - xSizeChange / 2 + xOffset, y
// alike; z * zFactor on a static Anchor Point of a 3D layer. Source pixels. Keyframes keep their interpolation.
A_Err ShiftLayerXY(SPBasicSuite* basic, int pluginId, AEGP_LayerH layer, double xOffset, double yOffset,
                   double zFactor, double xDivisor, double yDivisor, double xSizeChange, double ySizeChange);

// Position minus Anchor Point at a layer time, per component. `difference` is untouched after a failure.
A_Err GetAnchorPointDif(SPBasicSuite* basic, int pluginId, AEGP_LayerH layer, A_Time time,
                        AEGP_ThreeDVal* difference);

// Gives the layer a parent, or none for null, through a script, so that it keeps its place on screen. What
// goes wrong inside the script is not reported.
A_Err SetParentNoShift(SPBasicSuite* basic, int pluginId, AEGP_LayerH child, AEGP_LayerH parent);

// ---- Menu, scripts, text -------------------------------------------------------------------------------

A_Err EnableDisableMenu(SPBasicSuite* basic, AEGP_Command cmd, bool enable);

// Runs UTF-8 script text; blocks while its dialogs are open. With `answer`, the text form of its last value
// becomes the caller's; a host may leave it null.
A_Err RunScript(AEGP_SuiteHandler& suites, int pluginId, const char* text, AEGP_MemHandle* answer = nullptr);

// Formats as vsprintf and returns the number of characters written. `size` is not looked at: `dst` must hold
// the longest filling.
int SprintOS(char* dst, int size, const char* fmt, ...);

// Converts to the host's UTF-16. `dst` holds one unit more than `src` has characters, and is terminated
// there: units beyond, which only surrogate pairs need, are cut.
void copyConvertStringLiteralIntoUTF16(const wchar_t* src, A_UTF16Char* dst);

}  // namespace cropUtil
