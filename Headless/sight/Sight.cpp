#include "sight/Sight.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <span>

#include "sight/Expression.h"
#include "sight/Picture.h"

namespace headless::sight {

namespace {

using model::Json;

const Json& member(const Json& json, std::string_view name) {
    static const Json nothing;
    const auto found = json.is_object() ? json.find(std::string(name)) : json.end();
    return json.is_object() && found != json.end() ? *found : nothing;
}

bool isNumber(const Json& json, double number) {
    return json.is_number() && json.get<double>() == number;
}

std::string text(const Json& json) {
    return json.is_string() ? json.get<std::string>() : std::string();
}

struct Judge;

// Whether the value is drawn. One that has been named in detail answers true.
using Check = bool (*)(Judge& judge, const Json& value);

struct Member {
    std::string_view name;
    Check check;
    std::string_view what = {};  // for people, where the check fails
    Kind kind = Kind::Other;
};

// An object of the format, and what it may have.
struct Place {
    std::string_view code;  // "transform"
    std::string_view what;  // "transform"
    Kind kind;
    std::span<const Member> members;
};

struct Judge {
    const model::Project& project;
    const model::Comp& comp;
    const std::set<std::string>& fonts;
    std::vector<Json> layers{};        // of the composition, topmost first
    std::vector<Json> layersOfRoot{};  // once they are asked for
    bool hasOwnTime = false;           // what is shown of the composition starts or runs otherwise
    Json shell{};                      // the root's members without layers, once it is asked for
    std::size_t at = 0;                // place of the layer that is judged
    const model::Layer* layer = nullptr;

    bool miss(Kind kind, std::string code, std::string what) {
        if (codes.emplace(layer->id, code).second) {
            unseen.push_back({kind, std::move(code), layer->id, std::move(what)});
        }
        return true;
    }

    bool object(const Json& json, const Place& place) {
        if (!json.is_object()) {
            return miss(place.kind, std::string(place.code),
                        "a " + std::string(place.what) + " of another form");
        }
        for (const auto& [name, value] : json.items()) {
            inside = std::string(place.code) + "-" + name;
            const auto found = std::find_if(place.members.begin(), place.members.end(),
                                            [&](const Member& each) { return each.name == name; });
            if (found == place.members.end()) {
                miss(place.kind, std::string(place.code) + "-unknown",
                     "the unknown member \"" + name + "\" of its " + std::string(place.what));
            } else if (!found->check(*this, value)) {
                miss(found->kind == Kind::Other ? place.kind : found->kind,
                     std::string(place.code) + "-" + std::string(found->name),
                     !found->what.empty() ? std::string(found->what)
                                          : "\"" + name + "\" of its " + std::string(place.what));
            }
        }
        return true;
    }

    // Whole frames are what is looked at.
    double fromFirstFrame(double frame) const { return frame - comp.firstFrame; }

    std::string inside{};  // the member that is judged
    std::vector<Unseen> unseen{};
    std::set<std::pair<model::LayerId, std::string>> codes{};  // in it
};

// ---- Values ---------------------------------------------------------------------------------------------

bool harmless(Judge&, const Json&) {
    return true;
}
bool number(Judge&, const Json& value) {
    return value.is_number();
}
bool whole(Judge&, const Json& value) {
    return value.is_number_integer();
}
bool flag(Judge&, const Json& value) {
    return value == Json(0) || value == Json(1);
}
bool off(Judge&, const Json& value) {
    return value == Json(0) || value == Json(false);
}
bool truth(Judge&, const Json& value) {
    return value.is_boolean();
}
bool words(Judge&, const Json& value) {
    return value.is_string();
}

template <int first, int last>
bool oneOf(Judge&, const Json& value) {
    return value.is_number_integer() && value.get<std::int64_t>() >= first && value.get<std::int64_t>() <= last;
}

bool isVector(const Json& value, std::size_t least) {
    return value.is_array() && value.size() >= least &&
           std::all_of(value.begin(), value.end(), [](const Json& each) { return each.is_number(); });
}

bool isScalar(const Json& value) {
    return value.is_number() || (isVector(value, 1) && value.size() == 1);
}

bool isPath(const Json& value) {
    static const std::set<std::string> known{"v", "i", "o", "c"};
    const Json& vertices = member(value, "v");
    for (const char* list : {"v", "i", "o"}) {
        const Json& points = member(value, list);
        if (!points.is_array() || points.size() != vertices.size() ||
            !std::all_of(points.begin(), points.end(), [](const Json& point) { return isVector(point, 2); })) {
            return false;
        }
    }
    const Json& closed = member(value, "c");
    return (closed.is_null() || closed.is_boolean()) &&
           std::all_of(value.items().begin(), value.items().end(),
                       [](const auto& each) { return known.contains(each.key()); });
}

// ---- Properties -----------------------------------------------------------------------------------------

using Value = bool (*)(const Json& value);

// The same for both axes; that of the third changes nothing.
bool easing(Judge&, const Json& value) {
    const auto isEase = [](const Json& json) {
        return json.is_number() || (isVector(json, 1) && (json.size() == 1 || json[0] == json[1]));
    };
    return value.is_object() && value.size() == 2 && isEase(member(value, "x")) && isEase(member(value, "y"));
}
bool tangent(Judge&, const Json& value) {
    return value.is_null() || isVector(value, 2);
}

constexpr Member keyMembers[] = {
    {"t", number},   {"s", harmless}, {"e", harmless}, {"h", flag},
    {"i", easing},   {"o", easing},   {"n", harmless},  // names the easing
    {"to", tangent}, {"ti", tangent},
};
constexpr Place keyPlace{"keyframe", "keyframe", Kind::Other, keyMembers};

const Json& startOf(const Json& keys, std::size_t i) {
    const Json& start = member(keys[i], "s");
    return !start.is_null() || i == 0 ? start : member(keys[i - 1], "e");
}

// Farther than before and after on one axis, and by much at the whole frames around it.
bool isExtreme(const Json& keys, std::size_t i, double sinceFrame) {
    constexpr double much = 5;  // pixels, degrees, percent
    const Json &before = startOf(keys, i - 1), &here = startOf(keys, i), &after = startOf(keys, i + 1);
    if (!isVector(before, 1) || before.size() != here.size() || before.size() != after.size()) {
        return false;
    }
    const auto time = [&](std::size_t key) { return member(keys[key], "t").get<double>(); };
    for (std::size_t axis = 0; axis < here.size(); ++axis) {
        const double in = here[axis].get<double>() - before[axis].get<double>();
        const double out = here[axis].get<double>() - after[axis].get<double>();
        const double missed = std::min(std::abs(in) * sinceFrame / (time(i) - time(i - 1)),
                                       std::abs(out) * (1 - sinceFrame) / (time(i + 1) - time(i)));
        if (in * out > 0 && missed > much) {
            return true;
        }
    }
    return false;
}

// Something happens between two whole frames and is over at the next.
bool showsBetweenFrames(const Judge& judge, const Json& keys) {
    for (std::size_t i = 1; i + 1 < keys.size(); ++i) {
        const auto at = [&](std::size_t key) {
            return judge.fromFirstFrame(member(keys[key], "t").get<double>());
        };
        const double before = std::floor(at(i));
        const bool isBetween = at(i) != before;
        if (isBetween &&
            ((at(i - 1) >= before && at(i + 1) <= before + 1) || isExtreme(keys, i, at(i) - before))) {
            return true;
        }
    }
    return false;
}

// Players measure a curve in steps of their own, so that the layer is at other places at the same time.
constexpr double farOff = 10, strongly = 0.28;  // pixels off the straight line; parts of its length

bool isCurved(const Json& key, const Json& start, const Json& end) {
    for (const char* name : {"to", "ti"}) {
        const Json& tangent = member(key, name);
        if (isVector(tangent, 2) && isVector(start, 2) && isVector(end, 2)) {
            const auto at = [](const Json& list, int axis) { return list[axis].get<double>(); };
            const double x = at(end, 0) - at(start, 0), y = at(end, 1) - at(start, 1);
            const double across = at(tangent, 0) * y - at(tangent, 1) * x;
            const double length = std::hypot(x, y);
            if (std::abs(across) > std::max(farOff * length, strongly * length * length)) {
                return true;
            }
        }
    }
    return false;
}

bool keyframes(Judge& judge, const Json& keys, Value isValue) {
    bool drawn = keys.size() > 1;
    double last = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        judge.object(keys[i], keyPlace);
        const Json& time = member(keys[i], "t");
        if (!time.is_number() || time.get<double>() < last) {
            return false;
        }
        last = time.get<double>();
        const auto isKeyValue = [&](const Json& value) {
            const bool isPathValue = value.is_array() && value.size() == 1 && value[0].is_object();
            return value.is_array() && isValue(isPathValue ? value[0] : value) &&
                   (!isPathValue || value[0]["v"].size() == startOf(keys, 0)[0]["v"].size());
        };
        const bool isLast = i + 1 == keys.size();
        const Json& end = member(keys[i], "e");
        drawn = drawn && isKeyValue(startOf(keys, i)) && (end.is_null() || isKeyValue(end)) &&
                (isLast || member(keys[i], "h") == Json(1) || keys[i].contains("o"));
        drawn = drawn && keys[i].contains("o") == keys[i].contains("i");
    }
    for (std::size_t i = 0; drawn && i + 1 < keys.size(); ++i) {
        const Json& end = member(keys[i], "e");
        if (isCurved(keys[i], startOf(keys, i), end.is_null() ? startOf(keys, i + 1) : end)) {
            judge.miss(Kind::Other, "curved-motion", "a movement along a curve");
        }
    }
    if (drawn && showsBetweenFrames(judge, keys)) {
        judge.miss(Kind::Time, "between-frames", "a change that shows only between whole frames");
    }
    return drawn;
}

std::vector<Json> layersOf(const model::Project& project, const model::Comp& comp) {
    std::vector<Json> layers;
    layers.reserve(comp.layers.size());
    for (const model::LayerPtr& each : comp.layers) {
        layers.push_back(project.layerJson(*each));
    }
    return layers;
}

// Where the renderer runs them.
const std::set<std::string, std::less<>> expressionsRun{
    "transform-a",
    "transform-p",
    "transform-s",
    "transform-r",
    "transform-o",
    "position-x",
    "position-y",
    "rectangle-s",
    "rectangle-p",
    "rectangle-r",
    "ellipse-s",
    "ellipse-p",
    "star-or",
    "stroke-w",
    "fill-o",
    "trim-e",
    "trim-o",
    "group-transform-a",
    "group-transform-p",
    "group-transform-s",
    "group-transform-r",
    "group-transform-o",
    "layer-tm",
};

bool isDrawnExpression(Judge& judge, const std::string& expression, const Json& k) {
    if (judge.layersOfRoot.empty() && expression.find("comp(") != std::string::npos) {
        judge.layersOfRoot = layersOf(judge.project, judge.project.root());
    }
    const Reach reach{judge.layers[judge.at], judge.layers, judge.project.root().item->name, judge.layersOfRoot,
                      judge.hasOwnTime};
    const std::optional<double> value = k.is_number() ? std::optional(k.get<double>()) : std::nullopt;
    return keepsValue(expression, value, reach) ||
           (expressionsRun.contains(judge.inside) && isDrawn(expression, reach));
}

enum class Matters { Geometry, Colour };

bool property(Judge& judge, const Json& json, Value isValue, Matters matters = Matters::Geometry) {
    if (!json.is_object()) {
        return false;
    }
    for (const auto& [name, value] : json.items()) {
        if (name == "x" && value.is_string()) {
            if (matters == Matters::Geometry &&
                !isDrawnExpression(judge, value.get<std::string>(), member(json, "k"))) {
                judge.miss(Kind::Expressions, "expression", "an expression");
            }
        } else if (name != "a" && name != "k" && name != "ix" && name != "l" && name != "sid" && name != "nm" &&
                   name != "mn") {
            return false;
        }
    }
    const Json& k = member(json, "k");
    if (k.is_array() && !k.empty() && k[0].is_object() && k[0].contains("t")) {
        return keyframes(judge, k, isValue);
    }
    return !isNumber(member(json, "a"), 1) && isValue(k);
}

bool scalar(Judge& judge, const Json& json) {
    return property(judge, json, isScalar);
}
bool point(Judge& judge, const Json& json) {
    return property(judge, json, [](const Json& value) { return isVector(value, 2); });
}
bool colour(Judge& judge, const Json& json) {
    return property(
        judge, json, [](const Json& value) { return isVector(value, 3); }, Matters::Colour);
}
bool path(Judge& judge, const Json& json) {
    return property(judge, json, isPath);
}
bool closedPath(Judge& judge, const Json& json) {
    return property(judge, json,
                    [](const Json& value) { return isPath(value) && member(value, "c") == Json(true); });
}
bool zero(Judge& judge, const Json& json) {
    return property(judge, json, [](const Json& value) {
        return isNumber(value, 0) ||
               (isVector(value, 1) &&
                std::all_of(value.begin(), value.end(), [](const Json& each) { return isNumber(each, 0); }));
    });
}
bool size(Judge& judge, const Json& json) {
    return property(judge, json, [](const Json& value) {
        return isVector(value, 2) && value[0].get<double>() >= 0 && value[1].get<double>() >= 0;
    });
}
bool notNegative(Judge& judge, const Json& json) {
    return property(judge, json, [](const Json& value) {
        return isScalar(value) && (value.is_array() ? value[0] : value).get<double>() >= 0;
    });
}
bool wholeCount(Judge& judge, const Json& json) {
    return property(judge, json,
                    [](const Json& value) {
                        if (!isScalar(value)) {
                            return false;
                        }
                        const double count = (value.is_array() ? value[0] : value).get<double>();
                        return count >= 0 && count == std::floor(count);
                    }) &&
           !isNumber(member(json, "a"), 1);
}
bool hundred(Judge& judge, const Json& json) {
    return property(judge, json, [](const Json& value) {
        return isScalar(value) && isNumber(value.is_array() ? value[0] : value, 100);
    });
}

constexpr Member separatedMembers[] = {
    {"s", truth},     {"x", scalar},   {"y", scalar}, {"z", zero, "a depth", Kind::ThreeD},
    {"ix", harmless}, {"l", harmless},
};
constexpr Place separatedPlace{"position", "separated position", Kind::Other, separatedMembers};

bool position(Judge& judge, const Json& json) {
    return member(json, "x").is_object() ? judge.object(json, separatedPlace) : point(judge, json);
}

// ---- Transforms -----------------------------------------------------------------------------------------

constexpr Member layerTransformMembers[] = {
    {"a", point},
    {"p", position},
    {"s", point},
    {"r", scalar},
    {"rz", scalar},
    {"o", scalar},
    {"sk", scalar},
    {"sa", scalar},
    {"rx", zero, "a turn in space", Kind::ThreeD},
    {"ry", zero, "a turn in space", Kind::ThreeD},
    {"or", zero, "a turn in space", Kind::ThreeD},
    {"ix", harmless},
    {"nm", harmless},
    {"mn", harmless},
};
constexpr Place layerTransform{"transform", "transform", Kind::Other, layerTransformMembers};

bool transform(Judge& judge, const Json& json) {
    return judge.object(json, layerTransform);
}

constexpr Member groupTransformMembers[] = {
    {"ty", words},  {"a", point},   {"p", point},     {"s", point},     {"r", scalar},    {"o", scalar},
    {"sk", scalar}, {"sa", scalar}, {"nm", harmless}, {"mn", harmless}, {"ix", harmless}, {"hd", off},
};
constexpr Place groupTransform{"group-transform", "group's transform", Kind::Shapes, groupTransformMembers};

constexpr Member copyTransformMembers[] = {
    {"ty", words},
    {"a", point},
    {"p", point},
    {"s", size},
    {"r", scalar},
    {"so", hundred, "copies that fade"},
    {"eo", hundred, "copies that fade"},
    {"nm", harmless},
    {"mn", harmless},
    {"ix", harmless},
    {"hd", off},
};
constexpr Place copyTransform{"repeater-transform", "repeater's transform", Kind::Shapes, copyTransformMembers};

bool copies(Judge& judge, const Json& json) {
    return judge.object(json, copyTransform);
}

// ---- Shapes ---------------------------------------------------------------------------------------------

bool items(Judge& judge, const Json& json);

bool normal(Judge&, const Json& value) {
    return isNumber(value, 0);
}

bool dashes(Judge& judge, const Json& json);

bool gradientColours(Judge& judge, const Json& json) {
    return json.is_object() && json.size() == 2 && json.begin().key() == "p" &&
           member(json, "p").is_number_integer() &&
           property(
               judge, member(json, "k"), [](const Json& value) { return isVector(value, 4); }, Matters::Colour);
}

#define KESTRIN_ITEM                                                                                           \
    {"ty", words}, {"nm", harmless}, {"mn", harmless}, {"ix", harmless}, {"ind", harmless}, {"cix", harmless}, \
        {"np", harmless}, {"cl", harmless}, {"ln", harmless}, {                                                \
        "hd", off, "a hidden shape", Kind::Shapes                                                              \
    }

constexpr Member groupMembers[] = {KESTRIN_ITEM, {"it", items}, {"bm", normal, "a blend mode of a group"}};
constexpr Member rectangleMembers[] = {KESTRIN_ITEM,
                                       {"d", oneOf<1, 3>},
                                       {"p", point},
                                       {"s", size, "a rectangle of negative size"},
                                       {"r", notNegative}};
constexpr Member ellipseMembers[] = {KESTRIN_ITEM,
                                     {"d", oneOf<1, 3>},
                                     {"p", point},
                                     {"s", size, "an ellipse of negative size"},
                                     {"closed", harmless}};
constexpr Member pathMembers[] = {
    KESTRIN_ITEM,
    {"d", oneOf<1, 3>},
    {"ks", path, "a path"},
    {"closed", [](Judge&, const Json& value) { return value == Json(false); }, "a path of an old form"}};
constexpr Member starMembers[] = {
    KESTRIN_ITEM,        {"d", oneOf<1, 3>},  {"sy", oneOf<1, 1>, "a polygon"},
    {"p", point},        {"r", scalar},       {"pt", wholeCount, "a star with parts of points"},
    {"ir", notNegative}, {"or", notNegative}, {"is", scalar},
    {"os", scalar}};
constexpr Member fillMembers[] = {
    KESTRIN_ITEM,
    {"c", colour},
    {"o", scalar},
    {"r", oneOf<1, 2>},
    {"bm", normal, "a blend mode of a fill"},
    {"fillEnabled", [](Judge&, const Json& value) { return value == Json(true); }}};
constexpr Member strokeMembers[] = {
    KESTRIN_ITEM,
    {"c", colour},
    {"o", scalar},
    {"w", notNegative},
    {"lc", oneOf<1, 3>},
    {"lj", oneOf<1, 3>},
    {"ml", number},
    {"ml2", harmless},
    {"d", dashes, "dashes"},
    {"bm", normal, "a blend mode of a stroke"},
    {"fillEnabled", [](Judge&, const Json& value) { return value == Json(true); }}};
constexpr Member gradientFillMembers[] = {KESTRIN_ITEM,       {"o", scalar},
                                          {"r", oneOf<1, 2>}, {"g", gradientColours},
                                          {"s", point},       {"e", point},
                                          {"t", oneOf<1, 2>}, {"h", scalar},
                                          {"a", scalar},      {"bm", normal, "a blend mode of a fill"}};
constexpr Member gradientStrokeMembers[] = {KESTRIN_ITEM,
                                            {"o", scalar},
                                            {"g", gradientColours},
                                            {"s", point},
                                            {"e", point},
                                            {"t", oneOf<1, 2>},
                                            {"h", scalar},
                                            {"a", scalar},
                                            {"w", notNegative},
                                            {"lc", oneOf<1, 3>},
                                            {"lj", oneOf<1, 3>},
                                            {"ml", number},
                                            {"ml2", harmless},
                                            {"d", dashes, "dashes"},
                                            {"bm", normal, "a blend mode of a stroke"}};
constexpr Member trimMembers[] = {KESTRIN_ITEM,
                                  {"s", scalar},
                                  {"e", scalar},
                                  {"o", scalar},
                                  {"m", oneOf<1, 1>, "shapes trimmed one after another"}};
constexpr Member mergeMembers[] = {KESTRIN_ITEM, {"mm", oneOf<1, 5>}};  // players draw all of its shapes
constexpr Member repeaterMembers[] = {KESTRIN_ITEM,
                                      {"c", wholeCount, "parts of copies"},
                                      {"o", wholeCount, "an offset of copies"},
                                      {"m", oneOf<1, 1>, "copies below each other"},
                                      {"tr", copies}};
#undef KESTRIN_ITEM

struct Item {
    std::string_view type;
    Place place;
};
constexpr Item itemTypes[] = {
    {"gr", {"group", "group", Kind::Shapes, groupMembers}},
    {"rc", {"rectangle", "rectangle", Kind::Shapes, rectangleMembers}},
    {"el", {"ellipse", "ellipse", Kind::Shapes, ellipseMembers}},
    {"sh", {"path", "path", Kind::Shapes, pathMembers}},
    {"sr", {"star", "star", Kind::Shapes, starMembers}},
    {"fl", {"fill", "fill", Kind::Shapes, fillMembers}},
    {"st", {"stroke", "stroke", Kind::Shapes, strokeMembers}},
    {"gf", {"gradient-fill", "gradient", Kind::Shapes, gradientFillMembers}},
    {"gs", {"gradient-stroke", "gradient stroke", Kind::Shapes, gradientStrokeMembers}},
    {"tm", {"trim", "trimmed path", Kind::Shapes, trimMembers}},
    {"mm", {"merge", "merged path", Kind::Shapes, mergeMembers}},
    {"rp", {"repeater", "repeater", Kind::Shapes, repeaterMembers}},
    {"tr", groupTransform},
};

struct Name {
    std::string_view code, what;
};
constexpr Name notDrawnItems[] = {
    {"op", "an offset path"}, {"zz", "a zigzag"}, {"pb", "a pucker"},
    {"rd", "round corners"},  {"tw", "a twist"},
};

template <class Names>
std::string nameIn(const Names& names, std::string_view code, std::string otherwise) {
    const auto found =
        std::find_if(std::begin(names), std::end(names), [&](const auto& each) { return each.code == code; });
    return found == std::end(names) ? std::move(otherwise) : std::string(found->what);
}

constexpr Member dashMembers[] = {{"n", words}, {"nm", harmless}, {"mn", harmless}, {"v", scalar}};
constexpr Place dashPlace{"dash", "dash", Kind::Shapes, dashMembers};

// A dash and a gap, and where they begin.
bool dashes(Judge& judge, const Json& json) {
    std::string order;
    if (!json.is_array()) {
        return false;
    }
    for (const Json& each : json) {
        order += text(member(each, "n"));
        judge.object(each, dashPlace);
    }
    return order.empty() || order == "dg" || order == "dgo" || order == "d";
}

// A gradient with neither length nor a far end is a point.
bool isWithoutLength(const Json& item) {
    return member(member(item, "s"), "k") == member(member(item, "e"), "k");
}

int paintsIn(const Json& list);
bool isPartlyClearGroup(const Json& group);

bool item(Judge& judge, const Json& json) {
    const std::string type = text(member(json, "ty"));
    const auto found = std::find_if(std::begin(itemTypes), std::end(itemTypes),
                                    [&](const Item& each) { return each.type == type; });
    if (found == std::end(itemTypes)) {
        return judge.miss(Kind::Shapes, "shape-" + type,
                          nameIn(notDrawnItems, type, "a shape of an unknown kind"));
    }
    judge.object(json, found->place);
    if (type == "gf" || type == "gs") {
        if (isWithoutLength(json)) {
            judge.miss(Kind::Shapes, "gradient-point", "a gradient whose start is its end");
        }
        if (isNumber(member(json, "t"), 2) && json.contains("h") &&
            !isNumber(member(member(json, "h"), "k"), 0)) {
            judge.miss(Kind::Shapes, "gradient-highlight", "a gradient with a highlight");
        }
    }
    if (member(json, "d").is_array() && !json["d"].empty() && !isNumber(member(json, "lc"), 2)) {
        judge.miss(Kind::Shapes, "dash-caps", "dashes without round ends");
    }
    if (type == "gr" && isPartlyClearGroup(json)) {
        judge.miss(Kind::Shapes, "group-opacity", "a group of several paints that is partly clear");
    }
    if ((type == "st" || type == "gs") && isNumber(member(json, "lj"), 1) && !json.contains("ml")) {
        judge.miss(Kind::Shapes, "miter-limit", "a mitre join without its limit");
    }
    return true;
}

bool items(Judge& judge, const Json& json) {
    if (!json.is_array()) {
        return false;
    }
    const auto isRepeater = [](const Json& each) { return text(member(each, "ty")) == "rp"; };
    if (std::count_if(json.begin(), json.end(), isRepeater) > 1) {
        judge.miss(Kind::Shapes, "repeater-twice", "copies of copies");
    }
    for (const Json& each : json) {
        item(judge, each);
    }
    return true;
}

// Paints, also those of groups inside.
int paintsIn(const Json& list) {
    int paints = 0;
    for (const Json& each : list) {
        const std::string type = text(member(each, "ty"));
        paints += type == "fl" || type == "st" || type == "gf" || type == "gs" ? 1 : 0;
        paints += member(each, "it").is_array() ? paintsIn(each["it"]) : 0;
    }
    return paints;
}

// Players let the paints of a partly clear group shine through each other; the renderer does not.
bool isPartlyClearGroup(const Json& group) {
    const Json& list = member(group, "it");
    if (!list.is_array() || list.empty() || paintsIn(list) < 2) {
        return false;
    }
    const Json& opacity = member(list.back(), "o");
    return !opacity.is_null() && !isNumber(member(opacity, "k"), 100) && !isNumber(member(opacity, "k"), 0);
}

bool groupEnds(const Json& list) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        const Json& inner = member(list[i], "it");
        if (inner.is_array() &&
            (inner.empty() || text(member(inner.back(), "ty")) != "tr" || !groupEnds(inner))) {
            return false;
        }
    }
    return true;
}

bool shapes(Judge& judge, const Json& json) {
    if (!items(judge, json)) {
        return false;
    }
    if (!groupEnds(json)) {
        judge.miss(Kind::Shapes, "group-order", "a group whose transform is not its last item");
    }
    return true;
}

// ---- Masks and mattes -----------------------------------------------------------------------------------

bool maskMode(Judge&, const Json& value) {
    const std::string mode = text(value);
    return mode == "a" || mode == "s" || mode == "i" || mode == "n";
}

constexpr Member maskMembers[] = {
    {"mode", maskMode, "a mask of an unusual mode"},
    {"inv", [](Judge&, const Json& value) { return value == Json(false); }, "an inverted mask"},
    {"pt", closedPath, "an open mask"},
    {"o", scalar},
    {"x", zero, "a mask expansion"},
    {"nm", harmless},
    {"mn", harmless},
    {"ix", harmless},
    {"cl", harmless},
};
constexpr Place maskPlace{"mask", "mask", Kind::Masks, maskMembers};

bool masks(Judge& judge, const Json& json) {
    if (!json.is_array()) {
        return false;
    }
    std::string modes;
    for (const Json& mask : json) {
        judge.object(mask, maskPlace);
        const std::string mode = text(member(mask, "mode"));
        modes += mode == "n" ? "" : mode;
    }
    // Added ones alone; or one, what it has in common with others, and less the rest.
    std::size_t at = modes.find_first_not_of('a');
    if (at != std::string::npos && at <= 1) {
        at = std::min(modes.find_first_not_of('i', at), modes.size());
        at = modes.find_first_not_of('s', at);
    }
    if (at != std::string::npos) {
        judge.miss(Kind::Masks, "mask-order", "masks of mixed modes");
    }
    return true;
}

// Colours decide there what is visible.
bool mayChangeColour(const Json& json) {
    if (json.is_object() && json.contains("k") && member(json, "x").is_string()) {
        return true;
    }
    return json.is_structured() && std::any_of(json.begin(), json.end(), mayChangeColour);
}

void matte(Judge& judge, const Json& json) {
    const std::vector<Json>& layers = judge.layers;
    const std::size_t place = judge.at;
    if (!json.contains("tt") || isNumber(json["tt"], 0)) {
        return;
    }
    const Json* source = place > 0 ? &layers[place - 1] : nullptr;
    if (json.contains("tp")) {
        const auto found = std::find_if(layers.begin(), layers.end(),
                                        [&](const Json& each) { return member(each, "ind") == json["tp"]; });
        source = found == layers.end() ? nullptr : &*found;
    }
    if (source == nullptr || !isNumber(member(*source, "td"), 1)) {
        judge.miss(Kind::Mattes, "matte-source", "a matte without a layer that is marked as one");
        return;
    }
    if (member(*source, "hd") == Json(true)) {
        judge.miss(Kind::Mattes, "matte-hidden", "a hidden matte");
    }
    if (source->contains("tt") && !isNumber((*source)["tt"], 0)) {
        judge.miss(Kind::Mattes, "matte-matted", "a matte that has a matte itself");
    }
    const Json& effectsOfSource = member(*source, "ef");
    if (isNumber(json["tt"], 3) && (member(*source, "ty") == Json(0) || mayChangeColour(*source) ||
                                    (effectsOfSource.is_array() && !effectsOfSource.empty()))) {
        judge.miss(Kind::Mattes, "matte-colours", "a luma matte whose colours are not known");
    }
}

// ---- Effects --------------------------------------------------------------------------------------------

constexpr Name effectNames[] = {
    {"20", "a tint (effect)"},        {"21", "a fill (effect)"},
    {"22", "a stroke (effect)"},      {"23", "a tritone (effect)"},
    {"24", "levels (effect)"},        {"25", "a drop shadow (effect)"},
    {"26", "a radial wipe (effect)"}, {"27", "a displacement map (effect)"},
    {"28", "a matte (effect)"},       {"29", "a blur (effect)"},
    {"30", "a twirl (effect)"},       {"31", "a mesh warp (effect)"},
    {"32", "a wave (effect)"},        {"33", "a spherize (effect)"},
    {"34", "a puppet (effect)"},      {"35", "a transform (effect)"},
};

constexpr int inPlace[] = {5, 20, 21, 23};

bool effects(Judge& judge, const Json& json) {
    if (!json.is_array()) {
        return false;
    }
    for (const Json& effect : json) {
        const Json& type = member(effect, "ty");
        const Json& on = member(effect, "en");
        // Controls for expressions draw nothing; a tint, a fill and a tritone change colours alone.
        const bool staysInPlace =
            std::any_of(std::begin(inPlace), std::end(inPlace), [&](int each) { return isNumber(type, each); });
        if (staysInPlace || on == Json(0) || on == Json(false)) {
            continue;
        }
        const std::string code =
            type.is_number_integer() ? std::to_string(type.get<std::int64_t>()) : "unknown";
        judge.miss(Kind::Effects, "effect-" + code, nameIn(effectNames, code, "an unknown effect"));
    }
    return true;
}

bool styles(Judge& judge, const Json& json) {
    return json == Json::array() || judge.miss(Kind::Styles, "styles", "layer styles");
}

// ---- Text -----------------------------------------------------------------------------------------------

const Json& shell(Judge& judge) {
    if (judge.shell.is_null()) {
        judge.shell = Json::parse(judge.project.root().shell, nullptr, false);
    }
    return judge.shell;
}

constexpr Member glyphMembers[] = {{"ch", words}, {"size", number},   {"style", words},
                                   {"w", number}, {"fFamily", words}, {"data", harmless}};

bool isGlyph(const Json& json) {
    return json.is_object() && std::all_of(json.items().begin(), json.items().end(), [](const auto& each) {
               return std::any_of(std::begin(glyphMembers), std::end(glyphMembers),
                                  [&](const Member& known) { return known.name == each.key(); });
           });
}

std::vector<std::string> charactersOf(const std::string& words) {
    std::vector<std::string> characters;
    for (const char letter : words) {
        if ((static_cast<unsigned char>(letter) & 0xC0) == 0x80 && !characters.empty()) {
            characters.back() += letter;
        } else {
            characters.emplace_back(1, letter);
        }
    }
    return characters;
}

// Whether all characters of the words have a glyph of that font in the file.
bool hasGlyphs(Judge& judge, const std::string& name, const std::string& words) {
    const Json& fonts = member(member(shell(judge), "fonts"), "list");
    const auto font = std::find_if(fonts.begin(), fonts.end(),
                                   [&](const Json& each) { return member(each, "fName") == Json(name); });
    if (font == fonts.end()) {
        return false;
    }
    std::set<std::string> there;
    for (const Json& glyph : member(shell(judge), "chars")) {
        if (isGlyph(glyph) && member(glyph, "fFamily") == member(*font, "fFamily") &&
            member(glyph, "style") == member(*font, "fStyle")) {
            there.insert(text(member(glyph, "ch")));
        }
    }
    const std::vector<std::string> characters = charactersOf(words);
    return std::all_of(characters.begin(), characters.end(),
                       [&](const std::string& each) { return each == "\r" || there.contains(each); });
}

constexpr Member styleMembers[] = {
    {"s", number},  // size
    {"f", words},
    {"t",
     [](Judge&, const Json& value) {
         const std::string shown = text(value);
         return value.is_string() && std::none_of(shown.begin(), shown.end(), [](char each) {
                    return static_cast<unsigned char>(each) < ' ' && each != '\r';
                });
     },
     "text with unusual line breaks"},
    {"j", oneOf<0, 2>, "text set to both sides"},
    {"tr", number},
    {"lh", number},
    {"ls", number},
    {"fc", [](Judge&, const Json& value) { return isVector(value, 3); }},
    {"sc", [](Judge&, const Json& value) { return isVector(value, 3); }},
    {"sw", number},
    {"of", harmless},
    {"ca", [](Judge&, const Json& value) { return isNumber(value, 0); }, "text in small capitals"},
};
constexpr Place stylePlace{"text", "text", Kind::Text, styleMembers};

constexpr Member moreMembers[] = {{"g", whole}, {"a", point}};
constexpr Place morePlace{"text", "text's grouping", Kind::Text, moreMembers};

// A range of letters, which are changed in nothing, or only as spacing that is none.
bool changesNothing(const Json& range) {
    const Json& changes = member(range, "a");
    return changes.is_object() &&
           (changes.empty() || (changes.size() == 1 && changes.contains("t") &&
                                isNumber(member(changes["t"], "k"), 0) && !changes["t"].contains("x")));
}

constexpr Member textMembersOfLayer[] = {
    {"d",
     [](Judge& judge, const Json& documents) {
         for (const Json& key : member(documents, "k")) {
             const Json& style = member(key, "s");
             judge.object(style, stylePlace);
             const std::string font = text(member(style, "f"));
             if (member(style, "tr").is_number() && !isNumber(style["tr"], 0) &&
                 isNumber(member(style, "j"), 1)) {
                 judge.miss(Kind::Text, "text-spaced", "spaced text set to the middle");
             }
             if (!style.contains("fc")) {
                 judge.miss(Kind::Text, "text-outlined", "text without a fill");
             }
             if (!judge.fonts.contains(font) && !hasGlyphs(judge, font, text(member(style, "t")))) {
                 judge.miss(Kind::Text, "text-without-font", "text whose font is not given");
             }
         }
         return !documents.contains("x") && !documents.contains("sid");
     },
     "text that an expression sets"},
    {"p", [](Judge&, const Json& value) { return value.is_object() && value.empty(); }, "text on a path"},
    {"m", [](Judge& judge, const Json& value) { return judge.object(value, morePlace); }},
    {"a",
     [](Judge&, const Json& value) {
         return value.is_array() && std::all_of(value.begin(), value.end(), changesNothing);
     },
     "animated letters"},
};
constexpr Place textPlace{"text", "text", Kind::Text, textMembersOfLayer};

bool textData(Judge& judge, const Json& json) {
    if (!json.is_object() || !json.contains("d") || !json.contains("a") || !json.contains("m") ||
        !json.contains("p")) {
        return judge.miss(Kind::Text, "text-incomplete", "text that lacks something");
    }
    return judge.object(json, textPlace);
}

// ---- Pictures -------------------------------------------------------------------------------------------

constexpr Member pictureMembers[] = {{"id", harmless}, {"nm", harmless}, {"w", number},
                                     {"h", number},    {"p", words},     {"u", words},
                                     {"e", harmless},  {"t", words},     {"mn", harmless}};
constexpr Place picturePlace{"image", "picture", Kind::Images, pictureMembers};

void picture(Judge& judge, const std::string& reference) {
    const Json* asset = judge.project.pictureAsset(reference);
    if (asset == nullptr) {
        return;
    }
    judge.object(*asset, picturePlace);
    const std::string outer = model::outerPictureOf(*asset);
    const std::optional<std::string> content = !outer.empty()
                                                   ? std::optional(judge.project.pictureContent(outer))
                                                   : contentOf(text(member(*asset, "p")));
    const std::optional<model::Size> size = content ? sizeOfDrawn(*content) : std::nullopt;
    if (!size) {
        judge.miss(Kind::Images, "image-type", "a picture that is no plain PNG or JPEG");
    } else if (member(*asset, "w").is_number() && member(*asset, "h").is_number() &&
               std::abs(member(*asset, "w").get<double>() * size->height -
                        member(*asset, "h").get<double>() * size->width) >
                   std::max(size->width, size->height)) {
        judge.miss(Kind::Images, "image-shape", "a picture of another shape than its place");
    }
}

// ---- Layers ---------------------------------------------------------------------------------------------

bool timeRemap(Judge& judge, const Json& json) {
    return scalar(judge, json);
}

bool colourName(Judge&, const Json& value) {
    const std::string name = text(value);
    return name.size() == 7 && name[0] == '#' &&
           name.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
}

#define KESTRIN_LAYER                                                                                        \
    {"ty", whole}, {"nm", harmless}, {"mn", harmless}, {"ix", harmless}, {"ind", whole}, {"parent", whole},  \
        {"cl", harmless}, {"ln", harmless}, {"bounds", harmless}, {"np", harmless}, {"cix", harmless},       \
        {"ddd", off, "a place in space (3D)", Kind::ThreeD}, {"sr", number}, {"st", number}, {"ip", number}, \
        {"op", number}, {"ks", transform}, {"ao", off, "auto-orientation"}, {"bm", normal, "a blend mode"},  \
        {"hd", truth}, {"td", flag, "a matte of another form", Kind::Mattes},                                \
        {"tt", oneOf<0, 3>, "an inverted luma matte", Kind::Mattes}, {"tp", whole}, {"hasMask", truth},      \
        {"masksProperties", masks}, {"ef", effects}, {"sy", styles}, {"ct", flag}, {                         \
        "cp", off                                                                                            \
    }

constexpr Member useMembers[] = {
    KESTRIN_LAYER, {"refId", words}, {"w", whole}, {"h", whole}, {"tm", timeRemap}};
constexpr Member solidMembers[] = {
    KESTRIN_LAYER, {"sw", whole}, {"sh", whole}, {"sc", colourName, "a solid whose colour is no #rrggbb"}};
constexpr Member imageMembers[] = {KESTRIN_LAYER, {"refId", words}};
constexpr Member nullMembers[] = {KESTRIN_LAYER};
constexpr Member shapeMembers[] = {KESTRIN_LAYER, {"shapes", shapes}};
constexpr Member textMembers[] = {KESTRIN_LAYER, {"t", textData}};
#undef KESTRIN_LAYER

struct LayerKind {
    int type;
    Place place;
};
constexpr LayerKind layerKinds[] = {
    {0, {"layer", "layer", Kind::Other, useMembers}},   {1, {"layer", "layer", Kind::Other, solidMembers}},
    {2, {"layer", "layer", Kind::Other, imageMembers}}, {3, {"layer", "layer", Kind::Other, nullMembers}},
    {4, {"layer", "layer", Kind::Other, shapeMembers}}, {5, {"layer", "layer", Kind::Other, textMembers}},
};

void time(Judge& judge, const Json& json) {
    const Json& in = member(json, "ip");
    const Json& out = member(json, "op");
    if (in.is_number() && out.is_number()) {
        const double first = std::ceil(judge.fromFirstFrame(in.get<double>()));
        if (in.get<double>() < out.get<double>() && first >= judge.fromFirstFrame(out.get<double>())) {
            judge.miss(Kind::Time, "between-frames", "a time that lies between whole frames");
        }
    }
}

// The renderer applies it twice.
bool isPartlyClear(const Json& solid) {
    const Json& opacity = member(member(solid, "ks"), "o");
    const Json& k = member(opacity, "k");
    const Json& value = k.is_array() && k.size() == 1 ? k[0] : k;
    return !opacity.is_null() && !((isNumber(value, 0) || isNumber(value, 100)) && !opacity.contains("x"));
}

void layer(Judge& judge) {
    const Json& json = judge.layers[judge.at];
    const Json& type = member(json, "ty");
    if (type == Json(13)) {
        judge.miss(Kind::ThreeD, "camera", "the view of a camera");
        return;
    }
    if (type == Json(6)) {
        return;  // sound
    }
    const auto found = std::find_if(std::begin(layerKinds), std::end(layerKinds),
                                    [&](const LayerKind& each) { return type == Json(each.type); });
    if (found == std::end(layerKinds)) {
        judge.miss(Kind::Other, "layer-type", "a layer of an unknown kind");
        return;
    }
    judge.object(json, found->place);
    time(judge, json);
    matte(judge, json);
    if (found->type == 1 && isPartlyClear(json)) {
        judge.miss(Kind::Other, "solid-opacity", "a solid that is partly clear");
    }
    if (found->type == 2) {
        picture(judge, text(member(json, "refId")));
    }
    const Json& masksHere = member(json, "masksProperties");
    if (masksHere.is_array() && !masksHere.empty() && member(json, "hasMask") != Json(true)) {
        judge.miss(Kind::Masks, "mask-unmarked", "masks that it does not say it has");
    }
    if (found->type == 0 && !(json.contains("w") && json.contains("h"))) {
        judge.miss(Kind::Other, "use-without-size", "a composition shown without its size");
    }
}

// Compositions tell another time inside than outside.
bool runsOtherwise(const model::Project& project) {
    return std::any_of(project.items.begin(), project.items.end(), [](const model::ItemPtr& item) {
        return item->comp &&
               std::any_of(item->comp->layers.begin(), item->comp->layers.end(), [](const auto& each) {
                   return each->type == model::LayerType::Precomp &&
                          (each->startFrame != 0 || each->stretch != 1 || each->timeRemap.has_value());
               });
    });
}

}  // namespace

std::string_view nameOf(Kind kind) {
    constexpr std::string_view names[] = {"text",   "expressions", "effects", "styles", "3d",   "masks",
                                          "mattes", "shapes",      "images",  "time",   "other"};
    return names[static_cast<std::size_t>(kind)];
}

std::vector<Unseen> unseenIn(const model::Project& project, const model::Comp& comp,
                             const std::set<std::string>& fonts) {
    Judge judge{project, comp, fonts};
    judge.layers = layersOf(project, comp);
    judge.hasOwnTime = &comp != &project.root() && runsOtherwise(project);
    for (std::size_t i = 0; i < judge.layers.size(); ++i) {
        judge.at = i;
        judge.layer = comp.layers[i].get();
        layer(judge);
    }
    return std::move(judge.unseen);
}

}  // namespace headless::sight
