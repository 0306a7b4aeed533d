#include "model/Stream.h"

#include <algorithm>
#include <cmath>

namespace headless::model {

namespace {

// A time that was rounded to the host's time scale still means the keyframe that it came from.
constexpr double sameFrame = 0.005;

double lerp(double a, double b, double t) {
    return a + (b - a) * t;
}

Vec3 lerp(const Vec3& a, const Vec3& b, double t) {
    return {lerp(a.x, b.x, t), lerp(a.y, b.y, t), lerp(a.z, b.z, t)};
}

MaskPath lerp(const MaskPath& a, const MaskPath& b, double t) {
    MaskPath path = a;
    for (std::size_t i = 0; i < path.vertices.size() && i < b.vertices.size(); ++i) {
        path.vertices[i] = {lerp(a.vertices[i].point, b.vertices[i].point, t),
                            lerp(a.vertices[i].inTangent, b.vertices[i].inTangent, t),
                            lerp(a.vertices[i].outTangent, b.vertices[i].outTangent, t)};
    }
    return path;
}

double bezier(double a, double b, double c, double d, double t) {
    const double u = 1 - t;
    return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
}

// The place on a spatial path after the share `progress` of its length.
Vec3 pointOnPath(const Vec3& from, const Vec3& outTangent, const Vec3& inTangent, const Vec3& to,
                 double progress) {
    constexpr int pieces = 100;
    const Vec3 control1 = from + outTangent;
    const Vec3 control2 = to + inTangent;
    const auto pointAt = [&](double t) {
        return Vec3{bezier(from.x, control1.x, control2.x, to.x, t),
                    bezier(from.y, control1.y, control2.y, to.y, t),
                    bezier(from.z, control1.z, control2.z, to.z, t)};
    };
    std::array<double, pieces + 1> length{};
    Vec3 previous = from;
    for (int i = 1; i <= pieces; ++i) {
        const Vec3 point = pointAt(static_cast<double>(i) / pieces);
        const Vec3 step = point - previous;
        length[static_cast<std::size_t>(i)] =
            length[static_cast<std::size_t>(i) - 1] + std::hypot(step.x, step.y, step.z);
        previous = point;
    }
    const double wanted = std::clamp(progress, 0.0, 1.0) * length.back();
    const auto reached = std::lower_bound(length.begin() + 1, length.end(), wanted);
    if (reached == length.end()) {
        return to;
    }
    const double before = *(reached - 1);
    const double share = *reached > before ? (wanted - before) / (*reached - before) : 0;
    return pointAt((static_cast<double>(reached - length.begin() - 1) + share) / pieces);
}

struct Span {
    std::size_t from = 0;
    std::size_t to = 0;   // equal to `from` when the time lies on a keyframe or outside all of them
    double progress = 0;  // linear, 0...1
};

template <class Key>
Span spanAt(const RareList<Key>& keys, double frame) {
    const auto after = std::upper_bound(keys.begin(), keys.end(), frame + sameFrame,
                                        [](double f, const Key& key) { return f < key.frame; });
    if (after == keys.begin()) {
        return {};
    }
    const auto from = static_cast<std::size_t>(after - keys.begin()) - 1;
    if (after == keys.end() || std::abs(frame - keys[from].frame) <= sameFrame ||
        keys[from].out == Interpolation::Hold) {
        return {from, from, 0};
    }
    return {from, from + 1, (frame - keys[from].frame) / (keys[from + 1].frame - keys[from].frame)};
}

double progressOf(const KeyTiming& key, const Ease& ease, double linear) {
    return key.out == Interpolation::Linear ? linear : easedProgress(ease, linear);
}

// Gives keyframe `index` a new value. The span before it ends there, so its end value moves by as much.
template <class Key, class Value, class Move>
void setKeyValue(RareList<Key>& keys, std::size_t index, const Value& newValue, Move&& move) {
    if (index > 0 && keys[index - 1].end) {
        auto& end = *keys[index - 1].end;
        end = end == keys[index].value ? newValue : move(end, keys[index].value, newValue);
    }
    keys[index].value = newValue;
}

}  // namespace

double easedProgress(const Ease& ease, double x) {
    x = std::clamp(x, 0.0, 1.0);
    double low = 0;
    double high = 1;
    for (int i = 0; i < 50; ++i) {
        const double middle = (low + high) / 2;
        (bezier(0, ease.outX, ease.inX, 1, middle) < x ? low : high) = middle;
    }
    return bezier(0, ease.outY, ease.inY, 1, (low + high) / 2);
}

double ScalarStream::at(double frame) const {
    if (keys.empty()) {
        return value;
    }
    const Span span = spanAt(keys, frame);
    const ScalarKey& key = keys[span.from];
    return span.from == span.to ? key.value
                                : lerp(key.value, key.end.value_or(keys[span.to].value),
                                       progressOf(key, key.ease, span.progress));
}

void ScalarStream::add(double offset) {
    value += offset;
    for (ScalarKey& key : keys) {
        key.value += offset;
        if (key.end) {
            *key.end += offset;
        }
    }
}

Vec3 PointStream::at(double frame) const {
    if (separated()) {
        return {axes[0].at(frame), axes[1].at(frame), axes.size() > 2 ? axes[2].at(frame) : 0};
    }
    if (keys.empty()) {
        return value;
    }
    const Span span = spanAt(keys, frame);
    const PointKey& key = keys[span.from];
    if (span.from == span.to) {
        return key.value;
    }
    const Vec3 end = key.end.value_or(keys[span.to].value);
    if (key.outTangent || key.inTangent) {
        return pointOnPath(key.value, key.outTangent.value_or(Vec3{}), key.inTangent.value_or(Vec3{}), end,
                           progressOf(key, key.ease[0], span.progress));
    }
    Vec3 result;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        result[axis] = lerp(key.value[axis], end[axis], progressOf(key, key.ease[axis], span.progress));
    }
    return result;
}

void PointStream::setKey(std::size_t index, const Vec3& newValue) {
    setKeyValue(keys, index, newValue,
                [](const Vec3& end, const Vec3& from, const Vec3& to) { return end + (to - from); });
}

void PointStream::scale(const Vec3& factor) {
    const auto apply = [&](Vec3& point) { point = point * factor; };
    const auto applyTo = [&](Rare<Vec3>& point) {
        if (point) {
            apply(*point);
        }
    };
    apply(value);
    for (PointKey& key : keys) {
        apply(key.value);
        applyTo(key.end);
        applyTo(key.outTangent);
        applyTo(key.inTangent);
    }
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        axes[axis].value *= factor[axis];
        for (ScalarKey& key : axes[axis].keys) {
            key.value *= factor[axis];
            if (key.end) {
                *key.end *= factor[axis];
            }
        }
    }
}

void PointStream::add(const Vec3& offset) {
    value = value + offset;
    for (PointKey& key : keys) {
        key.value = key.value + offset;
        if (key.end) {
            *key.end = *key.end + offset;
        }
    }
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        axes[axis].add(offset[axis]);
    }
}

void MaskPath::scale(const Vec3& factor) {
    for (MaskVertex& vertex : vertices) {
        vertex = {vertex.point * factor, vertex.inTangent * factor, vertex.outTangent * factor};
    }
}

MaskPath PathStream::at(double frame) const {
    if (keys.empty()) {
        return value;
    }
    const Span span = spanAt(keys, frame);
    const PathKey& key = keys[span.from];
    return span.from == span.to ? key.value
                                : lerp(key.value, key.end ? *key.end : keys[span.to].value,
                                       progressOf(key, key.ease, span.progress));
}

void PathStream::setKey(std::size_t index, const MaskPath& newValue) {
    setKeyValue(keys, index, newValue, [](MaskPath end, const MaskPath& from, const MaskPath& to) {
        for (std::size_t i = 0; i < end.vertices.size() && i < from.vertices.size() && i < to.vertices.size();
             ++i) {
            MaskVertex& vertex = end.vertices[i];
            vertex.point = vertex.point + (to.vertices[i].point - from.vertices[i].point);
            vertex.inTangent = vertex.inTangent + (to.vertices[i].inTangent - from.vertices[i].inTangent);
            vertex.outTangent = vertex.outTangent + (to.vertices[i].outTangent - from.vertices[i].outTangent);
        }
        return end;
    });
}

void PathStream::scale(const Vec3& factor) {
    value.scale(factor);
    for (PathKey& key : keys) {
        key.value.scale(factor);
        if (key.end) {
            key.end->scale(factor);
        }
    }
}

}  // namespace headless::model
