#include "render/Normalise.h"

#include <algorithm>
#include <cmath>

#include "render/Composition.h"

namespace headless::render {
namespace {

constexpr const char* sceneName = "scene";

// The renderer would read other paths from disk; pictures come inside the document or not at all.
Json imageAsset(const Json& asset, const std::string& name) {
    Json result{{"id", name}, {"u", ""}};
    const Json& picture = memberOf(asset, "p");
    if (!picture.is_string() || !picture.get_ref<const std::string&>().starts_with("data:")) return result;
    rewriteMembers(result, asset, {{"w", Kind::Integer}, {"h", Kind::Integer}}, Clock());
    result["p"] = picture;
    result["e"] = 1;
    return result;
}

}  // namespace

std::string normalise(const model::Document& document, const Scene& scene) {
    Library library(document.frameRate);
    for (const auto& [id, layers] : document.compositions) library.rename(id);
    for (const auto& [id, image] : document.images) library.rename(id);
    const Clock ownClock;
    for (const auto& [id, layers] : document.compositions) {
        const std::string name = library.nameOf(id).value();
        library.put(name, Composition(layers, ownClock, library).drawn());
    }
    for (const auto& [id, image] : document.images) library.put(imageAsset(image, library.nameOf(id).value()));
    const Clock clock(scene.firstFrame);
    library.put(sceneName, Composition(document.layers, clock, library).drawn());

    // The scene as a whole: from its frames to steps, its first frame to 0, clipped where the canvas is larger.
    const int frames = std::max(1, static_cast<int>(std::ceil(scene.endFrame - scene.firstFrame)));
    Json use{{"ddd", 0},     {"ty", 0}, {"refId", sceneName},  {"sr", 1.0 / Clock::stepsPerFrame}, {"ip", 0},
             {"op", frames}, {"st", 0}, {"ks", Json::object()}};
    if (scene.canvasWidth > scene.width || scene.canvasHeight > scene.height) {
        use["w"] = scene.width;
        use["h"] = scene.height;
    }
    const Json root{{"v", "5.0.0"},
                    {"fr", 1},
                    {"ip", 0},
                    {"op", std::max<double>(frames, std::ceil(library.lastStep())) + 3},
                    {"w", scene.canvasWidth},
                    {"h", scene.canvasHeight}};
    std::string head = root.dump();
    head.back() = ',';
    return library.take(head + R"("assets":[)", R"(],"layers":[)" + use.dump() + "]}");
}

}  // namespace headless::render
