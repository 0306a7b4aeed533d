// What scripts can reach of the program around them. The engine turns these calls into the objects that
// scripts know (`app`, `app.project`, compositions, layers, preferences); the session implements them.

#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "model/Preferences.h"
#include "ui/Dialog.h"

namespace headless::script {

using ItemId = std::int32_t;
using LayerId = std::uint64_t;

struct ItemInfo {
    ItemId id = 0;
    std::string name;  // UTF-8
    bool isComp = false;
    int width = 0, height = 0;
    int layerCount = 0;  // compositions only
};

struct LayerInfo {
    std::string name;  // its own, else its source's
    int index = 0;     // from 0 = top
    std::optional<ItemId> source;
    bool hasSourceMember =
        true;                   // false on cameras and lights: `source`, `width`, `height` are undefined there
    int width = 0, height = 0;  // of the source
    std::optional<LayerId> parent;
    std::vector<std::string> maskNames;
};

// Thrown by a ScriptHost for a request that a script got wrong (an index out of range, a parent cycle). The
// engine makes a script exception of it.
struct ScriptRequestError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class ScriptHost {
 public:
    virtual ~ScriptHost() = default;

    // Items by their place in the project, from 0.
    virtual int itemCount() = 0;
    virtual ItemInfo itemAt(int index) = 0;
    virtual ItemInfo item(ItemId id) = 0;
    virtual std::optional<ItemId> activeItem() = 0;

    virtual LayerId layerAt(ItemId comp, int index) = 0;  // index from 0 = top; throws when out of range
    virtual std::vector<LayerId> selectedLayers(ItemId comp) = 0;  // in index order
    virtual LayerInfo layer(LayerId id) = 0;
    // The child keeps its place on screen. Throws on itself, a descendant, or another composition's layer.
    virtual void setParent(LayerId child, std::optional<LayerId> parent) = 0;

    virtual model::Preferences& preferences() = 0;
    virtual void savePreferences() = 0;    // to their file
    virtual void reloadPreferences() = 0;  // from their file, dropping what was not saved

    virtual void alert(const std::string& message, const std::string& title, bool errorIcon) = 0;
    virtual ui::Answerer& answerer() = 0;

    // A script opened a file of its own with the system's program. Nothing is started; this is the record.
    virtual void executed(const std::string& path, const std::string& content) = 0;
    // Folder that "~" stands for in a script's paths, and the only one that scripts may write below. Never a
    // person's own home folder.
    virtual std::string homeFolder() = 0;
};

}  // namespace headless::script
