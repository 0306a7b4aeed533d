#include "model/Transform.h"

#include <cmath>
#include <numbers>

namespace headless::model {

namespace {

void applyTo(PointStream& stream, const Transform& transform) {
    if (transform.onlyShifts()) {
        stream.add(transform.shift);
        return;
    }
    if (stream.separated()) {
        // Each axis depends on both: the other one is taken at the same time.
        const PointStream before = stream;
        const auto mapped = [&](double frame) { return transform(before.at(frame)); };
        for (std::size_t axis = 0; axis < stream.axes.size(); ++axis) {
            ScalarStream& scalar = stream.axes[axis];
            scalar.value = mapped(0)[axis];
            for (ScalarKey& key : scalar.keys) {
                const double value = mapped(key.frame)[axis];
                if (key.end) {
                    *key.end += value - key.value;
                }
                key.value = value;
            }
        }
        return;
    }
    stream.value = transform(stream.value);
    for (PointKey& key : stream.keys) {
        key.value = transform(key.value);
        if (key.end) {
            key.end = transform(*key.end);
        }
        if (key.outTangent) {
            key.outTangent = transform.linear(*key.outTangent);
        }
        if (key.inTangent) {
            key.inTangent = transform.linear(*key.inTangent);
        }
    }
}

double sourceAspect(const Layer& layer) {
    return layer.source != nullptr && layer.source->comp ? layer.source->comp->pixelAspect.value() : 1;
}

}  // namespace

Transform Transform::inverse() const {
    const double determinant = a * d - b * c;
    Transform result;
    if (determinant != 0) {
        result.a = d / determinant;
        result.b = -b / determinant;
        result.c = -c / determinant;
        result.d = a / determinant;
    }
    result.shift = Vec3{} - result.linear(shift);
    return result;
}

Transform operator*(const Transform& outer, const Transform& inner) {
    return {outer.a * inner.a + outer.c * inner.b, outer.b * inner.a + outer.d * inner.b,
            outer.a * inner.c + outer.c * inner.d, outer.b * inner.c + outer.d * inner.d, outer(inner.shift)};
}

Transform localTransform(const Layer& layer, double frame) {
    const double angle = layer.rotation.at(frame) * std::numbers::pi / 180;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    const Vec3 scale = layer.scale.at(frame);
    const double sx = scale.x / 100 * (sourceAspect(layer) / layer.comp->pixelAspect.value());
    const double sy = scale.y / 100;
    Transform result{cosine * sx, sine * sx, -sine * sy, cosine * sy, {}};
    result.shift = layer.position.at(frame) - result.linear(layer.anchor.at(frame));
    return result;
}

Transform worldTransform(const Layer* layer, double frame) {
    Transform world;
    for (; layer != nullptr; layer = layer->parent) {
        world = localTransform(*layer, frame) * world;
    }
    return world;
}

void applyTransform(LayerData& layer, const Transform& transform) {
    applyTo(layer.position, transform);
    const bool looks = layer.type == LayerType::Camera || layer.type == LayerType::Light;
    if (looks) {
        applyTo(layer.anchor, transform);
    }
    if (transform.onlyShifts() || looks) {
        return;
    }
    const double scaleX = std::hypot(transform.a, transform.b);
    const double scaleY = scaleX != 0 ? (transform.a * transform.d - transform.b * transform.c) / scaleX
                                      : std::hypot(transform.c, transform.d);
    layer.scale.scale({scaleX, scaleY, 1});
    layer.rotation.add(std::atan2(transform.b, transform.a) * 180 / std::numbers::pi);
}

}  // namespace headless::model
