// Small projects, written in the test that needs them.
//
//     project("Scene", {400, 300})
//         .with(precomp("Card", {400, 300}).with(solid("Red", {100, 50}).at({150, 125})))
//
// Anchors are at (0, 0) unless said otherwise, so that a layer's position is its top left corner.

#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "model/Project.h"

// How failures show values.
namespace headless::model {
inline void PrintTo(const Size& size, std::ostream* out) {
    *out << size.width << " x " << size.height;
}
inline void PrintTo(const Vec3& v, std::ostream* out) {
    *out << v.x << ", " << v.y << ", " << v.z;
}
}  // namespace headless::model

namespace kestrin_test {

using headless::model::Json;
using headless::model::Size;
using Numbers = std::vector<double>;

struct Key {
    double frame;
    Json value;
    Numbers outTangent = {}, inTangent = {};
};

// The outline of a mask.
inline std::vector<Numbers> box(double left, double top, double right, double bottom) {
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

class CompSpec;

class LayerSpec {
 public:
    LayerSpec(int type, const std::string& name)
        : json_({{"ty", type}, {"nm", name}, {"ks", Json::object()}, {"ip", 0}, {"op", 30}, {"st", 0}}) {}

    LayerSpec& set(const char* key, Json value) & {
        json_[key] = std::move(value);
        return *this;
    }
    LayerSpec&& set(const char* key, Json value) && {
        json_[key] = std::move(value);
        return std::move(*this);
    }

    LayerSpec at(Numbers position) && { return transform("p", position); }
    LayerSpec anchor(Numbers anchor) && { return transform("a", anchor); }
    LayerSpec scale(Numbers percent) && { return transform("s", percent); }
    LayerSpec rotated(double degrees) && { return transform("r", degrees); }
    LayerSpec at(std::vector<Key> keys) && { return transform("p", keyed(keys)); }
    LayerSpec anchor(std::vector<Key> keys) && { return transform("a", keyed(keys)); }
    LayerSpec moving(std::vector<Key> x, std::vector<Key> y) && {  // separated dimensions
        json_["ks"]["p"] = {
            {"s", true}, {"x", {{"a", 1}, {"k", keyed(x)}}}, {"y", {{"a", 1}, {"k", keyed(y)}}}};
        return std::move(*this);
    }
    LayerSpec shown(double in, double out) && { return std::move(*this).set("ip", in).set("op", out); }
    LayerSpec startingAt(double frame, double stretch = 1) && {
        return std::move(*this).set("st", frame).set("sr", stretch);
    }
    LayerSpec remapped(Json seconds) && { return std::move(*this).set("tm", {{"a", 0}, {"k", seconds}}); }
    LayerSpec threeD() && { return std::move(*this).set("ddd", 1); }
    LayerSpec hidden() && { return std::move(*this).set("hd", true); }
    LayerSpec index(int index) && { return std::move(*this).set("ind", index); }
    LayerSpec childOf(int index) && { return std::move(*this).set("parent", index); }
    // A polygon; tangents are 0.
    LayerSpec masked(std::vector<Numbers> points, const std::string& name = "Mask 1", bool closed = true) && {
        return withMask(name, {{"a", 0}, {"k", path(points, closed)}});
    }
    LayerSpec masked(std::vector<std::pair<double, std::vector<Numbers>>> keys,
                     const std::string& name = "Mask 1") && {
        Json list = Json::array();
        for (const auto& [frame, points] : keys) {
            list.push_back({{"t", frame},
                            {"s", {path(points, true)}},
                            {"i", {{"x", 1}, {"y", 1}}},
                            {"o", {{"x", 0}, {"y", 0}}}});
        }
        return withMask(name, {{"a", 1}, {"k", list}});
    }
    // Of a precomp: a layer inside it.
    LayerSpec with(LayerSpec layer) &&;

    Json json_;
    std::shared_ptr<CompSpec> comp;

 private:
    LayerSpec transform(const char* key, Json value) {
        const bool keyframed = value.is_array() && !value.empty() && value.front().is_object();
        json_["ks"][key] = {{"a", keyframed ? 1 : 0}, {"k", std::move(value)}};
        return std::move(*this);
    }
    static Json keyed(const std::vector<Key>& keys) {
        Json list = Json::array();
        for (const Key& key : keys) {
            Json json = {{"t", key.frame}, {"s", key.value.is_array() ? key.value : Json::array({key.value})}};
            if (&key != &keys.back()) {
                json["i"] = {{"x", 0.667}, {"y", 1}};
                json["o"] = {{"x", 0.333}, {"y", 0}};
            }
            if (!key.outTangent.empty()) {
                json["to"] = key.outTangent;
                json["ti"] = key.inTangent;
            }
            list.push_back(json);
        }
        return list;
    }
    static Json path(const std::vector<Numbers>& points, bool closed) {
        return {{"v", points},
                {"i", std::vector<Numbers>(points.size(), {0, 0})},
                {"o", std::vector<Numbers>(points.size(), {0, 0})},
                {"c", closed}};
    }
    LayerSpec withMask(const std::string& name, Json outline) {
        json_["hasMask"] = true;
        json_["masksProperties"].push_back({{"inv", false},
                                            {"mode", "a"},
                                            {"pt", std::move(outline)},
                                            {"o", {{"a", 0}, {"k", 100}}},
                                            {"nm", name}});
        return std::move(*this);
    }
};

class CompSpec {
 public:
    CompSpec(std::string ownName, Size ownSize) : name(std::move(ownName)), size(ownSize) {}

    CompSpec with(LayerSpec layer) && {
        layers.push_back(std::move(layer));
        return std::move(*this);
    }
    // A composition that the file has though nothing uses it, or that layers use by name.
    CompSpec having(CompSpec comp) && {
        others.push_back(std::move(comp));
        return std::move(*this);
    }
    CompSpec lasting(double firstFrame, double endFrame) && {
        first = firstFrame;
        end = endFrame;
        return std::move(*this);
    }

    // The file.
    std::string text() const {
        Json assets = Json::array();
        Json root = {{"v", "5.7.0"},    {"fr", 30},         {"ip", first}, {"op", end},
                     {"w", size.width}, {"h", size.height}, {"nm", name},  {"layers", layersJson(assets)}};
        for (const CompSpec& comp : others) {
            comp.addTo(assets);
        }
        root["assets"] = std::move(assets);
        return root.dump();
    }

    std::string name;
    Size size;
    double first = 0, end = 30;
    std::vector<LayerSpec> layers;
    std::vector<CompSpec> others;

 private:
    Json layersJson(Json& assets) const {
        Json list = Json::array();
        for (const LayerSpec& layer : layers) {
            list.push_back(layer.json_);
            if (layer.comp) {
                layer.comp->addTo(assets);
            }
        }
        return list;
    }
    void addTo(Json& assets) const {
        Json json = {{"id", name}, {"nm", name}};
        json["layers"] = layersJson(assets);
        assets.push_back(std::move(json));
    }
};

inline CompSpec project(const std::string& name, Size size) {
    return {name, size};
}
inline CompSpec comp(const std::string& name, Size size) {
    return {name, size};
}

inline LayerSpec solid(const std::string& name, Size size, const std::string& colour = "#ff0000") {
    LayerSpec layer(1, name);
    layer.set("sw", size.width).set("sh", size.height).set("sc", colour);
    return layer;
}

// A use of a composition that stands elsewhere in the project.
inline LayerSpec useOf(const std::string& name, Size size) {
    LayerSpec layer(0, name);
    layer.set("refId", name).set("w", size.width).set("h", size.height);
    return layer;
}

// A use together with its composition; layers are added inside.
inline LayerSpec precomp(const std::string& name, Size size) {
    LayerSpec layer = useOf(name, size);
    layer.comp = std::make_shared<CompSpec>(name, size);
    return layer;
}

inline LayerSpec null(const std::string& name) {
    return {3, name};
}
inline LayerSpec camera(const std::string& name) {
    return {13, name};
}
inline LayerSpec text(const std::string& name) {
    return {5, name};
}
// Text in a font that nobody has.
inline LayerSpec words(const std::string& name) {
    return text(name).set("t", Json::parse(R"({"a": [], "m": {"g": 1}, "p": {}, "d": {"k": [
        {"t": 0, "s": {"t": "Words", "f": "Nobody's", "s": 20, "j": 0, "fc": [0, 0, 0]}}]}})"));
}
inline LayerSpec shape(const std::string& name) {
    LayerSpec layer(4, name);
    layer.set("shapes", Json::array());
    return layer;
}

inline LayerSpec LayerSpec::with(LayerSpec layer) && {
    comp->layers.push_back(std::move(layer));
    return std::move(*this);
}

}  // namespace kestrin_test
