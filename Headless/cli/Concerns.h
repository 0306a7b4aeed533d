// What speaks against a crop of a composition: what it would have to change and cannot, what is not drawn so
// that nobody can look whether it shifts, and what does not follow when the composition's content moves.

#pragma once

#include <string>
#include <vector>

#include "cli/Comps.h"
#include "cli/Unseen.h"

namespace headless::cli {

struct Concern : Named {
    enum class Weight {
        Forbids,  // a value from a slot: the crop would have to change it, or others may say something else
        Unseen,   // not drawn: a comparison does not see whether it shifts
        Stays,    // does not follow the crop; a comparison sees it
    };
    Weight weight = Weight::Unseen;
};

// `"Title" in "Card" has text without its font`
std::string sentence(const Concern& concern);

// Of crops of compositions of one project; asked before the first of them.
class Concerns {
 public:
    explicit Concerns(const model::Project& project)
        : project_(project), unseen_(project), uses_(usesIn(project)) {}

    // About what it shows at any depth, the layers that show it, what these are drawn with, and their children.
    // Each layer is named once for each code, the gravest first.
    std::vector<Concern> about(const model::Item& target);

 private:
    class Collector;
    struct Expressions {
        const model::Comp* comp;
        sight::Unseen unseen;
        std::string text;
    };
    const std::vector<Expressions>& expressions();

    const model::Project& project_;
    Unseen unseen_;
    Uses uses_;
    std::vector<Expressions> expressions_;  // that are not drawn, of the whole project
    bool expressionsKnown_ = false;
};

// On standard error; of very many the first.
void printWarnings(const std::vector<Concern>& concerns);

}  // namespace headless::cli
