// Streams and keyframes: anchor point, position, scale, rotation, time remap, mask outline.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

// A stream reference, resolved: a mask's outline, or else a stream of the layer.
struct Resolved {
    model::Layer& layer;
    AEGP_LayerStream which;
    std::shared_ptr<model::Mask> mask;

    bool isPoint() const {
        return !mask && (which == AEGP_LayerStream_ANCHORPOINT || which == AEGP_LayerStream_POSITION ||
                         which == AEGP_LayerStream_SCALE);
    }
    model::PointStream& point() const { return pointOf(which)(layer); }
    model::ScalarStream& scalar() const { return scalarOf(which)(layer); }

    using GetPoint = model::PointStream& (*)(model::Layer&);
    using GetScalar = model::ScalarStream& (*)(model::Layer&);

    static GetPoint pointOf(AEGP_LayerStream which) {
        switch (which) {
            case AEGP_LayerStream_ANCHORPOINT:
                return [](model::Layer& l) -> model::PointStream& { return l.anchor; };
            case AEGP_LayerStream_POSITION:
                return [](model::Layer& l) -> model::PointStream& { return l.position; };
            default:
                return [](model::Layer& l) -> model::PointStream& { return l.scale; };
        }
    }
    static GetScalar scalarOf(AEGP_LayerStream which) {
        if (which == AEGP_LayerStream_ROTATION) {
            return [](model::Layer& l) -> model::ScalarStream& { return l.rotation; };
        }
        return [](model::Layer& l) -> model::ScalarStream& { return *l.timeRemap; };
    }
};

Resolved resolve(Session& session, AEGP_StreamRefH handle) {
    const Session::StreamRef& ref = session.streams.at(bits(handle));
    if (ref.mask) {
        auto [layer, index] = session.ownerOf({ref.layer, ref.mask});
        return {layer, 0, ref.mask};
    }
    model::Layer* layer = session.project().layer(ref.layer);
    if (layer == nullptr) {
        throw HostError{A_Err_PARAMETER, "the layer of this stream has been deleted"};
    }
    return {*layer, ref.which, nullptr};
}

// The host counts a source's time from its composition's first frame; the file does not.
double remapOffset(Session& session, const Resolved& stream) {
    if (stream.which != AEGP_LayerStream_TIME_REMAP || stream.layer.source == nullptr ||
        !stream.layer.source->comp) {
        return 0;
    }
    return stream.layer.source->comp->firstFrame / session.project().frameRate();
}

// A value's own handle lies behind the numbers that it may have, so that it is known wherever it is copied to.
constexpr std::size_t handlePlace = sizeof(AEGP_ThreeDVal);
static_assert(handlePlace + sizeof(std::uintptr_t) <= sizeof(AEGP_StreamVal2));

std::uintptr_t handleIn(const AEGP_StreamValue2& value) {
    std::uintptr_t handle = 0;
    std::memcpy(&handle, reinterpret_cast<const char*>(&value.val) + handlePlace, sizeof handle);
    return handle;
}

void putHandle(Session& session, AEGP_StreamRefH streamH, AEGP_StreamValue2& value, std::uintptr_t outline,
               const char* madeBy) {
    value.streamH = streamH;
    const std::uintptr_t handle = session.values.add({outline}, madeBy);
    std::memcpy(reinterpret_cast<char*>(&value.val) + handlePlace, &handle, sizeof handle);
}

void give(Session& session, AEGP_StreamRefH streamH, AEGP_StreamValue2& value, const model::MaskPath& path,
          const char* madeBy) {
    value = {};
    const std::uintptr_t outline = session.outlines.add(path, madeBy);
    value.val.mask = reinterpret_cast<AEGP_MaskOutlineValH>(outline);
    putHandle(session, streamH, value, outline, madeBy);
}

void give(Session& session, AEGP_StreamRefH streamH, AEGP_StreamValue2& value, const model::Vec3& point,
          const char* madeBy) {
    value = {};
    value.val.three_d = {point.x, point.y, point.z};
    putHandle(session, streamH, value, 0, madeBy);
}

void give(Session& session, AEGP_StreamRefH streamH, AEGP_StreamValue2& value, double number,
          const char* madeBy) {
    value = {};
    value.val.one_d = number;
    putHandle(session, streamH, value, 0, madeBy);
}

model::Vec3 pointIn(const AEGP_StreamValue2& value) {
    return {needNumber(value.val.three_d.x), needNumber(value.val.three_d.y), needNumber(value.val.three_d.z)};
}

// ---- Streams --------------------------------------------------------------------------------------------

A_Err getNewLayerStream(AEGP_PluginID, AEGP_LayerH layer, AEGP_LayerStream which,
                        AEGP_StreamRefH* stream) noexcept {
    return gate("AEGP_GetNewLayerStream", [&](Session& session) {
        needHandle(stream);
        const model::Layer& what = session.layer(layer);
        const bool hasPlane = what.type != model::LayerType::Camera && what.type != model::LayerType::Light;
        const bool has = which == AEGP_LayerStream_POSITION ||
                         (which == AEGP_LayerStream_TIME_REMAP && what.timeRemap.has_value()) ||
                         (hasPlane && (which == AEGP_LayerStream_ANCHORPOINT ||
                                       which == AEGP_LayerStream_SCALE || which == AEGP_LayerStream_ROTATION));
        if (!has) {
            throw HostError{A_Err_PARAMETER, "the layer has no stream " + std::to_string(which)};
        }
        *stream = reinterpret_cast<AEGP_StreamRefH>(
            session.streams.add({what.id, which, nullptr}, "AEGP_GetNewLayerStream"));
    });
}

A_Err getNewMaskStream(AEGP_PluginID, AEGP_MaskRefH mask, AEGP_MaskStream which,
                       AEGP_StreamRefH* stream) noexcept {
    return gate("AEGP_GetNewMaskStream", [&](Session& session) {
        needHandle(stream);
        const Session::MaskRef& ref = session.masks.at(bits(mask));
        session.ownerOf(ref);
        if (which != AEGP_MaskStream_OUTLINE) {
            throw HostError{A_Err_PARAMETER, "this host has no mask stream " + std::to_string(which)};
        }
        *stream = reinterpret_cast<AEGP_StreamRefH>(
            session.streams.add({ref.layer, 0, ref.mask}, "AEGP_GetNewMaskStream"));
    });
}

A_Err disposeStream(AEGP_StreamRefH stream) noexcept {
    return gate("AEGP_DisposeStream", [&](Session& session) { session.streams.remove(bits(stream)); });
}

A_Err getNewStreamValue(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_LTimeMode mode, const A_Time* time,
                        A_Boolean, AEGP_StreamValue2* value) noexcept {
    return gate("AEGP_GetNewStreamValue", [&](Session& session) {
        AEGP_StreamValue2& out = need(value);
        const Resolved what = resolve(session, stream);
        const double frame = session.fileFrameOf(what.layer, mode, need(time));
        if (what.mask) {
            give(session, stream, out, what.mask->path.at(frame), "AEGP_GetNewStreamValue");
        } else if (what.isPoint()) {
            give(session, stream, out, what.point().at(frame), "AEGP_GetNewStreamValue");
        } else {
            give(session, stream, out, what.scalar().at(frame) - remapOffset(session, what),
                 "AEGP_GetNewStreamValue");
        }
    });
}

A_Err disposeStreamValue(AEGP_StreamValue2* value) noexcept {
    return gate("AEGP_DisposeStreamValue", [&](Session& session) {
        AEGP_StreamValue2& what = need(value);
        if (what.streamH == nullptr) {
            return;  // of zeroes: nothing hangs on it
        }
        const std::uintptr_t handle = handleIn(what);
        if (const std::uintptr_t outline = session.values.at(handle).outline) {
            session.outlines.remove(outline);
        }
        session.values.remove(handle);
        what = {};
    });
}

A_Err setStreamValue(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_StreamValue2* value) noexcept {
    return gate("AEGP_SetStreamValue", [&](Session& session) {
        const AEGP_StreamValue2& from = need(value);
        const Resolved what = resolve(session, stream);
        const auto requireStatic = [](bool isStatic) {
            if (!isStatic) {
                throw HostError{A_Err_GENERIC,
                                "the stream has keyframes, so its value cannot be set as a whole"};
            }
        };
        if (what.mask) {
            requireStatic(what.mask->path.keys.empty());
            what.layer.touched = true;
            setRecorded(
                session.project().history,
                [mask = what.mask]() -> model::MaskPath& { return mask->path.value; },
                session.outlines.at(bits(from.val.mask)));
        } else if (what.isPoint()) {
            model::PointStream changed = what.point();
            if (changed.separated()) {
                for (std::size_t axis = 0; axis < changed.axes.size(); ++axis) {
                    requireStatic(changed.axes[axis].keys.empty());
                    changed.axes[axis].value = pointIn(from)[axis];
                }
            }
            requireStatic(changed.keys.empty());
            changed.value = pointIn(from);
            model::setLayerField(session.project(), what.layer, Resolved::pointOf(what.which), changed);
        } else {
            model::ScalarStream changed = what.scalar();
            requireStatic(changed.keys.empty());
            changed.value = needNumber(from.val.one_d) + remapOffset(session, what);
            model::setLayerField(session.project(), what.layer, Resolved::scalarOf(what.which), changed);
        }
    });
}

// ---- Keyframes ------------------------------------------------------------------------------------------

// The keyframes' times and kinds; null for a stream that can have none as a whole.
std::size_t keyCount(const Resolved& what) {
    return what.mask        ? what.mask->path.keys.size()
           : what.isPoint() ? what.point().keys.size()
                            : what.scalar().keys.size();
}

model::KeyTiming& timingAt(const Resolved& what, AEGP_KeyframeIndex index) {
    requireIndex(index, keyCount(what), "keyframe");
    const auto i = static_cast<std::size_t>(index);
    return what.mask        ? static_cast<model::KeyTiming&>(what.mask->path.keys[i])
           : what.isPoint() ? static_cast<model::KeyTiming&>(what.point().keys[i])
                            : static_cast<model::KeyTiming&>(what.scalar().keys[i]);
}

A_Err getStreamNumKFs(AEGP_StreamRefH stream, A_long* count) noexcept {
    return gate("AEGP_GetStreamNumKFs", [&](Session& session) {
        need(count) = static_cast<A_long>(keyCount(resolve(session, stream)));
    });
}

A_Err getKeyframeTime(AEGP_StreamRefH stream, AEGP_KeyframeIndex index, AEGP_LTimeMode mode,
                      A_Time* time) noexcept {
    return gate("AEGP_GetKeyframeTime", [&](Session& session) {
        const Resolved what = resolve(session, stream);
        const double frame = timingAt(what, index).frame;
        need(time) = session.timeOf(mode == AEGP_LTimeMode_LayerTime ? Session::layerFrames(what.layer, frame)
                                                                     : frame - what.layer.comp->firstFrame);
    });
}

A_Err getNewKeyframeValue(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_KeyframeIndex index,
                          AEGP_StreamValue2* value) noexcept {
    return gate("AEGP_GetNewKeyframeValue", [&](Session& session) {
        AEGP_StreamValue2& out = need(value);
        const Resolved what = resolve(session, stream);
        timingAt(what, index);
        const auto i = static_cast<std::size_t>(index);
        if (what.mask) {
            give(session, stream, out, what.mask->path.keys[i].value, "AEGP_GetNewKeyframeValue");
        } else if (what.isPoint()) {
            give(session, stream, out, what.point().keys[i].value, "AEGP_GetNewKeyframeValue");
        } else {
            give(session, stream, out, what.scalar().keys[i].value - remapOffset(session, what),
                 "AEGP_GetNewKeyframeValue");
        }
    });
}

A_Err setKeyframeValue(AEGP_StreamRefH stream, AEGP_KeyframeIndex index,
                       const AEGP_StreamValue2* value) noexcept {
    return gate("AEGP_SetKeyframeValue", [&](Session& session) {
        const AEGP_StreamValue2& from = need(value);
        const Resolved what = resolve(session, stream);
        timingAt(what, index);
        const auto i = static_cast<std::size_t>(index);
        if (what.mask) {
            model::setLayerKey(
                session.project(), what.layer,
                [mask = what.mask](model::Layer&) -> model::PathStream& { return mask->path; }, i,
                session.outlines.at(bits(from.val.mask)));
        } else if (what.isPoint()) {
            model::setLayerKey(session.project(), what.layer, Resolved::pointOf(what.which), i, pointIn(from));
        } else {
            throw HostError{A_Err_GENERIC, "keyframes of this stream cannot be set here"};
        }
    });
}

A_Err getKeyframeInterpolation(AEGP_StreamRefH stream, AEGP_KeyframeIndex index,
                               AEGP_KeyframeInterpolationType* in,
                               AEGP_KeyframeInterpolationType* out) noexcept {
    return gate("AEGP_GetKeyframeInterpolation", [&](Session& session) {
        const model::KeyTiming& timing = timingAt(resolve(session, stream), index);
        if (in != nullptr) {
            *in = static_cast<AEGP_KeyframeInterpolationType>(timing.in);
        }
        if (out != nullptr) {
            *out = static_cast<AEGP_KeyframeInterpolationType>(timing.out);
        }
    });
}

A_Err setKeyframeInterpolation(AEGP_StreamRefH stream, AEGP_KeyframeIndex index,
                               AEGP_KeyframeInterpolationType in, AEGP_KeyframeInterpolationType out) noexcept {
    return gate("AEGP_SetKeyframeInterpolation", [&](Session& session) {
        for (const AEGP_KeyframeInterpolationType type : {in, out}) {
            if (type < AEGP_KeyInterp_LINEAR || type > AEGP_KeyInterp_HOLD) {
                throw HostError{A_Err_PARAMETER, "there is no interpolation " + std::to_string(type)};
            }
        }
        const Resolved what = resolve(session, stream);
        model::KeyTiming changed = timingAt(what, index);
        changed.in = static_cast<model::Interpolation>(in);
        changed.out = static_cast<model::Interpolation>(out);
        model::setLayerField(
            session.project(), what.layer,
            [which = what.which, mask = what.mask, index](model::Layer& layer) -> model::KeyTiming& {
                return timingAt({layer, which, mask}, index);
            },
            changed);
    });
}

}  // namespace

const AEGP_StreamSuite4 tableStreamSuite4 = makeTable<AEGP_StreamSuite4>([](auto& table) {
    table.AEGP_GetNewLayerStream = getNewLayerStream;
    table.AEGP_GetNewMaskStream = getNewMaskStream;
    table.AEGP_DisposeStream = disposeStream;
    table.AEGP_GetNewStreamValue = getNewStreamValue;
    table.AEGP_DisposeStreamValue = disposeStreamValue;
    table.AEGP_SetStreamValue = setStreamValue;
});

const AEGP_KeyframeSuite4 tableKeyframeSuite4 = makeTable<AEGP_KeyframeSuite4>([](auto& table) {
    table.AEGP_GetStreamNumKFs = getStreamNumKFs;
    table.AEGP_GetKeyframeTime = getKeyframeTime;
    table.AEGP_GetNewKeyframeValue = getNewKeyframeValue;
    table.AEGP_SetKeyframeValue = setKeyframeValue;
    table.AEGP_GetKeyframeInterpolation = getKeyframeInterpolation;
    table.AEGP_SetKeyframeInterpolation = setKeyframeInterpolation;
});

}  // namespace headless
