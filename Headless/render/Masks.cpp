#include "render/Masks.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace headless::render {
namespace {

std::string modeOf(const Json& mask) {
    const Json& mode = memberOf(mask, "mode");
    return mode.is_string() ? mode.get<std::string>() : "a";
}

bool subtracts(const Json& mask) {
    return modeOf(mask) == "s";
}
bool takesAway(const Json& mask) {
    return subtracts(mask) || modeOf(mask) == "i" || modeOf(mask) == "d";
}

bool isOpaque(const Json& mask) {
    const Json& opacity = memberOf(mask, "o");
    return opacity.is_null() || memberOf(opacity, "k") == 100;
}

// What is covered, or with `inverted` what is left open, by the drawn layers.
struct Coverage {
    Layers layers;
    bool inverted = false;
};

// Sets of points from which mattes cut: a difference needs no plane without end to cut from.
class Algebra {
 public:
    explicit Algebra(const MaskTools& tools) : tools_(tools) {}

    static Coverage inverse(Coverage coverage) {
        coverage.inverted = !coverage.inverted;
        return coverage;
    }

    Coverage unite(Coverage one, Coverage other) const {
        if (one.inverted && other.inverted) {
            return {tools_.matted(std::move(one.layers), std::move(other.layers), Matte::Alpha), true};
        }
        if (one.inverted) std::swap(one, other);
        if (other.inverted) {
            return {tools_.matted(std::move(other.layers), std::move(one.layers), Matte::InvertedAlpha), true};
        }
        std::move(other.layers.begin(), other.layers.end(), std::back_inserter(one.layers));
        return one;
    }

    Coverage intersect(Coverage one, Coverage other) const {
        return inverse(unite(inverse(std::move(one)), inverse(std::move(other))));
    }

    Coverage differ(const Coverage& one, const Coverage& other) const {
        return unite(intersect(one, inverse(other)), intersect(inverse(one), other));
    }

 private:
    const MaskTools& tools_;
};

// The opacity of an inverted mask counts as full here.
Coverage coverageOf(const std::vector<const Json*>& masks, const MaskTools& tools) {
    const Algebra algebra(tools);
    Coverage result;
    result.inverted = takesAway(*masks.front());  // then the whole layer is there to take from
    for (const Json* mask : masks) {
        const bool inverted = isSet(*mask, "inv");
        Coverage drawn{{tools.draw(*mask, inverted ? Json() : memberOf(*mask, "o"))}, inverted};
        if (subtracts(*mask)) {
            result = algebra.intersect(std::move(result), Algebra::inverse(std::move(drawn)));
        } else if (takesAway(*mask)) {
            result = algebra.intersect(std::move(result), std::move(drawn));
        } else if (modeOf(*mask) == "f") {
            result = algebra.differ(result, drawn);
        } else {
            result = algebra.unite(std::move(result), std::move(drawn));
        }
    }
    return result;
}

// Where the mask is not, as strongly as it says.
Layers outside(Layers layers, const Json& mask, const MaskTools& tools) {
    if (!isOpaque(mask)) layers = tools.faded(std::move(layers), memberOf(mask, "o"));
    return tools.matted(std::move(layers), {tools.draw(mask, nullptr)}, Matte::InvertedAlpha);
}

Layers throughOne(Layers layers, const Json& mask, const MaskTools& tools) {
    const bool inverted = isSet(mask, "inv");
    if (inverted && !subtracts(mask)) return outside(std::move(layers), mask, tools);
    const Matte matte = subtracts(mask) && !inverted ? Matte::InvertedAlpha : Matte::Alpha;
    return tools.matted(std::move(layers), {tools.draw(mask, inverted ? Json() : memberOf(mask, "o"))}, matte);
}

}  // namespace

std::vector<const Json*> masksOf(const Json& layer) {
    std::vector<const Json*> result;
    const Json& masks = memberOf(layer, "masksProperties");
    if (!masks.is_array()) return result;
    for (const Json& mask : masks) {
        if (modeOf(mask) != "n" && memberOf(mask, "pt").is_object()) result.push_back(&mask);
    }
    return result;
}

bool isPlain(const std::vector<const Json*>& masks) {
    const Json& mask = *masks.front();
    return masks.size() == 1 && !subtracts(mask) && !isSet(mask, "inv") && isOpaque(mask);
}

Layers throughMasks(Layers layers, const std::vector<const Json*>& masks, const MaskTools& tools) {
    // After the last mask that adds, each takes away from what is left, which one matte after the other does.
    const auto rest =
        std::find_if(masks.rbegin(), masks.rend(), [](const Json* mask) { return !takesAway(*mask); }).base();
    if (rest - masks.begin() == 1) {
        layers = throughOne(std::move(layers), *masks.front(), tools);
    } else if (rest != masks.begin()) {
        Coverage coverage = coverageOf({masks.begin(), rest}, tools);
        layers = tools.matted(std::move(layers), std::move(coverage.layers),
                              coverage.inverted ? Matte::InvertedAlpha : Matte::Alpha);
    }
    for (auto mask = rest; mask != masks.end(); ++mask) {
        layers = throughOne(std::move(layers), **mask, tools);
    }
    return layers;
}

}  // namespace headless::render
