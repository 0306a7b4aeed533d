// The layer geometry that the crops change: Position and Anchor Point.

#include "HostHandles.h"
#include "Operation.h"
#include "cropUtil.h"

A_Err cropUtil::ShiftLayerPosition(SPBasicSuite* basic, int pluginId, AEGP_LayerH* layer, A_Time time,
                                   double dx, double dy, double dz, unsigned char absolute) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        Stream stream(suites, result);
        StreamValue value(suites, result, pluginId);
        step(result, "get the Position", [&] {
            return suites.StreamSuite4()->AEGP_GetNewLayerStream(pluginId, *layer, AEGP_LayerStream_POSITION,
                                                                 stream.put());
        });
        value.read("read the Position", stream, AEGP_LTimeMode_CompTime, time, Expressions::before);
        step(result, "write the Position", [&] {
            AEGP_ThreeDVal& position = value.get()->val.three_d;
            position = absolute != 0 ? AEGP_ThreeDVal{dx, dy, dz}
                                     : AEGP_ThreeDVal{position.x + dx, position.y + dy, position.z + dz};
            return suites.StreamSuite4()->AEGP_SetStreamValue(pluginId, stream.get(), value.get());
        });
    });
}

A_Err cropUtil::ShiftLayerXY(SPBasicSuite* basic, int pluginId, AEGP_LayerH layer, double xOffset,
                             double yOffset, double zFactor, double xDivisor, double yDivisor,
                             double xSizeChange, double ySizeChange) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        Stream stream(suites, result);
        StreamValue value(suites, result, pluginId);
        A_Boolean is3D = 0;  // asked for a static Anchor Point only: a keyframed one keeps its z
        A_long keyframeCount = 0;

        const auto correct = [&] {
            AEGP_ThreeDVal& anchor = value.get()->val.three_d;
            anchor.x = anchor.x / xDivisor - xSizeChange / 2 + xOffset;
            anchor.y = anchor.y / yDivisor - ySizeChange / 2 + yOffset;
            if (is3D != 0) {
                anchor.z *= zFactor;
            }
        };

        step(result, "get the Anchor Point", [&] {
            return suites.StreamSuite4()->AEGP_GetNewLayerStream(pluginId, layer, AEGP_LayerStream_ANCHORPOINT,
                                                                 stream.put());
        });
        step(result, "count its keyframes",
             [&] { return suites.KeyframeSuite4()->AEGP_GetStreamNumKFs(stream.get(), &keyframeCount); });

        for (A_long i = 0; i < keyframeCount && result.ok(); ++i) {
            A_Time time{0, 1};
            AEGP_KeyframeInterpolationType in = AEGP_KeyInterp_NONE;
            AEGP_KeyframeInterpolationType out = AEGP_KeyInterp_NONE;
            step(result, "read a keyframe's time", [&] {
                return suites.KeyframeSuite4()->AEGP_GetKeyframeTime(stream.get(), i, AEGP_LTimeMode_LayerTime,
                                                                     &time);
            });
            value.read("read a keyframe's value", stream, AEGP_LTimeMode_LayerTime, time, Expressions::before);
            step(result, "read a keyframe's interpolation", [&] {
                return suites.KeyframeSuite4()->AEGP_GetKeyframeInterpolation(stream.get(), i, &in, &out);
            });
            step(result, "set a keyframe to linear", [&] {
                return suites.KeyframeSuite4()->AEGP_SetKeyframeInterpolation(
                    stream.get(), i, AEGP_KeyInterp_LINEAR, AEGP_KeyInterp_LINEAR);
            });
            step(result, "write a keyframe's value", [&] {
                correct();
                return suites.KeyframeSuite4()->AEGP_SetKeyframeValue(stream.get(), i, value.get());
            });
            step(result, "set a keyframe's interpolation back", [&] {
                return suites.KeyframeSuite4()->AEGP_SetKeyframeInterpolation(stream.get(), i, in, out);
            });
        }

        if (keyframeCount <= 0) {
            value.read("read the Anchor Point", stream, AEGP_LTimeMode_LayerTime, A_Time{0, 1},
                       Expressions::before);
            step(result, "ask whether the layer is 3D",
                 [&] { return suites.LayerSuite7()->AEGP_IsLayer3D(layer, &is3D); });
            step(result, "write the Anchor Point", [&] {
                correct();
                return suites.StreamSuite4()->AEGP_SetStreamValue(pluginId, stream.get(), value.get());
            });
        }
    });
}

A_Err cropUtil::GetAnchorPointDif(SPBasicSuite* basic, int pluginId, AEGP_LayerH layer, A_Time time,
                                  AEGP_ThreeDVal* difference) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        Stream anchorStream(suites, result);
        Stream positionStream(suites, result);
        StreamValue anchor(suites, result, pluginId);
        StreamValue position(suites, result, pluginId);
        step(result, "get the Anchor Point", [&] {
            return suites.StreamSuite4()->AEGP_GetNewLayerStream(pluginId, layer, AEGP_LayerStream_ANCHORPOINT,
                                                                 anchorStream.put());
        });
        step(result, "get the Position", [&] {
            return suites.StreamSuite4()->AEGP_GetNewLayerStream(pluginId, layer, AEGP_LayerStream_POSITION,
                                                                 positionStream.put());
        });
        anchor.read("read the Anchor Point", anchorStream, AEGP_LTimeMode_LayerTime, time, Expressions::before);
        position.read("read the Position", positionStream, AEGP_LTimeMode_LayerTime, time, Expressions::before);
        if (result.ok()) {
            const AEGP_ThreeDVal& p = position.get()->val.three_d;
            const AEGP_ThreeDVal& a = anchor.get()->val.three_d;
            *difference = {p.x - a.x, p.y - a.y, p.z - a.z};
        }
    });
}
