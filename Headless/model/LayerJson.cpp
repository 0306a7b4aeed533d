#include "model/LayerJson.h"

#include <algorithm>
#include <cmath>

namespace headless::model {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& what) {
    throw ProjectError(path + ": " + what);
}

const Json* memberOf(const Json& json, const char* key) {
    if (!json.is_object()) {
        return nullptr;
    }
    const auto found = json.find(key);
    return found == json.end() ? nullptr : &*found;
}

constexpr double largest = 1e12;  // no coordinate or time is anywhere near

double number(const Json& json, const std::string& path) {
    if (!json.is_number()) {
        fail(path, "a number is needed here");
    }
    const double value = json.get<double>();
    if (!(std::abs(value) <= largest)) {
        fail(path, "the number " + json.dump() + " is out of range");
    }
    return value;
}

bool isKeyframed(const Json& property) {
    const Json* k = memberOf(property, "k");
    return k != nullptr && k->is_array() && !k->empty() && k->front().is_object() && k->front().contains("t");
}

// ---- Reading -----------------------------------------------------------------------------------

Vec3 readVector(const Json& json, const std::string& path) {
    if (json.is_number()) {
        return {number(json, path), 0, 0};
    }
    if (!json.is_array()) {
        fail(path, "a list of numbers is needed here");
    }
    Vec3 value;
    for (std::size_t i = 0; i < json.size() && i < 3; ++i) {
        value[i] = number(json[i], path);
    }
    return value;
}

double readScalarValue(const Json& json, const std::string& path) {
    if (json.is_array()) {
        if (json.empty()) {
            fail(path, "a number is needed here");
        }
        return number(json[0], path);
    }
    return number(json, path);
}

std::vector<MaskVertex> readVertices(const Json& json, const std::string& path) {
    const Json* lists[3] = {memberOf(json, "v"), memberOf(json, "i"), memberOf(json, "o")};
    for (const Json* list : lists) {
        if (list == nullptr || !list->is_array() || list->size() != lists[0]->size()) {
            fail(path, "a mask outline needs the lists v, i and o, all of one length");
        }
    }
    std::vector<MaskVertex> vertices(lists[0]->size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        vertices[i] = {readVector((*lists[0])[i], path), readVector((*lists[1])[i], path),
                       readVector((*lists[2])[i], path)};
    }
    return vertices;
}

MaskPath readPath(const Json& json, const std::string& path, const Json& mask) {
    const Json& shape = json.is_array() && !json.empty() ? json.front() : json;
    // Older files say of the mask as a whole that it is closed.
    return {readVertices(shape, path), truthAt(shape, "c") || (!shape.contains("c") && truthAt(mask, "cl"))};
}

double easeNumber(const Json* side, const char* key, std::size_t axis, double otherwise) {
    const Json* value = side == nullptr ? nullptr : memberOf(*side, key);
    if (value != nullptr && value->is_array() && !value->empty()) {
        value = &(*value)[std::min(axis, value->size() - 1)];
    }
    return value != nullptr && value->is_number() ? value->get<double>() : otherwise;
}

Ease readEase(const Json& key, std::size_t axis) {
    const Json* out = memberOf(key, "o");
    const Json* in = memberOf(key, "i");
    return {easeNumber(out, "x", axis, 0), easeNumber(out, "y", axis, 0), easeNumber(in, "x", axis, 1),
            easeNumber(in, "y", axis, 1)};
}

// Reads the keyframes of `property` into `keys`: their times and kinds here, values by `readValue`, the rest
// by `readRest`.
template <class Key, class ReadValue, class ReadRest>
void readKeys(const Json& property, const std::string& path, RareList<Key>& keys, ReadValue&& readValue,
              ReadRest&& readRest) {
    const Json& list = property["k"];
    keys.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        const std::string at = path + ".k[" + std::to_string(i) + "]";
        const Json& json = list[i];
        Key key;
        key.frame = requiredNumber(json, "t", at);
        if (!keys.empty() && key.frame < keys.back().frame) {
            fail(at + ".t", "the keyframe comes before the one above it in the list");
        }
        key.out = truthAt(json, "h")   ? Interpolation::Hold
                  : json.contains("o") ? Interpolation::Bezier
                                       : Interpolation::Linear;
        key.in = keys.empty() ? key.out : keys.back().out;
        if (const Json* end = memberOf(json, "e")) {
            key.end = readValue(*end, at + ".e");
        }
        if (const Json* start = memberOf(json, "s")) {
            key.value = readValue(*start, at + ".s");
        } else if (!keys.empty()) {
            key.value = keys.back().end.value_or(keys.back().value);
        } else {
            fail(at, "the first keyframe has no value (s)");
        }
        readRest(json, at, key);
        keys.push_back(std::move(key));
    }
}

ScalarStream readScalar(const Json& property, const std::string& path) {
    ScalarStream stream;
    if (isKeyframed(property)) {
        readKeys(property, path, stream.keys, readScalarValue,
                 [](const Json& json, const std::string&, ScalarKey& key) { key.ease = readEase(json, 0); });
    } else if (const Json* k = memberOf(property, "k")) {
        stream.value = readScalarValue(*k, path + ".k");
    }
    return stream;
}

bool isSeparated(const Json& property) {
    const Json* x = memberOf(property, "x");
    return truthAt(property, "s") && x != nullptr && x->is_object();
}

constexpr const char* axisNames[] = {"x", "y", "z"};

void readPoint(const Json& transform, const char* name, const std::string& parentPath, PointStream& stream) {
    const Json* property = memberOf(transform, name);
    if (property == nullptr) {
        return;
    }
    const std::string path = parentPath + "." + name;
    if (!property->is_object()) {
        fail(path, "an object is needed here");
    }
    if (isSeparated(*property)) {
        for (const char* axis : axisNames) {
            if (const Json* json = memberOf(*property, axis); json != nullptr && json->is_object()) {
                stream.axes.push_back(readScalar(*json, path + "." + axis));
            } else if (stream.axes.size() < 2) {
                fail(path, std::string("the separated axis ") + axis + " is missing");
            }
        }
        return;
    }
    const Json* k = memberOf(*property, "k");
    if (k == nullptr) {
        return;
    }
    const Json* sample = k;
    if (isKeyframed(*property)) {
        stream.value = {};
        readKeys(
            *property, path, stream.keys, readVector,
            [](const Json& json, const std::string& at, PointKey& key) {
                if (const Json* tangent = memberOf(json, "to"); tangent != nullptr && !tangent->is_null()) {
                    key.outTangent = readVector(*tangent, at + ".to");
                }
                if (const Json* tangent = memberOf(json, "ti"); tangent != nullptr && !tangent->is_null()) {
                    key.inTangent = readVector(*tangent, at + ".ti");
                }
                key.ease = {readEase(json, 0), readEase(json, 1), readEase(json, 2)};
            });
        sample = memberOf(k->front(), "s");
    } else {
        stream.value = readVector(*k, path + ".k");
    }
    if (sample != nullptr && sample->is_array()) {
        stream.dimensions = static_cast<std::uint8_t>(std::clamp<std::size_t>(sample->size(), 1, 3));
    }
}

std::shared_ptr<Mask> readMask(const Json& json, const std::string& path, std::size_t index) {
    auto mask = std::make_shared<Mask>();
    mask->fileIndex = index;
    mask->name = textAt(json, "nm");
    mask->mode = json.contains("mode") ? textAt(json, "mode") : "a";
    mask->inverted = truthAt(json, "inv");
    const Json* outline = memberOf(json, "pt");
    const Json* k = outline == nullptr ? nullptr : memberOf(*outline, "k");
    if (k == nullptr) {
        fail(path, "the mask has no outline (pt.k)");
    }
    const auto readOutline = [&](const Json& shape, const std::string& at) {
        return readPath(shape, at, json);
    };
    if (isKeyframed(*outline)) {
        readKeys(
            *outline, path + ".pt", mask->path.keys, readOutline,
            [](const Json& keyJson, const std::string&, PathKey& key) { key.ease = readEase(keyJson, 0); });
    } else {
        mask->path.value = readOutline(*k, path + ".pt.k");
    }
    return mask;
}

const Json& maskListOf(const Json& json) {
    static const Json none = Json::array();
    const Json* list = memberOf(json, "masksProperties");
    return list != nullptr && list->is_array() ? *list : none;
}

// ---- Writing -----------------------------------------------------------------------------------

// What stands beside a slot counts for no player.
void requireOwnValue(const Json& property, const char* what) {
    if (isSlotted(property)) {
        throw ProjectError(std::string("the ") + what +
                           " would have to change, but takes its value from a slot of the file");
    }
}

Json vectorJson(const Vec3& value, std::size_t dimensions) {
    Json json = Json::array();
    for (std::size_t i = 0; i < dimensions; ++i) {
        json.push_back(jsonNumber(value[i]));
    }
    return json;
}

// Keeps the number of numbers that stood there.
void patchVector(Json& json, const Vec3& value) {
    if (json.is_array()) {
        for (std::size_t i = 0; i < json.size() && i < 3; ++i) {
            json[i] = jsonNumber(value[i]);
        }
    } else {
        json = jsonNumber(value.x);
    }
}

void patchScalarValue(Json& json, double value) {
    if (json.is_array() && !json.empty()) {
        json[0] = jsonNumber(value);
    } else {
        json = jsonNumber(value);
    }
}

void patchPath(Json& json, const MaskPath& path) {
    Json& shape = json.is_array() && !json.empty() ? json.front() : json;
    for (std::size_t i = 0; i < path.vertices.size() && i < shape["v"].size(); ++i) {
        patchVector(shape["v"][i], path.vertices[i].point);
        patchVector(shape["i"][i], path.vertices[i].inTangent);
        patchVector(shape["o"][i], path.vertices[i].outTangent);
    }
}

void patchTiming(Json& json, const KeyTiming& key) {
    if (key.out == Interpolation::Hold) {
        json["h"] = 1;
    } else {
        json.erase("h");
        if (key.out == Interpolation::Linear && json.contains("o")) {
            json["o"] = {{"x", 0}, {"y", 0}};
            json["i"] = {{"x", 1}, {"y", 1}};
        }
    }
}

template <class Key, class PatchValue, class PatchRest>
void patchKeys(Json& property, const RareList<Key>& keys, const RareList<Key>& asRead, PatchValue&& patchValue,
               PatchRest&& patchRest) {
    for (std::size_t i = 0; i < keys.size() && i < property["k"].size(); ++i) {
        if (keys[i] == asRead[i]) {
            continue;
        }
        Json& json = property["k"][i];
        // A last key without a value of its own takes it from the end of the span before.
        if (json.contains("s")) {
            patchValue(json["s"], keys[i].value);
        }
        if (json.contains("e") && keys[i].end) {
            patchValue(json["e"], *keys[i].end);
        }
        if (keys[i].out != asRead[i].out) {
            patchTiming(json, keys[i]);
        }
        patchRest(json, keys[i]);
    }
}

void patchScalar(Json& property, const ScalarStream& stream, const ScalarStream& asRead) {
    if (stream.keys.empty()) {
        if (stream.value != asRead.value || !property.contains("k")) {
            patchScalarValue(property["k"], stream.value);
        }
        return;
    }
    patchKeys(property, stream.keys, asRead.keys, patchScalarValue, [](Json&, const ScalarKey&) {});
}

const char* pointName(const char* key) {
    return *key == 'a' ? "anchor point" : *key == 'p' ? "position" : "scale";
}

void patchPoint(Json& transform, const char* name, const PointStream& stream, const PointStream& asRead) {
    if (stream == asRead) {
        return;
    }
    Json& property = transform[name];
    requireOwnValue(property, pointName(name));
    if (stream.separated()) {
        for (std::size_t axis = 0; axis < stream.axes.size(); ++axis) {
            patchScalar(property[axisNames[axis]], stream.axes[axis], asRead.axes[axis]);
        }
    } else if (!stream.keys.empty()) {
        patchKeys(property, stream.keys, asRead.keys, patchVector, [](Json& json, const PointKey& key) {
            if (key.outTangent) {
                patchVector(json["to"], *key.outTangent);
            }
            if (key.inTangent) {
                patchVector(json["ti"], *key.inTangent);
            }
        });
    } else if (property.is_object() && property.contains("k")) {
        patchVector(property["k"], stream.value);
    } else {
        property = {{"a", 0}, {"k", vectorJson(stream.value, 3)}};
    }
}

// One at a time, since there may be many.
void patchMasks(Json& json, const Json& shown, const MaskList& masks) {
    Json kept = Json::array();
    for (const auto& mask : masks) {
        const PathStream before = readMask(maskListOf(shown)[mask->fileIndex], "mask", mask->fileIndex)->path;
        Json item = std::move(json["masksProperties"][mask->fileIndex]);
        if (!(mask->path == before)) {
            requireOwnValue(item["pt"], "mask");
        }
        if (mask->path.keys.empty()) {
            if (!(mask->path == before)) {
                patchPath(item["pt"]["k"], mask->path.value);
            }
        } else {
            patchKeys(item["pt"], mask->path.keys, before.keys, patchPath, [](Json&, const PathKey&) {});
        }
        kept.push_back(std::move(item));
    }
    if (kept.empty()) {
        json.erase("masksProperties");
        json["hasMask"] = false;
    } else {
        json["masksProperties"] = std::move(kept);
    }
}

}  // namespace

Json jsonNumber(double value) {
    if (!(std::abs(value) <= largest)) {
        throw ProjectError(
            "a position or a size has left the range of 1e12 to either side, so that the result "
            "could not be read again");
    }
    constexpr double exact = 9007199254740992.0;
    if (value == std::trunc(value) && std::abs(value) < exact) {
        return static_cast<std::int64_t>(value);
    }
    return value;
}

double numberAt(const Json& json, const char* key, double otherwise, const std::string& path) {
    const Json* value = memberOf(json, key);
    return value == nullptr || value->is_null() ? otherwise : number(*value, path + "." + key);
}

double requiredNumber(const Json& json, const char* key, const std::string& path) {
    const Json* value = memberOf(json, key);
    if (value == nullptr) {
        fail(path.empty() ? key : path + "." + key, "a number is needed here, and nothing is");
    }
    return number(*value, path.empty() ? key : path + "." + key);
}

bool truthAt(const Json& json, const char* key) {
    const Json* value = memberOf(json, key);
    return value != nullptr &&
           ((value->is_boolean() && value->get<bool>()) || (value->is_number() && value->get<double>() != 0));
}

std::string textAt(const Json& json, const char* key) {
    const Json* value = memberOf(json, key);
    return value != nullptr && value->is_string() ? value->get<std::string>() : std::string();
}

std::string idAt(const Json& json, const char* key) {
    const Json* value = memberOf(json, key);
    return value != nullptr && value->is_number() ? value->dump() : textAt(json, key);
}

std::optional<int> wholeIndex(double number) {
    constexpr double largestIndex = 1e9;
    return std::abs(number) <= largestIndex ? std::optional(static_cast<int>(std::lround(number)))
                                            : std::nullopt;
}

void readLayer(const Json& json, const std::string& path, LayerData& layer, std::optional<int>& parent) {
    const auto whole = [&](const char* key) -> std::optional<int> {
        const Json* value = memberOf(json, key);
        if (value == nullptr || value->is_null()) {
            return std::nullopt;
        }
        const auto index = wholeIndex(number(*value, path + "." + key));
        if (!index) {
            fail(path + "." + key, "the number is out of range");
        }
        return index;
    };
    layer.type = static_cast<LayerType>(whole("ty").value_or(-1));
    if (!json.contains("ty")) {
        fail(path, "the layer has no type (ty)");
    }
    layer.name = textAt(json, "nm");
    layer.reference = idAt(json, "refId");
    layer.index = whole("ind");
    parent = whole("parent");
    layer.threeD = truthAt(json, "ddd");
    layer.hidden = truthAt(json, "hd");
    layer.collapsed = truthAt(json, "ct");
    layer.inFrame = numberAt(json, "ip", 0, path);
    layer.outFrame = numberAt(json, "op", 0, path);
    layer.startFrame = numberAt(json, "st", 0, path);
    layer.stretch = numberAt(json, "sr", 1, path);
    if (layer.stretch == 0) {
        fail(path + ".sr", "a time stretch of 0 shows nothing");
    }
    const bool solid = layer.type == LayerType::Solid;
    layer.useSize = {whole(solid ? "sw" : "w").value_or(0), whole(solid ? "sh" : "h").value_or(0)};

    if (const Json* transform = memberOf(json, "ks"); transform != nullptr && !transform->is_null()) {
        if (!transform->is_object()) {
            fail(path + ".ks", "an object is needed here");
        }
        const std::string at = path + ".ks";
        readPoint(*transform, "a", at, layer.anchor);
        readPoint(*transform, "p", at, layer.position);
        readPoint(*transform, "s", at, layer.scale);
        if (const Json* rotation = memberOf(*transform, "r")) {
            layer.rotation = readScalar(*rotation, at + ".r");
        } else if (const Json* rotationZ = memberOf(*transform, "rz")) {
            layer.rotation = readScalar(*rotationZ, at + ".rz");
        }
    }
    if (const Json* remap = memberOf(json, "tm"); remap != nullptr && remap->is_object()) {
        layer.timeRemap = readScalar(*remap, path + ".tm");
    }
}

MaskList readMasks(const Json& json, const std::string& path) {
    MaskList masks;
    const Json& list = maskListOf(json);
    for (std::size_t i = 0; i < list.size(); ++i) {
        masks.push_back(readMask(list[i], path + ".masksProperties[" + std::to_string(i) + "]", i));
    }
    return masks;
}

bool sameMasks(const Json& json, const MaskList& masks) {
    const Json& list = maskListOf(json);
    std::size_t i = 0;
    return list.size() == masks.size() && std::all_of(masks.begin(), masks.end(), [&](const auto& mask) {
               const std::size_t at = i++;
               return *mask == *readMask(list[at], "mask", at);
           });
}

void patchLayer(Json& json, const Json& shown, const Layer& layer, const LayerData& asRead,
                std::optional<int> parentAsRead) {
    if (layer.useSize != asRead.useSize) {
        json["w"] = layer.useSize.width;
        json["h"] = layer.useSize.height;
    }
    Json& transform = json["ks"];
    patchPoint(transform, "a", layer.anchor, asRead.anchor);
    patchPoint(transform, "p", layer.position, asRead.position);
    patchPoint(transform, "s", layer.scale, asRead.scale);
    if (!(layer.rotation == asRead.rotation)) {
        const char* name = transform.contains("rz") && !transform.contains("r") ? "rz" : "r";
        if (!transform.contains(name)) {
            transform[name] = {{"a", 0}};
        }
        requireOwnValue(transform[name], "rotation");
        patchScalar(transform[name], layer.rotation, asRead.rotation);
    }
    if (transform.is_null()) {
        json.erase("ks");
    }
    if (!sameMasks(shown, layer.masks)) {
        patchMasks(json, shown, layer.masks);
    }
    const std::optional<int> parent = layer.parent != nullptr ? layer.parent->index : std::nullopt;
    if (parent != parentAsRead) {
        if (parent) {
            json["parent"] = *parent;
        } else {
            json.erase("parent");
        }
    }
    if (layer.index != asRead.index) {
        json["ind"] = *layer.index;
    }
}

}  // namespace headless::model
