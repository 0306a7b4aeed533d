// Values that may vary over time: points, numbers and mask outlines, static or keyframed.
//
// Times are frames of the composition that holds the layer, as the file has them. A keyframe has one value;
// older files also carry the value at the end of its span, which is kept and moved along with it.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "model/Rare.h"

namespace headless::model {

struct Vec3 {
    double x = 0, y = 0, z = 0;

    double& operator[](std::size_t axis) { return axis == 0 ? x : axis == 1 ? y : z; }
    double operator[](std::size_t axis) const { return axis == 0 ? x : axis == 1 ? y : z; }
    bool operator==(const Vec3&) const = default;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(const Vec3& a, const Vec3& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}

// Temporal ease of the span that begins at a keyframe: control points of a curve from (0, 0) to (1, 1).
struct Ease {
    double outX = 0, outY = 0, inX = 1, inY = 1;
    bool operator==(const Ease&) const = default;
};

// The ease's progress 0...1 at the fraction `x` of its span.
double easedProgress(const Ease& ease, double x);

// How a keyframe's sides are interpolated. Changing the kind leaves eases and tangents stored.
enum class Interpolation : std::uint8_t { Linear = 1, Bezier = 2, Hold = 3 };

// Of a keyframe, an axis each: one for all as a rule.
class AxisEases {
 public:
    AxisEases() = default;
    AxisEases(const Ease& x, const Ease& y, const Ease& z) : x_(x) {
        if (y != x || z != x) {
            others_ = std::array{y, z};
        }
    }
    const Ease& operator[](std::size_t axis) const { return axis == 0 || !others_ ? x_ : (*others_)[axis - 1]; }
    bool operator==(const AxisEases&) const = default;

 private:
    Ease x_;
    Rare<std::array<Ease, 2>> others_;
};

struct KeyTiming {
    double frame = 0;
    Interpolation in = Interpolation::Linear;
    Interpolation out = Interpolation::Linear;
    bool operator==(const KeyTiming&) const = default;
};

struct PointKey : KeyTiming {
    Vec3 value;
    Rare<Vec3> end;                    // older files: value at the end of the span
    Rare<Vec3> outTangent, inTangent;  // of the span's path, relative to its ends
    AxisEases ease;                    // a path uses the first
    bool operator==(const PointKey&) const = default;
};

struct ScalarKey : KeyTiming {
    double value = 0;
    std::optional<double> end;
    Ease ease;
    bool operator==(const ScalarKey&) const = default;
};

struct ScalarStream {
    double value = 0;  // when there are no keyframes
    RareList<ScalarKey> keys;

    double at(double frame) const;
    void add(double offset);
    bool operator==(const ScalarStream&) const = default;
};

struct PointStream {
    Vec3 value;  // when there are no keyframes
    RareList<PointKey> keys;
    RareList<ScalarStream> axes;  // separated dimensions: two or three streams, and nothing else counts
    std::uint8_t dimensions = 2;  // numbers that the file has for a value

    bool separated() const { return !axes.empty(); }
    Vec3 at(double frame) const;
    // New value of keyframe `index`; the end value that leads to it follows.
    void setKey(std::size_t index, const Vec3& newValue);
    void scale(const Vec3& factor);  // values, end values and tangents
    void add(const Vec3& offset);    // values and end values, separated axes too
    bool operator==(const PointStream&) const = default;
};

// Source pixels of the layer; tangents relative to the vertex.
struct MaskVertex {
    Vec3 point, inTangent, outTangent;
    bool operator==(const MaskVertex&) const = default;
};

struct MaskPath {
    std::vector<MaskVertex> vertices;
    bool closed = true;

    void scale(const Vec3& factor);
    bool operator==(const MaskPath&) const = default;
};

struct PathKey : KeyTiming {
    MaskPath value;
    Rare<MaskPath> end;
    Ease ease;
    bool operator==(const PathKey&) const = default;
};

struct PathStream {
    MaskPath value;  // when there are no keyframes
    RareList<PathKey> keys;

    MaskPath at(double frame) const;
    void setKey(std::size_t index, const MaskPath& newValue);
    void scale(const Vec3& factor);
    bool operator==(const PathStream&) const = default;
};

}  // namespace headless::model
