// Where a layer lies: the part of its transform that lies in the picture plane, and its shift in depth.

#pragma once

#include "model/Project.h"

namespace headless::model {

// x' = a*x + c*y + shift.x, y' = b*x + d*y + shift.y, z' = z + shift.z.
struct Transform {
    double a = 1, b = 0, c = 0, d = 1;
    Vec3 shift;

    bool onlyShifts() const { return a == 1 && b == 0 && c == 0 && d == 1; }
    Vec3 linear(const Vec3& v) const { return {a * v.x + c * v.y, b * v.x + d * v.y, v.z}; }
    Vec3 operator()(const Vec3& v) const { return linear(v) + shift; }
    Transform inverse() const;  // of a singular one: its shift alone taken back
};

Transform operator*(const Transform& outer, const Transform& inner);

// From the layer's source pixels to its parent's (or the composition's):
// T(position) R S A T(-anchor), A = pixel aspect of the source over that of the composition, in x.
Transform localTransform(const Layer& layer, double frame);
// The same up to the composition. Null: the identity.
Transform worldTransform(const Layer* layer, double frame);

// Sends a layer's place through `transform`: position (static, each keyframe, separated axes) and, of cameras
// and lights, the point of interest; tangents by the linear part; scale and rotation where there is any.
void applyTransform(LayerData& layer, const Transform& transform);

}  // namespace headless::model
