// The layers of one composition, put in words that the renderer draws right.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "model/Document.h"
#include "render/Masks.h"
#include "render/Property.h"
#include "render/Shapes.h"

namespace headless::render {

// The assets of the rewritten document, as text: those of the file under names of our own, and compositions
// that rewriting adds.
class Library {
 public:
    explicit Library(double framesPerSecond) : framesPerSecond_(framesPerSecond) {}

    void rename(const std::string& id);
    std::optional<std::string> nameOf(const std::string& id) const;
    void put(const Json& asset) { append(asset.dump()); }
    void put(const std::string& name, const std::string& layers);
    std::string add(const std::string& layers);  // returns its name
    // All assets, between two texts.
    std::string take(const std::string& head, const std::string& tail);

    // Of a remapped time in seconds. The renderer reads times only up to the end of the document.
    double stepAt(double seconds);
    double lastStep() const { return lastStep_; }

 private:
    double framesPerSecond_;
    double lastStep_ = 0;
    std::map<std::string, std::string> names_;
    void append(const std::string& asset);

    std::string assets_;  // with commas between
    std::size_t added_ = 0;
};

class Composition {
 public:
    // All three are borrowed.
    Composition(const model::LayerList& layers, const Clock& clock, Library& library);

    // The list of layers, as text.
    std::string drawn();

 private:
    // A list that is being written, and the parents that its layers need.
    struct List {
        std::string text = "[";
        std::set<std::size_t> parents;
        std::vector<std::size_t> missing;  // of these: those that are not in the list yet
    };

    // What a layer is to the others, these by their places in the list.
    struct Role {
        std::int32_t parent = none;
        std::int32_t matteSource = none;
        std::optional<Matte> matte;
        bool isDrawn = true;  // for itself
    };
    static constexpr std::int32_t none = -1;

    void findRoles();
    Json placed(std::size_t index, const Json& layer, int type, bool withOpacity) const;
    Json content(std::size_t index, const Json& layer) const;  // a null where there is nothing to draw
    Json timeRemap(const Json& layer) const;
    Layers masked(std::size_t index);
    Layers matted(std::size_t index);
    Layers matted(Layers target, Layers source, Matte matte);

    Json united(Layers layers);
    Json endlessUse(Layers layers);
    static void write(List& list, const Json& layer);
    std::string withParents(List list) const;

    const model::LayerList& layers_;
    const Clock& clock_;
    Library& library_;
    std::vector<Role> roles_;
    std::map<std::int32_t, Layers> sources_;
    std::set<std::int32_t> open_;  // matte sources that are being drawn: a circle ends there
};

}  // namespace headless::render
