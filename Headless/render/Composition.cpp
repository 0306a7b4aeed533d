#include "render/Composition.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "model/LayerJson.h"

namespace headless::render {
namespace {

enum LayerType { precomp = 0, solid = 1, image = 2, null = 3, shape = 4 };

bool isEndlessUse(const Layers& layers) {
    return layers.size() == 1 && layers[0]["ty"] == precomp && layers[0]["ip"] == -Clock::ever &&
           layers[0]["op"] == Clock::ever;
}

bool isInverted(Matte matte) {
    return matte == Matte::InvertedAlpha || matte == Matte::InvertedLuma;
}

}  // namespace

void Library::rename(const std::string& id) {
    names_.emplace(id, "a" + std::to_string(names_.size()));
}

std::optional<std::string> Library::nameOf(const std::string& id) const {
    const auto found = names_.find(id);
    if (found == names_.end()) return std::nullopt;
    return found->second;
}

void Library::append(const std::string& asset) {
    if (!assets_.empty()) assets_ += ',';
    assets_ += asset;
}

void Library::put(const std::string& name, const std::string& layers) {
    // Growing step by step would take the place of a large list three times.
    const std::size_t length = assets_.size() + name.size() + layers.size() + 32;
    if (length > assets_.capacity()) assets_.reserve(std::max(length, 2 * assets_.capacity()));
    append(R"({"id":")" + name + R"(","layers":)");
    assets_ += layers;
    assets_ += '}';
}

std::string Library::add(const std::string& layers) {
    std::string name = "w" + std::to_string(added_++);
    put(name, layers);
    return name;
}

std::string Library::take(const std::string& head, const std::string& tail) {
    std::string text;
    text.reserve(head.size() + assets_.size() + tail.size());
    text += head;
    text += assets_;
    text += tail;
    std::string().swap(assets_);  // assigning would keep its memory
    return text;
}

double Library::stepAt(double seconds) {
    // The renderer cuts a remapped time off to whole steps; a little more keeps whole steps what they are.
    const double step = Clock().step(seconds * framesPerSecond_) + 0.05;
    lastStep_ = std::max(lastStep_, step);
    return step;
}

Composition::Composition(const model::LayerList& layers, const Clock& clock, Library& library)
    : layers_(layers), clock_(clock), library_(library), roles_(layers.count) {
    findRoles();
}

void Composition::findRoles() {
    std::vector<model::LayerRole> stated;
    std::unordered_map<int, std::int32_t> places;  // of the first with each number
    for (std::size_t index = 0; index < layers_.count; ++index) {
        stated.push_back(layers_.role(index));
        if (stated.back().index) places.emplace(*stated.back().index, static_cast<std::int32_t>(index));
    }
    for (std::int32_t index = 0; index < std::ssize(stated); ++index) {
        const auto placeOf = [&](int number) {
            const auto found = places.find(number);
            return found == places.end() || found->second == index ? none : found->second;
        };
        const model::LayerRole& layer = stated[index];
        Role& role = roles_[index];
        role.matte = layer.matte;
        if (layer.parent) role.parent = placeOf(*layer.parent);
        if (layer.matte) role.matteSource = layer.matteSource ? placeOf(*layer.matteSource) : index - 1;
        // A matte source is drawn for its target only; named by number it may be a layer like others.
        if (layer.hidden || layer.isMatteSource) role.isDrawn = false;
        if (layer.matte && !layer.matteSource && index > 0) roles_[index - 1].isDrawn = false;
    }
}

std::string Composition::drawn() {
    List list;
    for (std::size_t index = 0; index < roles_.size(); ++index) {
        if (!roles_[index].isDrawn) continue;
        for (const Json& layer : matted(index)) write(list, layer);
    }
    return withParents(std::move(list));
}

// A layer of that type in the place of layer `index`.
Json Composition::placed(std::size_t index, const Json& layer, int type, bool withOpacity) const {
    const bool deep = isSet(layer, "ddd");
    // `ddd` decides how the renderer reads `ks`, and must be there and come first.
    Json result{{"ddd", deep ? 1 : 0}, {"ty", type}, {"ip", -Clock::ever}, {"op", Clock::ever}, {"st", 0}};
    reserve(result, 16);
    if (const std::int32_t parent = roles_[index].parent; parent != none) result["parent"] = parent;
    if (isSet(layer, "ao")) result["ao"] = 1;
    result["ks"] = rewrittenTransform(memberOf(layer, "ks"), deep ? Space::Deep : Space::Flat, clock_);
    if (!withOpacity) result["ks"].erase("o");
    return result;
}

Json Composition::content(std::size_t index, const Json& layer) const {
    const int type = static_cast<int>(std::clamp(numberOr(layer, "ty", null), -1.0, 99.0));
    if (type != precomp && type != solid && type != image && type != shape) return nullptr;

    Json result = placed(index, layer, type, true);
    result["ip"] = clock_.firstStepFrom(numberOr(layer, "ip", -Clock::ever));
    result["op"] = clock_.firstStepFrom(numberOr(layer, "op", Clock::ever));
    if (type == precomp || type == image) {
        const auto name = library_.nameOf(model::idAt(layer, "refId"));
        if (!name) return nullptr;
        result["refId"] = *name;
    }
    if (type == precomp) {
        rewriteMembers(result, layer, {{"w", Kind::Integer}, {"h", Kind::Integer}}, clock_);
        if (memberOf(layer, "tm").is_object()) {
            result["tm"] = timeRemap(layer);
        } else {
            result["st"] = clock_.wholeStep(numberOr(layer, "st", 0));
            const double stretch = numberOr(layer, "sr", 1);
            if (stretch != 0) result["sr"] = stretch;
        }
    } else if (type == solid) {
        rewriteMembers(result, layer, {{"sw", Kind::Integer}, {"sh", Kind::Integer}}, clock_);
        if (const Json& colour = memberOf(layer, "sc"); colour.is_string()) result["sc"] = colour;
    } else if (type == shape) {
        result["shapes"] = rewrittenShapes(memberOf(layer, "shapes"), clock_);
    }
    return result;
}

// The document's second is one step, so that no rate rounds a time. A time that does not change must be keyed
// to count.
Json Composition::timeRemap(const Json& layer) const {
    const double out = numberOr(layer, "op", Clock::ever) * Clock::stepsPerFrame;
    const auto convert = [&](Json& seconds) {
        double step = library_.stepAt(seconds.get<double>());
        // The end of the layer, shown by name, is its last moment.
        if (std::abs(step - out) < 0.1) step -= 1;
        seconds = step;
    };
    Json remap = rewritten(memberOf(layer, "tm"), Kind::Scalar, clock_);
    if (remap.is_null()) remap = {{"k", 0}};
    if (remap["k"].is_number()) {
        const Json value = Json::array({remap["k"]});
        remap["k"] = Json::array({{{"t", 0}, {"s", value}, {"e", value}, {"h", 1}}});
    }
    for (Json& key : remap["k"]) {
        convert(key["s"][0]);
        convert(key["e"][0]);
    }
    return remap;
}

Layers Composition::masked(std::size_t index) {
    const Json original = layers_.json(index);
    Json layer = content(index, original);
    if (layer.is_null()) return {};
    const std::vector<const Json*> masks = masksOf(original);
    if (masks.empty()) return {std::move(layer)};
    if (isPlain(masks)) {
        Json mask{{"mode", "a"}};
        rewriteMembers(mask, *masks.front(), {{"pt", Kind::Path}}, clock_);
        layer["hasMask"] = true;
        layer["masksProperties"] = Json::array({std::move(mask)});
        return {std::move(layer)};
    }

    const MaskTools tools{
        .draw =
            [&](const Json& mask, const Json& opacity) {
                Json drawing = placed(index, original, shape, false);
                const Json area{{"ty", "sh"}, {"ks", rewritten(memberOf(mask, "pt"), Kind::Path, clock_)}};
                Json fill{{"ty", "fl"}};
                rewriteMembers(fill, {{"o", opacity}}, {{"o", Kind::Scalar}}, clock_);
                drawing["shapes"] = Json::array({area, std::move(fill)});
                return drawing;
            },
        .matted = [&](Layers target, Layers source,
                      Matte matte) { return matted(std::move(target), std::move(source), matte); },
        .faded =
            [&](Layers faded, const Json& opacity) {
                Json result = endlessUse(std::move(faded));
                rewriteMembers(result["ks"], {{"o", opacity}}, {{"o", Kind::Scalar}}, clock_);
                return Layers{std::move(result)};
            },
    };
    return throughMasks({std::move(layer)}, masks, tools);
}

Layers Composition::matted(std::size_t index) {
    const Role& role = roles_[index];
    if (role.matteSource == none || open_.contains(role.matteSource)) return masked(index);
    if (!sources_.contains(role.matteSource)) {
        open_.insert(role.matteSource);
        Layers layers = matted(static_cast<std::size_t>(role.matteSource));
        open_.erase(role.matteSource);
        // Written once, shown to each target.
        if (!layers.empty()) layers = {endlessUse(std::move(layers))};
        sources_[role.matteSource] = std::move(layers);
    }
    return matted(masked(index), sources_[role.matteSource], *role.matte);
}

// A target with a single paint would vanish, an inverted matte vanishes outside its source's time, and the
// renderer knows only a matte directly above. So both become compositions. They are visible at the same times,
// because one that is updated and not drawn shows an old frame later.
Layers Composition::matted(Layers target, Layers source, Matte matte) {
    if (target.empty()) return {};
    if (source.empty()) return isInverted(matte) ? target : Layers();
    Json seen = united(std::move(target));
    seen["tt"] = static_cast<int>(matte);
    Json mask = isEndlessUse(source) ? std::move(source.front()) : endlessUse(std::move(source));
    mask["ip"] = seen["ip"];
    mask["op"] = seen["op"];
    return {std::move(mask), std::move(seen)};
}

// One layer that shows them all.
Json Composition::united(Layers layers) {
    if (layers.size() == 1 && layers.front()["ty"] == precomp) return std::move(layers.front());
    int in = Clock::ever;
    int out = -Clock::ever;
    for (const Json& layer : layers) {
        in = std::min(in, layer["ip"].get<int>());
        out = std::max(out, layer["op"].get<int>());
    }
    Json result = endlessUse(std::move(layers));
    result["ip"] = in;
    result["op"] = out;
    return result;
}

Json Composition::endlessUse(Layers layers) {
    List list;
    for (const Json& layer : layers) write(list, layer);
    return {{"ddd", 0},
            {"ty", precomp},
            {"refId", library_.add(withParents(std::move(list)))},
            {"ip", -Clock::ever},
            {"op", Clock::ever},
            {"st", 0},
            {"ks", Json::object()}};
}

void Composition::write(List& list, const Json& layer) {
    if (list.text.size() > 1) list.text += ',';
    list.text += layer.dump();
    const auto parent = layer.find("parent");
    if (parent == layer.end()) return;
    const auto index = parent->get<std::size_t>();
    if (list.parents.insert(index).second) list.missing.push_back(index);
}

// Parents only move their children here, whatever else is drawn of them and however.
std::string Composition::withParents(List list) const {
    for (std::size_t i = 0; i < list.missing.size(); ++i) {
        const std::size_t index = list.missing[i];
        Json holder = placed(index, layers_.json(index), null, false);
        holder["ind"] = index;
        write(list, holder);
    }
    return std::move(list.text) + ']';
}

}  // namespace headless::render
