// What of a project is not drawn as players do it, and what that touches.

#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "model/Project.h"
#include "sight/Sight.h"

namespace headless::cli {

// A layer of a composition that has something, with its names as the file has them.
struct Named {
    std::string kind, code;  // stable, for programs
    std::string comp, layer;
    std::string what;  // for people, to follow "has "
};

// `"Title" in "Card"`
std::string placeOf(const Named& named);
model::Json namedJson(const Named& named);

// Asks for each composition once.
class Unseen {
 public:
    explicit Unseen(const model::Project& project) : project_(project) {}

    const model::Project& project() const { return project_; }
    const std::vector<sight::Unseen>& in(const model::Comp& comp);
    Named named(const model::Comp& comp, const sight::Unseen& unseen) const;
    // Pairs of layers of which one is seen through the other: what is cut, and its matte.
    using Mattes = std::vector<std::pair<const model::Layer*, const model::Layer*>>;
    const Mattes& mattesIn(const model::Comp& comp);
    // That are drawn with the layer: those that it is a matte of, and its own.
    std::set<const model::Layer*> drawnWith(const model::Layer& layer);

 private:
    const model::Project& project_;
    std::map<const model::Comp*, std::vector<sight::Unseen>> unseen_;
    std::map<const model::Comp*, Mattes> mattes_;
};

// `words` is what --crop-unseen takes: kinds with commas between them, or "all". Throws Stop.
std::set<std::string> unseenKinds(const std::string& words);
// "text, expressions, ..."
std::string allUnseenKinds(const std::string& separator);

}  // namespace headless::cli
