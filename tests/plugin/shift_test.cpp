#include <gtest/gtest.h>

#include <sstream>

#include "Crop_Uses.h"
#include "FakeHost.h"
#include "cropUtil.h"

namespace {

// One layer's Anchor Point or Position: the static value, or one for each keyframe at time i / 1.
struct {
    std::vector<AEGP_ThreeDVal> values;
    A_long keyframes;
    A_Boolean is3D;
    int open;
} layerState;

std::string text(const AEGP_ThreeDVal& value) {
    std::ostringstream out;
    out << value.x << " " << value.y << " " << value.z;
    return out.str();
}

class Shift : public testing::Test {
 protected:
    Shift() {
        layerState = {{{960, 540, 10}}, 0, 1, 0};
        streams_.AEGP_GetNewLayerStream = [](AEGP_PluginID, AEGP_LayerH, AEGP_LayerStream,
                                             AEGP_StreamRefH* stream) {
            *stream = reinterpret_cast<AEGP_StreamRefH>(&layerState);
            ++layerState.open;
            return FakeHost::call("stream");
        };
        streams_.AEGP_GetNewStreamValue = [](AEGP_PluginID, AEGP_StreamRefH, AEGP_LTimeMode, const A_Time* time,
                                             A_Boolean preExpression, AEGP_StreamValue2* value) {
            EXPECT_TRUE(preExpression);
            value->val.three_d = layerState.values.at(static_cast<std::size_t>(time->value));
            ++layerState.open;
            return FakeHost::call("value");
        };
        streams_.AEGP_SetStreamValue = [](AEGP_PluginID, AEGP_StreamRefH, AEGP_StreamValue2* value) {
            return FakeHost::call("set " + text(value->val.three_d));
        };
        streams_.AEGP_DisposeStreamValue = [](AEGP_StreamValue2*) {
            --layerState.open;
            return A_Err{A_Err_NONE};
        };
        streams_.AEGP_DisposeStream = [](AEGP_StreamRefH) {
            --layerState.open;
            return A_Err{A_Err_NONE};
        };
        keyframes_.AEGP_GetStreamNumKFs = [](AEGP_StreamRefH, A_long* count) {
            *count = layerState.keyframes;
            return FakeHost::call("count");
        };
        keyframes_.AEGP_GetKeyframeTime = [](AEGP_StreamRefH, AEGP_KeyframeIndex index, AEGP_LTimeMode,
                                             A_Time* time) {
            *time = {index, 1};
            return FakeHost::call("time");
        };
        keyframes_.AEGP_GetKeyframeInterpolation = [](AEGP_StreamRefH, AEGP_KeyframeIndex,
                                                      AEGP_KeyframeInterpolationType* in,
                                                      AEGP_KeyframeInterpolationType* out) {
            *in = AEGP_KeyInterp_HOLD;
            *out = AEGP_KeyInterp_BEZIER;
            return FakeHost::call("interpolation");
        };
        keyframes_.AEGP_SetKeyframeInterpolation = [](AEGP_StreamRefH, AEGP_KeyframeIndex,
                                                      AEGP_KeyframeInterpolationType in,
                                                      AEGP_KeyframeInterpolationType out) {
            return FakeHost::call("interpolate " + std::to_string(in) + " " + std::to_string(out));
        };
        keyframes_.AEGP_SetKeyframeValue = [](AEGP_StreamRefH, AEGP_KeyframeIndex,
                                              const AEGP_StreamValue2* value) {
            return FakeHost::call("set " + text(value->val.three_d));
        };
        layers_.AEGP_IsLayer3D = [](AEGP_LayerH, A_Boolean* is3D) {
            *is3D = layerState.is3D;
            return FakeHost::call("3D");
        };
        host_.offer("AEGP Stream Suite", 9, &streams_);
        host_.offer("AEGP Keyframe Suite", 4, &keyframes_);
        host_.offer("AEGP Layer Suite", 13, &layers_);
    }

    A_Err shiftXY() {
        const crop::CroppingBounds bounds{50, 549, 100, 1099, 1920, 1080};
        const crop::UseCorrection use = crop::correctionOfUses(bounds, 1000, 500);
        return cropUtil::ShiftLayerXY(host_.basic(), 9, layer_, use.xOffset, use.yOffset, use.zFactor,
                                      use.xDivisor, use.yDivisor, use.xSizeChange, use.ySizeChange);
    }

    FakeHost host_;
    AEGP_StreamSuite4 streams_{};
    AEGP_KeyframeSuite4 keyframes_{};
    AEGP_LayerSuite7 layers_{};
    AEGP_LayerH layer_ = reinterpret_cast<AEGP_LayerH>(&layerState);
};

using Calls = std::vector<std::string>;

TEST_F(Shift, CorrectsAStaticAnchorPointWithItsDepth) {
    EXPECT_EQ(shiftXY(), 0);
    EXPECT_EQ(host_.calls(), (Calls{"stream", "count", "value", "3D", "set 1743.2 1116.4 21.6"}));
    EXPECT_EQ(layerState.open, 0);
}

TEST_F(Shift, CorrectsEveryKeyframeWithoutItsDepth) {
    layerState.values = {{960, 540, 10}, {0, 0, 20}};
    layerState.keyframes = 2;
    EXPECT_EQ(shiftXY(), 0);
    EXPECT_EQ(host_.calls(), (Calls{"stream", "count", "time", "value", "interpolation", "interpolate 1 1",
                                    "set 1743.2 1116.4 10", "interpolate 3 2", "time", "value", "interpolation",
                                    "interpolate 1 1", "set -100 -50 20", "interpolate 3 2"}));
    EXPECT_EQ(layerState.open, 0);
}

TEST_F(Shift, StopsAtAFailureAndLeavesTheHandlesOpen) {
    host_.failAt("3D", 3);
    EXPECT_EQ(shiftXY(), 3);
    EXPECT_EQ(host_.calls().back(), "3D");
    EXPECT_EQ(layerState.open, 2);
}

TEST_F(Shift, MovesOrSetsAPositionAndRefusesANullLayer) {
    const A_Time start{0, 1};
    EXPECT_EQ(cropUtil::ShiftLayerPosition(host_.basic(), 9, &layer_, start, 1, 2, 3, 0), 0);
    EXPECT_EQ(cropUtil::ShiftLayerPosition(host_.basic(), 9, &layer_, start, 1, 2, 3, 1), 0);
    EXPECT_EQ(host_.calls(), (Calls{"stream", "value", "set 961 542 13", "stream", "value", "set 1 2 3"}));
    EXPECT_EQ(layerState.open, 0);

    AEGP_LayerH none = nullptr;
    EXPECT_EQ(cropUtil::ShiftLayerPosition(host_.basic(), 9, &none, start, 1, 2, 3, 1), A_Err_PARAMETER);
    EXPECT_EQ(host_.calls().size(), 6U);
}

TEST(UseCorrection, OddSizesLoseHalfAPixelAndMasksFollowTheAnchorPoint) {
    const crop::CroppingBounds odd{0, 750, 0, 1000, 1001, 751};
    EXPECT_EQ(crop::correctionOfUses(odd, 1001, 751).xOffset, -0.5);

    const crop::CroppingBounds bounds{50, 549, 100, 1099, 1920, 1080};
    const crop::UseCorrection use = crop::correctionOfUses(bounds, 1000, 500);
    const AEGP_MaskVertex vertex = crop::corrected({100, 50, 1000, 500, -1000, -500}, use, bounds);
    EXPECT_DOUBLE_EQ(vertex.x, 92);
    EXPECT_DOUBLE_EQ(vertex.y, 58);
    EXPECT_DOUBLE_EQ(vertex.tan_in_x, 1920);
    EXPECT_DOUBLE_EQ(vertex.tan_out_y, -1080);
}

}  // namespace
