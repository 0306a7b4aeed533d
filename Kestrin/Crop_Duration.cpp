// The duration crop: the union of what is visible over all frames.

#include <algorithm>
#include <limits>
#include <optional>

#include "Crop.h"
#include "HostHandles.h"
#include "Kestrin_Strings.h"
#include "Numbers.h"
#include "Operation.h"
#include "Preferences.h"
#include "cropUtil.h"
#include "platform/keys.h"
#include "platform/progress.h"

namespace crop {
namespace {

constexpr double unset = -1.0;
constexpr A_FloatRect noRegion{unset, unset, unset, unset};

// What is cropped, and how it is rendered.
struct Subject {
    AEGP_LayerH layer = nullptr;  // null: the composition itself is active
    AEGP_ItemH item = nullptr;
    bool includeMasks = false;
    short xFactor = 1;
    short yFactor = 1;
    A_u_char fullRes = 0;
};

// What the frames showed so far.
struct Coverage {
    CroppingBounds content{0, -1, 0, -1, 0, 0};  // empty until the first frame
    bool hasFrame = false;
    A_FloatRect masks = noRegion;
};

void mergeFrame(Coverage& coverage, const CroppingBounds& frame) {
    if (!coverage.hasFrame) {
        coverage.content = frame;
        coverage.hasFrame = true;
        return;
    }
    CroppingBounds& content = coverage.content;
    content.top = std::min(content.top, frame.top);
    content.left = std::min(content.left, frame.left);
    content.right = std::max(content.right, frame.right);
    content.bottom = std::max(content.bottom, frame.bottom);
}

void mergeMasks(A_FloatRect& masks, const A_FloatRect& masked) {
    masks.left = masks.left == unset ? masked.left : std::min(masks.left, masked.left);
    masks.top = masks.top == unset ? masked.top : std::min(masks.top, masked.top);
    masks.right = std::max(masks.right, masked.right);
    masks.bottom = std::max(masks.bottom, masked.bottom);
}

// A tighter mask edge is taken without its fraction, but compared with it.
void clipToMasks(CroppingBounds& content, const A_FloatRect& masks) {
    if (masks.bottom == unset || masks.right == unset) {
        return;
    }
    if (masks.top > content.top) {
        content.top = truncateToLong(masks.top);
    }
    if (masks.left > content.left) {
        content.left = truncateToLong(masks.left);
    }
    if (masks.bottom < content.bottom) {
        content.bottom = truncateToLong(masks.bottom);
    }
    if (masks.right < content.right) {
        content.right = truncateToLong(masks.right);
    }
}

// In unsigned 32-bit arithmetic, as the host's times are.
A_Time rescaled(A_Time duration, A_u_long scale) {
    if (duration.scale == scale) {
        return duration;
    }
    const A_u_long product = static_cast<A_u_long>(duration.value) * scale;
    return {static_cast<A_long>(duration.scale == 0 ? 0 : product / duration.scale), scale};
}

int percentDone(A_Time current, A_Time duration) {
    const std::int64_t percent = duration.value == 0 ? 0 : std::int64_t{current.value} * 100 / duration.value;
    return static_cast<int>(percent < 100 ? percent + 1 : percent);
}

Subject findSubject(AEGP_SuiteHandler& suites, Result& result) {
    Subject subject;
    Preferences preferences(suites);
    step(result, "get the active layer",
         [&] { return suites.LayerSuite7()->AEGP_GetActiveLayer(&subject.layer); });
    step(result, "open the preferences", [&] { return preferences.open(); });
    if (subject.layer == nullptr) {
        step(result, "get the active item",
             [&] { return suites.ItemSuite8()->AEGP_GetActiveItem(&subject.item); });
        return subject;
    }
    A_Boolean includeMasks = 0;
    step(result, "get the layer's source",
         [&] { return suites.LayerSuite7()->AEGP_GetLayerSourceItem(subject.layer, &subject.item); });
    step(result, "read IncludeMasks", [&] { return preferences.readFlag(StrID_IncludeMasks, &includeMasks); });
    subject.includeMasks = includeMasks != 0;
    return subject;
}

CroppingBounds measureFrame(SPBasicSuite* basic, AEGP_SuiteHandler& suites, Result& result,
                            const Subject& subject, AEGP_RenderOptionsH options) {
    const bool full = subject.fullRes != 0;
    FrameReceipt frame(suites, result);
    AEGP_WorldH world = nullptr;
    CroppingBounds bounds{};
    step(result, "render a frame", [&] {
        return suites.RenderSuite3()->AEGP_RenderAndCheckoutFrame(options, nullptr, nullptr, frame.put());
    });
    step(result, "get the frame's pixels",
         [&] { return suites.RenderSuite3()->AEGP_GetReceiptWorld(frame.get(), &world); });
    step(result, "find the visible content", [&] {
        return findCropBounds(basic, &world, full ? short{1} : subject.xFactor,
                              full ? short{1} : subject.yFactor, &bounds, noRegion);
    });
    return bounds;
}

enum class Scan { finished, cancelled };

// Moves `current` from the start to the first frame time at or past the end. After a failure it goes on to the
// end without the host, so that the keys still cancel.
Scan scanFrames(SPBasicSuite* basic, AEGP_SuiteHandler& suites, Result& result, const Subject& subject,
                AEGP_RenderOptionsH options, A_Time duration, A_long timeStep, A_Time& current,
                platform::ProgressPanel& panel, Coverage& coverage) {
    while (duration.value > current.value) {
        if (timeStep <= 0) {
            result.note("check the time step", A_Err_GENERIC);  // would never end
            break;
        }
        step(result, "set the render time",
             [&] { return suites.RenderOptionsSuite3()->AEGP_SetTime(options, current); });
        if (subject.includeMasks) {
            A_FloatRect masked = noRegion;
            step(result, "read the masked bounds", [&] {
                return suites.LayerSuite7()->AEGP_GetLayerMaskedBounds(subject.layer, AEGP_LTimeMode_LayerTime,
                                                                       &current, &masked);
            });
            mergeMasks(coverage.masks, masked);
        }
        mergeFrame(coverage, measureFrame(basic, suites, result, subject, options));

        const platform::ModifierKeys keys = platform::readModifierKeys(basic);
        if (keys.shift && keys.command) {
            return Scan::cancelled;
        }
        panel.show(percentDone(current, duration));
        constexpr std::int64_t latest = std::numeric_limits<A_long>::max();
        current.value = static_cast<A_long>(std::min(latest, std::int64_t{current.value} + timeStep));
    }
    return Scan::finished;
}

}  // namespace

A_Err cropDuration(SPBasicSuite* basic, int pluginId) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        const auto endUndoGroup = [&] {
            step(result, "end the undo group", [&] { return suites.UtilitySuite5()->AEGP_EndUndoGroup(); });
        };
        step(result, "start the undo group",
             [&] { return suites.UtilitySuite5()->AEGP_StartUndoGroup(GetStringPtr(StrID_KestrinDuration)); });
        Subject subject = findSubject(suites, result);
        step(result, "check for 3D",
             [&] { return cropUtil::ThreeDInItem(basic, pluginId, &subject.item, &checkPrefsThreeD); });

        RenderOptions options(suites, result);
        A_Time duration{0, 1};
        A_Time timeStep{0, 1};
        step(result, "create render options", [&] {
            return suites.RenderOptionsSuite3()->AEGP_NewFromItem(pluginId, subject.item, options.put());
        });
        step(result, "read the duration",
             [&] { return suites.ItemSuite8()->AEGP_GetItemDuration(subject.item, &duration); });
        step(result, "choose the resolution", [&] {
            AEGP_RenderOptionsH lent = options.get();
            return checkResolution(basic, pluginId, &lent, &subject.xFactor, &subject.yFactor,
                                   &subject.fullRes);
        });
        step(result, "read the time step",
             [&] { return suites.RenderOptionsSuite3()->AEGP_GetTimeStep(options.get(), &timeStep); });
        duration = rescaled(duration, timeStep.scale);

        Coverage coverage;
        A_Time current{0, timeStep.scale};
        std::optional<platform::ProgressPanel> panel(std::in_place, basic, "Crop Duration Progress",
                                                     "To cancel, hold Command + Shift");
        if (scanFrames(basic, suites, result, subject, options.get(), duration, timeStep.value, current, *panel,
                       coverage) == Scan::cancelled) {
            options.release();  // not given back after a cancel
            panel.reset();
            endUndoGroup();
            return;
        }
        if (subject.includeMasks) {
            clipToMasks(coverage.content, coverage.masks);
        }
        if (isEmpty(coverage.content)) {
            options.release();  // not given back where nothing is visible
            panel.reset();
            endUndoGroup();
            return;
        }
        step(result, "apply the crop", [&] {
            AEGP_RenderOptionsH given = options.release();
            return finishCropping(basic, pluginId, &subject.item, coverage.content, current, subject.fullRes,
                                  &given, subject.xFactor, subject.yFactor);
        });
        panel.reset();
        if (result.ok()) {
            checkPrefsThreeD = 1;
            resChosen = 0;
        }
        endUndoGroup();
    });
}

}  // namespace crop
