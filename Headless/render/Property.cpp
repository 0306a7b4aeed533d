#include "render/Property.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace headless::render {
namespace {

const Json nothing;

int wholeNumber(double value) {
    constexpr double limit = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::round(value), -limit, limit));
}

Json numbers(const Json& array, std::size_t least, std::size_t most) {
    if (!array.is_array()) return nullptr;
    Json result = Json::array();
    for (const Json& number : array) {
        if (result.size() == most || !number.is_number()) break;
        result.push_back(number);
    }
    return result.size() < least ? Json() : result;
}

Json pointList(const Json& points) {
    Json result = Json::array();
    for (const Json& point : points) result.push_back(numbers(point, 2, 2));
    return result;
}

Json path(const Json& value) {
    const Json& shape = value.is_array() && !value.empty() ? value.front() : value;
    if (!memberOf(shape, "v").is_array()) return nullptr;
    Json result = Json::object();
    reserve(result, 4);
    for (const char* name : {"i", "o", "v"}) result[name] = pointList(memberOf(shape, name));
    for (Json& list : result) {
        // A vertex without tangents is a corner.
        while (list.size() < result["v"].size()) list.push_back({0, 0});
        for (const Json& point : list) {
            if (point.is_null()) return nullptr;
        }
    }
    result["c"] = isSet(shape, "c");
    return result;
}

Json plainValue(const Json& value, Kind kind) {
    switch (kind) {
        case Kind::Integer:
            if (value.is_boolean()) return value.get<bool>() ? 1 : 0;
            return value.is_number() ? Json(wholeNumber(value.get<double>())) : Json();
        case Kind::Number:
            return value.is_number() ? value : Json();
        case Kind::Flag:
            if (value.is_number()) return value.get<double>() != 0;
            return value.is_boolean() ? value : Json();
        case Kind::Scalar: {
            const Json& number = value.is_array() && !value.empty() ? value.front() : value;
            return number.is_number() ? number : Json();
        }
        case Kind::Point:
            return numbers(value, 2, 2);
        case Kind::Colour:
            return numbers(value, 3, 3);
        case Kind::Stops:
            return numbers(value, 4, std::numeric_limits<std::size_t>::max());
        case Kind::Path:
            return path(value);
    }
    return nullptr;
}

// A keyframe's value always stands in an array.
Json keyValue(Json value, Kind kind) {
    if (kind != Kind::Scalar && kind != Kind::Path) return value;
    Json::array_t list;
    list.push_back(std::move(value));
    return list;
}

Json handle(const Json& ease, double fallback) {
    Json result;
    for (const char* axis : {"x", "y"}) {
        Json number = plainValue(memberOf(ease, axis), Kind::Scalar);
        result[axis] = number.is_null() ? Json(fallback) : std::move(number);
    }
    result["x"] = std::clamp(result["x"].get<double>(), 0.0, 1.0);
    return result;
}

bool isZero(const Json& point) {
    return std::all_of(point.begin(), point.end(), [](const Json& number) { return number == 0; });
}

// The way from one key to the next. The renderer drops a key without handles, and takes easings whose
// numbers agree in two decimals for the same one unless they are named.
void writeEase(Json& key, const Json& source) {
    key["i"] = handle(memberOf(source, "i"), 1);
    key["o"] = handle(memberOf(source, "o"), 0);
    key["n"] = key["i"].dump() + key["o"].dump();
    const Json out = numbers(memberOf(source, "to"), 2, 2);
    const Json in = numbers(memberOf(source, "ti"), 2, 2);
    if ((out.is_null() || isZero(out)) && (in.is_null() || isZero(in))) return;
    key["to"] = out.is_null() ? Json({0, 0}) : out;
    key["ti"] = in.is_null() ? Json({0, 0}) : in;
}

struct Key {
    const Json* source = nullptr;
    double step = 0;
    Json start;
    Json legacyEnd;
};

Json keyframes(const Json& list, Kind kind, const Clock& clock) {
    std::vector<Key> keys;
    for (const Json& source : list) {
        Key key{.source = &source,
                .step = clock.step(numberOr(source, "t", 0)),
                .start = plainValue(memberOf(source, "s"), kind),
                .legacyEnd = plainValue(memberOf(source, "e"), kind)};
        // Older files give the last value as the end of the key before.
        if (key.start.is_null() && !keys.empty()) key.start = keys.back().legacyEnd;
        if (!key.start.is_null()) keys.push_back(std::move(key));
    }
    Json result = Json::array();
    for (std::size_t index = 0; index < keys.size(); ++index) {
        Key& key = keys[index];
        Json written = Json::object();
        reserve(written, 8);
        written["t"] = key.step;
        written["s"] = keyValue(std::move(key.start), kind);
        // A last key with handles would lose its value; one that holds keeps it.
        if (index + 1 == keys.size() || isSet(*key.source, "h")) {
            written["e"] = written["s"];
            written["h"] = 1;
        } else {
            written["e"] = keyValue(keys[index + 1].start, kind);
            writeEase(written, *key.source);
        }
        result.push_back(std::move(written));
    }
    return result.empty() ? Json() : result;
}

}  // namespace

double Clock::step(double frame) const {
    const double step = (frame - firstFrame_) * stepsPerFrame;
    if (std::isnan(step)) return 0;
    // Files carry times like 60.0000024; what is a step but for that is a step.
    const double whole = std::round(step);
    return std::clamp<double>(std::abs(step - whole) < 0.05 ? whole : step, -ever, ever);
}

int Clock::wholeStep(double frame) const {
    return static_cast<int>(std::round(step(frame)));
}

int Clock::firstStepFrom(double frame) const {
    return static_cast<int>(std::ceil(step(frame)));
}

const Json& memberOf(const Json& object, const char* name) {
    if (!object.is_object()) return nothing;
    const auto found = object.find(name);
    return found == object.end() ? nothing : *found;
}

double numberOr(const Json& object, const char* name, double fallback) {
    const Json& member = memberOf(object, name);
    return member.is_number() ? member.get<double>() : fallback;
}

bool isSet(const Json& object, const char* name) {
    return plainValue(memberOf(object, name), Kind::Flag) == true;
}

Json rewritten(const Json& value, Kind kind, const Clock& clock) {
    if (kind == Kind::Integer || kind == Kind::Number || kind == Kind::Flag) return plainValue(value, kind);
    const Json& content = memberOf(value, "k");
    const bool keyed =
        content.is_array() && !content.empty() && content.front().is_object() && content.front().contains("t");
    Json result = keyed ? keyframes(content, kind, clock) : plainValue(content, kind);
    return result.is_null() ? result : Json{{"k", std::move(result)}};
}

Json rewrittenPosition(const Json& value, const Clock& clock) {
    if (!isSet(value, "s")) return rewritten(value, Kind::Point, clock);
    Json result{{"s", true}};
    rewriteMembers(result, value, {{"x", Kind::Scalar}, {"y", Kind::Scalar}}, clock);
    return result;
}

void reserve(Json& object, std::size_t members) {
    auto& list = object.get_ref<Json::object_t&>();
    list.reserve(list.size() + members);
}

void rewriteMembers(Json& to, const Json& from, const std::vector<Member>& members, const Clock& clock) {
    for (const Member& member : members) {
        Json value = rewritten(memberOf(from, member.name), member.kind, clock);
        if (!value.is_null()) to[member.name] = std::move(value);
    }
}

}  // namespace headless::render
