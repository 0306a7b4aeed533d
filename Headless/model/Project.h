// The project: a Lottie document as plain data.
//
// Members that the host works with are read into fields; everything else stays in the file's text, which
// layers point into and which is written back as it was. The root and every asset with layers are
// compositions. What the format does not store (current time, resolution, pixel aspect ratio, selection)
// belongs to the session and is not written.

#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "model/History.h"
#include "model/Json.h"
#include "model/Slots.h"
#include "model/Stream.h"

namespace headless::model {

using ItemId = std::int32_t;
using LayerId = std::uint32_t;

struct Comp;
struct Item;

// A file that is no project, named with the place in it ("layers[3].parent: ...").
struct ProjectError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Size {
    int width = 0, height = 0;
    bool operator==(const Size&) const = default;
};

// Width of a pixel over its height.
struct PixelAspect {
    std::int32_t numerator = 1;
    std::uint32_t denominator = 1;
    double value() const { return static_cast<double>(numerator) / denominator; }
    bool operator==(const PixelAspect&) const = default;
};

enum class LayerType : int {
    Precomp = 0,
    Solid = 1,
    Image = 2,
    Null = 3,
    Shape = 4,
    Text = 5,
    Audio = 6,
    Camera = 13,
    Light = 14,
};

// What of a layer the file and the host have in common; compared to see whether a layer has changed.
struct LayerData {
    std::string name;       // its own; may be empty
    std::string reference;  // asset id of the source
    LayerType type = LayerType::Shape;
    std::optional<int> index;  // the file's identification inside the composition
    bool threeD = false;
    bool hidden = false;
    bool collapsed = false;
    double inFrame = 0, outFrame = 0;  // frames of the composition; the layer shows in [in, out)
    double startFrame = 0;
    double stretch = 1;
    Size useSize;  // precomps and solids: as the layer states it
    PointStream anchor, position;
    PointStream scale{.value = {100, 100, 100}, .keys = {}, .axes = {}, .dimensions = 3};
    ScalarStream rotation;         // degrees
    Rare<ScalarStream> timeRemap;  // seconds of the source

    bool operator==(const LayerData&) const = default;
};

struct Mask {
    std::string name;
    std::string mode = "a";
    bool inverted = false;
    PathStream path;
    std::size_t fileIndex = 0;  // place in the file's list

    bool operator==(const Mask&) const = default;
};

using MaskList = RareList<std::shared_ptr<Mask>>;

struct Layer : LayerData {
    LayerId id = 0;
    mutable std::uint32_t lastPlace = 0;  // in the stack, when it was last asked for
    Comp* comp = nullptr;                 // while it is in one
    Item* source = nullptr;
    Layer* parent = nullptr;
    RareList<Layer*> children;
    MaskList masks;

    std::string_view text;  // in the file; empty for a layer that came later
    bool touched = false;   // something may differ from the text
    SlottedParts slotted;
};

using LayerPtr = std::shared_ptr<Layer>;

struct Item {
    enum class Kind { Comp, Image, Solid, Null, Audio };

    ItemId id = 0;
    Kind kind = Kind::Comp;
    std::string name;
    Size size;
    std::unique_ptr<Comp> comp;  // of a composition
    bool isSlotted = false;      // a picture that a slot may replace
};

using ItemPtr = std::shared_ptr<Item>;

struct SelectedThing {
    LayerId layer = 0;
    int mask = -1;  // -1: the layer itself
    bool operator==(const SelectedThing&) const = default;
};

struct Comp {
    Item* item = nullptr;
    std::string assetId;  // empty for the root
    std::string shell;    // JSON: its members without the layers, whose place is kept
    double frameRate = 0;
    double firstFrame = 0, endFrame = 0;  // the range that is shown, in frames of the root's rate
    std::vector<LayerPtr> layers;         // topmost first
    std::size_t layersInText = 0;
    bool nameGiven = false;  // the name was set by the host and is to be written

    // Session state.
    PixelAspect pixelAspect;
    double currentFrame = 0;  // from firstFrame
    int downsampleX = 1, downsampleY = 1;
    std::vector<SelectedThing> selection;

    double frameCount() const { return endFrame - firstFrame; }
};

// Pictures that come with the document, such as those beside it in an archive. A picture is named by folder and
// file name together, as its asset states them.
class PictureStore {
 public:
    virtual ~PictureStore() = default;
    // Nothing where there is no such picture.
    virtual std::optional<std::uint64_t> sizeOf(const std::string& picture) const = 0;
    // Throws ProjectError.
    virtual std::string contentOf(const std::string& picture) const = 0;
};

// Pictures outside the file are taken from `pictures` or else from `imageFolder`, and from nowhere beside.
struct ReadOptions {
    std::string name;  // of the root where the file has none
    std::optional<std::filesystem::path> imageFolder;
    std::shared_ptr<const PictureStore> pictures = nullptr;
};

class Project {
 public:
    // Checks everything that the renderer and the host rely on. Throws ProjectError.
    static std::unique_ptr<Project> read(std::string text, const ReadOptions& options = {});
    // The same for a file; the message names it.
    static std::unique_ptr<Project> open(const std::filesystem::path& file, const ReadOptions& options = {});

    // The project as it would be opened again. Its ids are its own.
    std::unique_ptr<Project> copy() const;

    // The whole document. Equal to the text that was read while nothing differs from it. Throws ProjectError
    // where a number has become so large that it could not be read again.
    std::string write() const;
    bool differsFromText() const;

    // A document that shows one composition from its first frame to its last: the composition is the root, in
    // the top left corner of a canvas at least as large; what it does not reach is left out, and pictures are
    // inside.
    std::string documentOf(const Comp& comp, Size canvas) const;

    // The pictures that the document takes from elsewhere.
    std::vector<std::string> outerPictures() const;
    // Throws ProjectError.
    std::string pictureContent(const std::string& picture) const;
    // Whether both have the same pictures, inside and from elsewhere. Throws ProjectError.
    bool samePictures(const Project& other) const;

    // What the asset of that name says, where it is a picture; null where there is none.
    const Json* pictureAsset(const std::string& id) const;

    // A layer's object as it would be written now, but with what the slots say in its places.
    Json layerJson(const Layer& layer) const;

    Comp& root() const { return *items.front()->comp; }
    double frameRate() const { return root().frameRate; }
    Item* item(ItemId id) const;     // null when there is none
    Layer* layer(LayerId id) const;  // null when it is gone
    // Place of a layer in its composition's stack, 0 = topmost.
    std::size_t indexOf(const Layer& layer) const;
    std::size_t indexOf(const Item& item) const;
    Item* itemAfter(const Item& item) const;  // null behind the last
    // Own name, else the source's.
    std::string nameOf(const Layer& layer) const;

    std::deque<ItemPtr> items;  // in project order, which is that of their ids; the root first
    History history;

    // For the edits of Edit.h, which keep them true.
    LayerId newLayerId(Layer* layer);
    void setAlive(LayerId id, Layer* layer);
    ItemId newItemId() { return nextItemId_++; }
    std::string newAssetId(const std::string& wish) const;

 private:
    friend class Reader;
    // Of the file, in order.
    struct Asset {
        ItemId comp = 0;  // a composition's item, else:
        Json json;
    };

    void writeLayers(const Comp& comp, std::string& out) const;
    // As players see them: with the slots' values.
    void writeSeenLayers(const Comp& comp, std::string& out) const;
    void writeComp(const Comp& comp, std::string& out) const;
    void writeAssets(std::string& out) const;

    // An image asset as the renderer takes it: with its picture inside.
    Json withPicture(const Json& asset) const;

    bool isAsText(const Layer& layer) const;
    std::string textOf(const Layer& layer) const;

    std::optional<std::filesystem::path> imageFolder_;
    std::shared_ptr<const PictureStore> pictures_;
    std::string text_;
    Size sizeInText_;  // of the root
    std::vector<Asset> assets_;
    Slots slots_;
    std::vector<Layer*> layers_{nullptr};  // by id, from 1; null where a layer is gone
    ItemId nextItemId_ = 1;
    ItemId firstIdBeyondText_ = 1;
    std::size_t itemsInText_ = 0;
};

// The id of an asset object as text; empty where it has none.
std::string assetIdOf(const Json& asset);
// The picture that an asset takes from elsewhere; empty where it takes none.
std::string outerPictureOf(const Json& asset);

// What a file holds. Throws ProjectError.
std::string bytesOf(const std::filesystem::path& file);

}  // namespace headless::model
