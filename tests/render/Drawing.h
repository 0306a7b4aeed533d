// Small documents and a way to state what their pictures show.

#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "render/Picture.h"
#include "render/Renderer.h"

namespace headless::render {

using Json = nlohmann::ordered_json;

// `text` is a JSON object, or the members of one without its braces.
inline Json object(const std::string& text) {
    return Json::parse(text.starts_with("{") ? text : "{" + text + "}");
}

// A solid with its top left corner at a point of the composition; `more` replaces and adds members.
inline Json solid(int x, int y, int width, int height, const std::string& colour,
                  const std::string& more = "") {
    Json layer{{"ddd", 0},     {"ty", 1},      {"sw", width},
               {"sh", height}, {"sc", colour}, {"ip", 0},
               {"op", 100},    {"st", 0},      {"ks", {{"p", {{"k", {x, y}}}}}}};
    layer.update(object(more));
    return layer;
}

inline Json shapes(const std::string& items) {
    return {{"ddd", 0},
            {"ty", 4},
            {"ip", 0},
            {"op", 100},
            {"st", 0},
            {"ks", Json::object()},
            {"shapes", Json::parse("[" + items + "]")}};
}

inline Json use(const std::string& id, const std::string& more = "") {
    Json layer{{"ddd", 0},  {"ty", 0}, {"refId", id},         {"w", 12}, {"h", 2}, {"ip", 0},
               {"op", 100}, {"st", 0}, {"ks", Json::object()}};
    layer.update(object(more));
    return layer;
}

using Jsons = std::vector<Json>;

inline Json composition(const std::string& id, const Jsons& layers) {
    return {{"id", id}, {"layers", layers}};
}

inline Json document(const Jsons& layers, const Jsons& assets = {}) {
    return {{"v", "5.7.0"}, {"fr", 30}, {"ip", 0}, {"op", 100}, {"assets", assets}, {"layers", layers}};
}

struct Scene {
    int width = 12, height = 2;
    double firstFrame = 0, endFrame = 100;
};

inline std::string textOf(Json document, const Scene& scene = {}) {
    document["w"] = scene.width;
    document["h"] = scene.height;
    document["ip"] = scene.firstFrame;
    document["op"] = scene.endFrame;
    return document.dump();
}

// One letter for each pixel: R, G, B, W by the strongest channel, small letters for
// what is less than three quarters opaque, a point for nothing.
inline char letter(std::uint32_t pixel) {
    if (pixel >> 24 == 0) return '.';
    const std::uint32_t red = pixel >> 16 & 0xFF;
    const std::uint32_t green = pixel >> 8 & 0xFF;
    const std::uint32_t blue = pixel & 0xFF;
    const char result = red > green && red > blue     ? 'R'
                        : green > red && green > blue ? 'G'
                        : blue > red                  ? 'B'
                                                      : 'W';
    return pixel >> 24 < 192 ? static_cast<char>(result + 'a' - 'A') : result;
}

inline PictureView draw(Renderer& renderer, double frame, int width, int height) {
    renderer.start({frame, width, height, {}});
    const auto pixels = renderer.finish();
    return {width,
            height,
            {reinterpret_cast<const std::uint32_t*>(pixels.get()), static_cast<std::size_t>(width * height)}};
}

inline std::string row(const PictureView& picture, int y) {
    std::string result;
    for (int x = 0; x < picture.width; ++x) {
        result += letter(picture.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                                        static_cast<std::size_t>(x)]);
    }
    return result;
}

}  // namespace headless::render
