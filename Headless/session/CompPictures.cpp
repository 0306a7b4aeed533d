#include "session/CompPictures.h"

#include <algorithm>
#include <cmath>

#include "render/Difference.h"

namespace headless {

namespace {

constexpr std::int64_t largestPicture = 36'000'000;  // in pixels: 8192 x 4320 and a little
constexpr double roundedAway = 0.002;  // times in the host's scale may lie this much short of their frame

int roundedUp(int size, int factor) {
    return (size + factor - 1) / factor;
}

model::Size sourceSize(const model::Layer& layer) {
    return layer.source != nullptr ? layer.source->size : layer.comp->item->size;
}

}  // namespace

std::string CompPictures::whyTooLarge(model::Size size) {
    if (std::int64_t{size.width} * size.height <= largestPicture) {
        return "";
    }
    return "a picture of " + std::to_string(size.width) + " x " + std::to_string(size.height) +
           " pixels is too large; at most " + std::to_string(largestPicture / 1'000'000) +
           " million pixels are drawn";
}

template <class Drawn, class Blank>
auto CompPictures::at(const model::Comp& comp, double frame, int factorX, int factorY, Drawn&& drawn,
                      Blank&& blank) {
    const auto [width, height] = comp.item->size;
    const int pictureWidth = roundedUp(width, factorX);
    const int pictureHeight = roundedUp(height, factorY);
    const double wholeFrame = std::floor(frame + roundedAway);
    try {
        if (const std::string reason = whyTooLarge({pictureWidth, pictureHeight}); !reason.empty()) {
            throw render::RenderError(reason);
        }
        if (wholeFrame < 0 || wholeFrame >= std::ceil(comp.frameCount())) {
            return blank(pictureWidth, pictureHeight);
        }
        std::string key = std::to_string(comp.item->id) + " " + std::to_string(factorX) + " " +
                          std::to_string(factorY) + " " + std::to_string(project_.history.revision());
        if (comps_.key != key) {
            const model::Size canvas{pictureWidth * factorX, pictureHeight * factorY};
            comps_.frames.prepare([this, &comp, canvas] { return project_.documentOf(comp, canvas); },
                                  static_cast<int>(std::ceil(comp.frameCount())));
            comps_.key = std::move(key);
        }
        return drawn(comps_.frames, static_cast<int>(wholeFrame), pictureWidth, pictureHeight);
    } catch (const render::RenderError& error) {
        throw render::RenderError("cannot render \"" + comp.item->name + "\" at frame " +
                                  std::to_string(static_cast<int>(wholeFrame)) + ": " + error.what());
    }
}

render::PictureView CompPictures::view(const model::Comp& comp, double frame, int factorX, int factorY) {
    return at(
        comp, frame, factorX, factorY,
        [](render::Frames& frames, int index, int width, int height) {
            return frames.frame(index, width, height);
        },
        [this](int width, int height) -> render::PictureView {
            const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
            nothing_ = {width, height, std::vector<std::uint32_t>(pixels)};
            return nothing_;
        });
}

render::World CompPictures::world(const model::Comp& comp, double frame, int factorX, int factorY,
                                  render::Depth depth) {
    return at(
        comp, frame, factorX, factorY,
        [depth](render::Frames& frames, int index, int width, int height) {
            return frames.world(index, {depth, width, height});
        },
        [depth](int width, int height) {
            return render::transparentWorld({depth, width, height});
        });
}

Box CompPictures::maskedBounds(const model::Layer& layer, double fileFrame) {
    const auto [width, height] = sourceSize(layer);
    if (layer.masks.empty() || width == 0 || height == 0) {
        return {0, 0, static_cast<double>(width), static_cast<double>(height)};
    }
    const double first = layer.comp->firstFrame;
    const double end = layer.comp->endFrame;
    try {
        if (const std::string reason = whyTooLarge({width, height}); !reason.empty()) {
            throw render::RenderError(reason);
        }
        std::string key = std::to_string(layer.id) + " " + std::to_string(project_.history.revision());
        if (masks_.key != key) {
            // A white solid of the source's size, cut by the masks.
            const model::Json solid = {{"ty", 1},
                                       {"sw", width},
                                       {"sh", height},
                                       {"sc", "#ffffff"},
                                       {"ks", model::Json::object()},
                                       {"masksProperties", project_.layerJson(layer)["masksProperties"]},
                                       {"hasMask", true},
                                       {"ip", first},
                                       {"op", end},
                                       {"st", 0}};
            const model::Json document = {{"v", "5.5.0"},      {"fr", project_.frameRate()},
                                          {"ip", first},       {"op", end},
                                          {"w", width},        {"h", height},
                                          {"layers", {solid}}, {"assets", model::Json::array()}};
            masks_.frames.prepare([text = document.dump()] { return text; },
                                  static_cast<int>(std::ceil(end - first)));
            masks_.key = std::move(key);
        }
        const double frame = std::clamp(std::floor(fileFrame + roundedAway), first, std::ceil(end) - 1) - first;
        const auto box = render::visibleBounds(masks_.frames.frame(static_cast<int>(frame), width, height));
        if (!box) {
            return {};
        }
        return {static_cast<double>(box->left), static_cast<double>(box->top), static_cast<double>(box->right),
                static_cast<double>(box->bottom)};
    } catch (const render::RenderError& error) {
        throw render::RenderError("cannot render the masks of layer \"" + project_.nameOf(layer) + "\" in \"" +
                                  layer.comp->item->name + "\": " + error.what());
    }
}

}  // namespace headless
