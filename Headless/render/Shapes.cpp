#include "render/Shapes.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace headless::render {
namespace {

// Deeper groups than a person makes; guards the stack, here and in the worker.
constexpr int deepestGroup = 100;

using MemberTable = std::map<std::string, std::vector<Member>>;

const MemberTable& memberTable() {
    static const std::vector<Member> transform{
        {"a", Kind::Point}, {"p", Kind::Point}, {"s", Kind::Point}, {"r", Kind::Scalar}, {"o", Kind::Scalar}};
    static const std::vector<Member> stroke{
        {"w", Kind::Scalar}, {"lc", Kind::Integer}, {"lj", Kind::Integer}, {"ml", Kind::Number}};
    static const std::vector<Member> gradient{{"t", Kind::Integer}, {"o", Kind::Scalar}, {"s", Kind::Point},
                                              {"e", Kind::Point},   {"h", Kind::Scalar}, {"a", Kind::Scalar}};
    static const auto joined = [](std::vector<Member> first, const std::vector<Member>& second) {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    };
    static const MemberTable table{
        {"gr", {}},
        {"tr", transform},
        {"sh", {{"ks", Kind::Path}, {"d", Kind::Integer}}},
        {"rc", {{"p", Kind::Point}, {"s", Kind::Point}, {"r", Kind::Scalar}, {"d", Kind::Integer}}},
        {"el", {{"p", Kind::Point}, {"s", Kind::Point}, {"d", Kind::Integer}}},
        {"sr",
         {{"p", Kind::Point},
          {"pt", Kind::Scalar},
          {"ir", Kind::Scalar},
          {"is", Kind::Scalar},
          {"or", Kind::Scalar},
          {"os", Kind::Scalar},
          {"r", Kind::Scalar},
          {"sy", Kind::Integer},
          {"d", Kind::Integer}}},
        {"fl", {{"c", Kind::Colour}, {"o", Kind::Scalar}, {"r", Kind::Integer}, {"fillEnabled", Kind::Flag}}},
        {"st", joined({{"c", Kind::Colour}, {"o", Kind::Scalar}, {"fillEnabled", Kind::Flag}}, stroke)},
        {"gf", joined({{"r", Kind::Integer}}, gradient)},
        {"gs", joined(stroke, gradient)},
        {"tm", {{"s", Kind::Scalar}, {"e", Kind::Scalar}, {"o", Kind::Scalar}, {"m", Kind::Integer}}},
        {"rp", {{"c", Kind::Scalar}, {"o", Kind::Scalar}}},
    };
    return table;
}

std::string typeOf(const Json& item) {
    const Json& type = memberOf(item, "ty");
    return type.is_string() ? type.get<std::string>() : std::string();
}

// Lengths first, the offset last: without one the renderer takes the last length for it.
Json dashes(const Json& list, const Clock& clock) {
    Json result = Json::array();
    Json offset{{"v", {{"k", 0}}}};
    for (const Json& entry : list) {
        Json written;
        rewriteMembers(written, entry, {{"v", Kind::Scalar}}, clock);
        if (written.is_null()) continue;
        if (memberOf(entry, "n") == "o") {
            offset = std::move(written);
        } else {
            result.push_back(std::move(written));
        }
    }
    if (!result.empty()) result.push_back(std::move(offset));
    return result;
}

// Older files state it beside the path.
void closePaths(Json& shape) {
    if (!shape.contains("ks")) return;
    Json& content = shape["ks"]["k"];
    if (content.is_object()) {
        content["c"] = true;
        return;
    }
    for (Json& key : content) {
        for (const char* end : {"s", "e"}) key[end][0]["c"] = true;
    }
}

// The renderer turns a star by its rotation twice.
void halveRotation(Json& star) {
    if (!star.contains("r")) return;
    Json& rotation = star["r"]["k"];
    if (rotation.is_number()) {
        rotation = rotation.get<double>() / 2;
        return;
    }
    for (Json& key : rotation) {
        for (const char* end : {"s", "e"}) key[end][0] = key[end][0].get<double>() / 2;
    }
}

Json rewrittenItems(const Json& items, const Clock& clock, int depth);

Json rewrittenItem(const Json& item, const std::string& type, const Clock& clock, int depth) {
    // What stands before the type is not read.
    Json result{{"ty", type}};
    reserve(result, 16);
    rewriteMembers(result, item, memberTable().at(type), clock);
    if (type == "gr") result["it"] = rewrittenItems(memberOf(item, "it"), clock, depth + 1);
    if (type == "sr") halveRotation(result);
    if (type == "sh" && isSet(item, "closed")) closePaths(result);
    const bool isStroke = type == "st" || type == "gs";
    if (const Json& list = memberOf(item, "d"); isStroke && list.is_array()) result["d"] = dashes(list, clock);
    if (const Json& gradient = memberOf(item, "g"); gradient.is_object()) {
        rewriteMembers(result["g"], gradient, {{"p", Kind::Integer}, {"k", Kind::Stops}}, clock);
    }
    if (type == "rp") {
        Json& transform = result["tr"] = Json::object();
        rewriteMembers(transform, memberOf(item, "tr"), memberTable().at("tr"), clock);
        rewriteMembers(transform, memberOf(item, "tr"), {{"so", Kind::Scalar}, {"eo", Kind::Scalar}}, clock);
    }
    return result;
}

Json rewrittenItems(const Json& items, const Clock& clock, int depth) {
    Json result = Json::array();
    if (!items.is_array() || depth > deepestGroup) return result;
    Json transform{{"ty", "tr"}};
    for (const Json& item : items) {
        const std::string type = typeOf(item);
        if (!memberTable().contains(type)) continue;
        if (type == "tr") {
            transform = rewrittenItem(item, type, clock, depth);
        } else if (!isSet(item, "hd")) {
            result.push_back(rewrittenItem(item, type, clock, depth));
        }
    }
    // A group moves only with a transform, which must come last.
    if (depth > 0) result.push_back(std::move(transform));
    return result;
}

}  // namespace

Json rewrittenShapes(const Json& items, const Clock& clock) {
    return rewrittenItems(items, clock, 0);
}

Json rewrittenTransform(const Json& transform, Space space, const Clock& clock) {
    Json result = Json::object();
    reserve(result, 8);
    rewriteMembers(result, transform, {{"a", Kind::Point}, {"s", Kind::Point}, {"o", Kind::Scalar}}, clock);
    Json position = rewrittenPosition(memberOf(transform, "p"), clock);
    if (!position.is_null()) result["p"] = std::move(position);
    // A layer may state its flat rotation under either name, the renderer reads one.
    const char* turn = space == Space::Deep ? "rz" : "r";
    for (const char* name : {"r", "rz"}) {
        Json rotation = rewritten(memberOf(transform, name), Kind::Scalar, clock);
        if (!rotation.is_null()) result[turn] = std::move(rotation);
    }
    if (space == Space::Deep) {
        rewriteMembers(result, transform, {{"rx", Kind::Scalar}, {"ry", Kind::Scalar}}, clock);
    }
    return result;
}

}  // namespace headless::render
