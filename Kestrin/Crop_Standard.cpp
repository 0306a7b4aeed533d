// The standard crop: what to crop, one frame of each, and what to tell the user about the empty ones.

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "Crop.h"
#include "HostHandles.h"
#include "Kestrin_Strings.h"
#include "Numbers.h"
#include "Operation.h"
#include "Preferences.h"
#include "Scripts.h"
#include "cropUtil.h"

namespace crop {
namespace {

class StandardCrop {
 public:
    StandardCrop(SPBasicSuite* basic, int pluginId, AEGP_ItemH compItem, short expandAmount,
                 AEGP_SuiteHandler& suites, Result& result)
        : basic_(basic),
          pluginId_(pluginId),
          compItem_(compItem),
          expandAmount_(expandAmount),
          suites_(suites),
          result_(result),
          selection_(suites, result) {}

    void run();

 private:
    // What one pass renders: a selected layer's source, or the composition with a null layer.
    struct Target {
        AEGP_LayerH layer = nullptr;
        AEGP_ItemH item = nullptr;
    };
    enum class Pass { done, wholeCompEmpty };

    void filterSelection();
    void eraseInactiveLayers();
    void eraseRepeatedSources();
    AEGP_LayerH selectedLayer(A_u_long index);
    AEGP_ItemH sourceOf(AEGP_LayerH layer);
    void eraseSelected(A_u_long index);
    void countSelection();

    Pass crop(A_u_long index, bool includeMasks);
    A_Time renderTimeOf(AEGP_LayerH layer);
    CroppingBounds measure(AEGP_RenderOptionsH options, short xFactor, short yFactor,
                           const A_FloatRect& region);
    CroppingBounds expandedFrame(AEGP_WorldH world);

    void noteNotCropped(AEGP_LayerH layer);
    void alertNotCropped();
    void alertAndEndUndoGroup(const char* script);

    SPBasicSuite* basic_;
    int pluginId_;
    AEGP_ItemH compItem_;
    short expandAmount_;
    AEGP_SuiteHandler& suites_;
    Result& result_;

    AEGP_CompH comp_ = nullptr;
    Collection selection_;
    A_u_long count_ = 0;  // passes to make
    bool wholeComp_ = false;
    A_Time now_{0, 1};
    std::string notCropped_;  // layer indices from 0, joined by commas
};

void StandardCrop::run() {
    if (compItem_ == nullptr) {
        step(result_, "take the selection", [&] {
            return cropUtil::GetSelectedLayers(basic_, pluginId_, &compItem_, &comp_, selection_.put(),
                                               &count_);
        });
    }
    step(result_, "read the current time",
         [&] { return suites_.ItemSuite8()->AEGP_GetItemCurrentTime(compItem_, &now_); });
    if (count_ == 0) {
        step(result_, "check the composition for 3D",
             [&] { return cropUtil::ThreeDInItem(basic_, pluginId_, &compItem_, &checkPrefsThreeD); });
        wholeComp_ = true;
        count_ = 1;
    } else {
        filterSelection();
        if (count_ == 0) {
            alertAndEndUndoGroup(scripts::noLayersAlert);
            return;
        }
    }

    Preferences preferences(suites_);
    A_Boolean includeMasks = 0;
    step(result_, "open the preferences", [&] { return preferences.open(); });
    step(result_, "read IncludeMasks", [&] { return preferences.readFlag(StrID_IncludeMasks, &includeMasks); });
    for (A_u_long i = 0; i < count_; ++i) {
        if (crop(i, includeMasks != 0) == Pass::wholeCompEmpty) {
            // The answers given so far stay in force for the next command.
            alertAndEndUndoGroup(scripts::emptyCompositionAlert);
            return;
        }
    }
    resChosen = 0;
    checkPrefsThreeD = 1;
    if (!notCropped_.empty()) {
        alertNotCropped();
    }
}

void StandardCrop::filterSelection() {
    step(result_, "drop what cannot be cropped", [&] {
        AEGP_Collection2H selection = selection_.get();
        return cropUtil::RemoveNonPrecomps(basic_, &selection, &count_);
    });
    countSelection();
    eraseInactiveLayers();
    countSelection();
    if (count_ == 0) {
        return;
    }
    eraseRepeatedSources();
    countSelection();
    step(result_, "select what is left",
         [&] { return suites_.CompSuite7()->AEGP_SetSelection(comp_, selection_.get()); });
    step(result_, "check the selection for 3D", [&] {
        return cropUtil::CheckForThreeD(basic_, pluginId_, selection_.get(), count_, &checkPrefsThreeD);
    });
}

// Compares the times' values alone, whatever their scales. A layer that ends now is inactive.
void StandardCrop::eraseInactiveLayers() {
    for (std::int64_t i = std::int64_t{count_} - 1; i >= 0 && result_.ok(); --i) {
        const auto index = static_cast<A_u_long>(i);
        const AEGP_LayerH layer = selectedLayer(index);
        A_Time in{0, 1};
        A_Time duration{0, 1};
        step(result_, "read the in point",
             [&] { return suites_.LayerSuite7()->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &in); });
        bool inactive = in.value > now_.value;
        if (!inactive) {
            step(result_, "read the duration", [&] {
                return suites_.LayerSuite7()->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &duration);
            });
            inactive = std::int64_t{in.value} + duration.value <= now_.value;
        }
        if (inactive) {
            eraseSelected(index);
        }
    }
}

// Of several layers with one source the last stays.
void StandardCrop::eraseRepeatedSources() {
    std::unordered_set<A_long> seenIds;
    for (std::int64_t i = std::int64_t{count_} - 1; i >= 0 && result_.ok(); --i) {
        const auto index = static_cast<A_u_long>(i);
        const AEGP_ItemH source = sourceOf(selectedLayer(index));
        A_long id = 0;
        step(result_, "read the source's id",
             [&] { return suites_.ItemSuite8()->AEGP_GetItemID(source, &id); });
        if (!seenIds.insert(id).second) {
            eraseSelected(index);
        }
    }
}

AEGP_LayerH StandardCrop::selectedLayer(A_u_long index) {
    AEGP_CollectionItemV2 item{};
    step(result_, "get a selected layer", [&] {
        return suites_.CollectionSuite2()->AEGP_GetCollectionItemByIndex(selection_.get(), index, &item);
    });
    return item.u.layer.layerH;
}

AEGP_ItemH StandardCrop::sourceOf(AEGP_LayerH layer) {
    AEGP_ItemH source = nullptr;
    step(result_, "get the layer's source",
         [&] { return suites_.LayerSuite7()->AEGP_GetLayerSourceItem(layer, &source); });
    return source;
}

void StandardCrop::eraseSelected(A_u_long index) {
    step(result_, "drop a layer",
         [&] { return suites_.CollectionSuite2()->AEGP_CollectionErase(selection_.get(), index, index + 1); });
}

void StandardCrop::countSelection() {
    step(result_, "count the selection",
         [&] { return suites_.CollectionSuite2()->AEGP_GetCollectionNumItems(selection_.get(), &count_); });
}

StandardCrop::Pass StandardCrop::crop(A_u_long index, bool includeMasks) {
    Target target{nullptr, compItem_};
    if (!wholeComp_) {
        target.layer = selectedLayer(index);
        target.item = sourceOf(target.layer);
    }
    RenderOptions options(suites_, result_);
    step(result_, "create render options", [&] {
        return suites_.RenderOptionsSuite3()->AEGP_NewFromItem(pluginId_, target.item, options.put());
    });
    short xFactor = 1;
    short yFactor = 1;
    A_u_char fullRes = 0;
    step(result_, "choose the resolution", [&] {
        AEGP_RenderOptionsH lent = options.get();
        return checkResolution(basic_, pluginId_, &lent, &xFactor, &yFactor, &fullRes);
    });

    A_FloatRect region{-1.0, -1.0, -1.0, -1.0};
    const A_Time renderTime = wholeComp_ ? now_ : renderTimeOf(target.layer);
    if (!wholeComp_ && includeMasks) {
        step(result_, "read the masked bounds", [&] {
            return suites_.LayerSuite7()->AEGP_GetLayerMaskedBounds(target.layer, AEGP_LTimeMode_LayerTime,
                                                                    &renderTime, &region);
        });
    }
    step(result_, "set the render time",
         [&] { return suites_.RenderOptionsSuite3()->AEGP_SetTime(options.get(), renderTime); });

    const bool full = fullRes != 0;
    const CroppingBounds bounds =
        measure(options.get(), full ? short{1} : xFactor, full ? short{1} : yFactor, region);
    if (!isEmpty(bounds)) {
        step(result_, "apply the crop", [&] {
            AEGP_RenderOptionsH given = options.release();
            return finishCropping(basic_, pluginId_, &target.item, bounds, renderTime, fullRes, &given, xFactor,
                                  yFactor);
        });
        return Pass::done;
    }
    if (wholeComp_) {
        return Pass::wholeCompEmpty;
    }
    noteNotCropped(target.layer);
    return Pass::done;
}

// The layer's current time, or what its time remapping makes of it.
A_Time StandardCrop::renderTimeOf(AEGP_LayerH layer) {
    A_Time time{0, 1};
    AEGP_LayerFlags flags = 0;
    step(result_, "read the layer's switches",
         [&] { return suites_.LayerSuite7()->AEGP_GetLayerFlags(layer, &flags); });
    const bool remapped = (flags & AEGP_LayerFlag_TIME_REMAPPING) != 0;
    const AEGP_LTimeMode mode = remapped ? AEGP_LTimeMode_CompTime : AEGP_LTimeMode_LayerTime;
    step(result_, "read the layer's time",
         [&] { return suites_.LayerSuite7()->AEGP_GetLayerCurrentTime(layer, mode, &time); });
    if (remapped) {
        Stream stream(suites_, result_);
        StreamValue seconds(suites_, result_, pluginId_);
        step(result_, "get the time remapping", [&] {
            return suites_.StreamSuite4()->AEGP_GetNewLayerStream(pluginId_, layer, AEGP_LayerStream_TIME_REMAP,
                                                                  stream.put());
        });
        seconds.read("read the time remapping", stream, mode, time, Expressions::applied);
        if (result_.ok()) {
            time.value = truncateToLong(seconds.get()->val.one_d * time.scale);
        }
    }
    return time;
}

CroppingBounds StandardCrop::measure(AEGP_RenderOptionsH options, short xFactor, short yFactor,
                                     const A_FloatRect& region) {
    FrameReceipt frame(suites_, result_);
    AEGP_WorldH world = nullptr;
    CroppingBounds bounds{};
    step(result_, "render the frame", [&] {
        return suites_.RenderSuite3()->AEGP_RenderAndCheckoutFrame(options, nullptr, nullptr, frame.put());
    });
    step(result_, "get the frame's pixels",
         [&] { return suites_.RenderSuite3()->AEGP_GetReceiptWorld(frame.get(), &world); });
    if (expandAmount_ != 0) {
        bounds = expandedFrame(world);
    } else {
        step(result_, "find the visible content",
             [&] { return findCropBounds(basic_, &world, xFactor, yFactor, &bounds, region); });
    }
    return bounds;
}

// Unlike scanned bounds, neither scaled nor padded, and with right and bottom one past the last pixel.
CroppingBounds StandardCrop::expandedFrame(AEGP_WorldH world) {
    const double amount = expandAmount_;
    A_long width = 0;
    A_long height = 0;
    step(result_, "read the frame's size",
         [&] { return suites_.WorldSuite3()->AEGP_GetSize(world, &width, &height); });
    return {-amount, height + amount, -amount, width + amount, width, height};
}

void StandardCrop::noteNotCropped(AEGP_LayerH layer) {
    A_long index = 0;
    step(result_, "read the layer's index",
         [&] { return suites_.LayerSuite7()->AEGP_GetLayerIndex(layer, &index); });
    notCropped_ += (notCropped_.empty() ? "" : ",") + std::to_string(index);
}

void StandardCrop::alertNotCropped() {
    constexpr std::size_t usualSize = 1024;
    std::vector<char> script(std::max(usualSize, sizeof scripts::notCroppedAlert + notCropped_.size()));
    cropUtil::SprintOS(script.data(), static_cast<int>(script.size()), scripts::notCroppedAlert,
                       notCropped_.c_str());
    step(result_, "tell what was not cropped",
         [&] { return cropUtil::RunScript(suites_, pluginId_, script.data()); });
}

void StandardCrop::alertAndEndUndoGroup(const char* script) {
    step(result_, "tell that nothing was cropped",
         [&] { return cropUtil::RunScript(suites_, pluginId_, script); });
    step(result_, "end the undo group", [&] { return suites_.UtilitySuite5()->AEGP_EndUndoGroup(); });
}

}  // namespace

A_Err standardCrop(SPBasicSuite* basic, int pluginId, AEGP_ItemH compItem, short expandAmount) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        StandardCrop(basic, pluginId, compItem, expandAmount, suites, result).run();
    });
}

}  // namespace crop
