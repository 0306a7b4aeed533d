// The crops: measure visible content, resize a composition to it, and keep everything where it was on screen.
//
// Each operation takes the host's basic suite, acquires what it needs for the length of the call and returns
// the first failure (516 for a missing suite), or 0. After a failure no further host call is made, unless said;
// handles are left to the host. Main thread only.

#pragma once

#include "AEGP_Host.h"

// The user's answer to the resolution question: 0 not asked yet, 1 full resolution, anything else the
// current one. Lasts for one command.
extern A_long resChosen;

namespace crop {

// Full-resolution pixels of the rendered item, origin at its top-left corner, y downwards. The edges are whole
// numbers and indices: first and last visible row and column. The sizes are of what was rendered.
struct CroppingBounds {
    double top;
    double bottom;
    double left;
    double right;
    A_long width;
    A_long height;
};

// Whether nothing is visible.
inline bool isEmpty(const CroppingBounds& bounds) {
    return bounds.top > bounds.bottom || bounds.left > bounds.right;
}

// Finds the visible pixels (alpha above zero) of a rendered frame, limits them to `region` (compared with
// pixels of the frame as they are; right or bottom -1: no limit), scales them by the factors that the frame
// was rendered at and adds the user's padding. `world` stays the caller's. `bounds` is written in every
// case; a failure before the frame could be read leaves it empty or of size 0.
A_Err findCropBounds(SPBasicSuite* basic, AEGP_WorldH* world, short xFactor, short yFactor,
                     CroppingBounds* bounds, A_FloatRect region);

// Decides whether to render at full resolution: by preference, or by asking once per command (a modal
// script dialog). The factors are the ones found; `*fullRes` is 1 when the options were then set to 1 by 1.
A_Err checkResolution(SPBasicSuite* basic, int pluginId, AEGP_RenderOptionsH* renderOptions, short* xFactor,
                      short* yFactor, unsigned char* fullRes);

// Crops the compositions behind the selected layers of the active composition, or that one itself without
// a selection, or `compItem` where it is not null. With `expandAmount` the frame itself, that much larger on
// every side, is taken for the content. Alerts tell of layers or compositions without content. The caller
// has opened an undo group; it is ended here where there was nothing to crop at all.
A_Err standardCrop(SPBasicSuite* basic, int pluginId, AEGP_ItemH compItem, short expandAmount);

// Crops the active composition, or the active layer's source, to what is visible at any time of its duration.
// A panel shows the progress; held modifier keys cancel. 0 also then, and when nothing is visible; a failure
// where the time step is not above 0. Opens and ends its own undo group; after a failure the group stays open.
A_Err cropDuration(SPBasicSuite* basic, int pluginId);

// Crops the active layer's source to one of the layer's masks, asking which if that is not plain. 0 also
// when the user cancels. Opens and ends its own undo group; after a failure or a cancel it stays open.
A_Err maskCrop(SPBasicSuite* basic, int pluginId);

// Resizes the composition `item` to the rectangle, moves its content along and corrects all its uses. `time`
// is where the uses' static masks are read. With `fullRes` the options' factors are set back to xFactor and
// yFactor. Takes the render options, if not null, over and releases them, but not after a failure. The null
// that moves the content is moved whatever happened before.
A_Err finishCropping(SPBasicSuite* basic, int pluginId, AEGP_ItemH* item, CroppingBounds bounds, A_Time time,
                     unsigned char fullRes, AEGP_RenderOptionsH* renderOptions, short xFactor, short yFactor);

// Makes `newParent` the parent of every other layer of its composition that has none.
A_Err SetAllEmptyParents(SPBasicSuite* basic, AEGP_LayerH* newParent, AEGP_CompH* comp);

// Corrects Anchor Point and masks of every layer that shows the composition `item`, which was cropped to
// `bounds` and now has the size `newWidth` by `newHeight`, not truncated.
A_Err findAndCorrectAllUses(SPBasicSuite* basic, int pluginId, AEGP_ItemH* item, A_Time time,
                            CroppingBounds bounds, double newWidth, double newHeight);

}  // namespace crop
