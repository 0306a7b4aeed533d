// The words stand in report/page.html, a Mustache template that is filled from the report itself; only what the
// template cannot work out (numbers as people write them, geometry, pictures) is added here. What would steer a
// reader is shown as in a terminal, and the template escapes every text for HTML.

#include "cli/ReportPage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <kainjow/mustache.hpp>
#include <map>

#include "ReportFiles.h"
#include "cli/Comps.h"
#include "cli/Text.h"
#include "model/Base64.h"
#include "render/Png.h"
#include "ui/Printable.h"

namespace headless::cli {

using kainjow::mustache::data;
using kainjow::mustache::mustache;
using model::Json;

namespace {

data viewOf(const Json& json) {
    if (json.is_array()) {
        data list(data::type::list);
        for (const Json& entry : json) {
            list.push_back(viewOf(entry));
        }
        return list;
    }
    if (json.is_object()) {
        data object;
        for (const auto& [name, value] : json.items()) {
            object.set(name, viewOf(value));
        }
        return object;
    }
    if (json.is_boolean() || json.is_null()) {
        return json.is_boolean() && json.get<bool>();
    }
    return json.is_string()           ? ui::printable(json.get<std::string>())
           : json.is_number_integer() ? json.dump()
                                      : shortNumber(json.get<double>());
}

// ---- Words --------------------------------------------------------------------------------------------

void addWords(Json& area) {
    const double saved = area["savedPercent"];
    area["beforeText"] = grouped(area["before"]);
    area["afterText"] = grouped(area["after"]);
    area["savedText"] = shortNumber(std::round(saved * 10) / 10) + " %";
}

Json otherChanges(const Json& changed) {
    Json others = Json::array();
    for (const Json& comp : changed) {
        if (const std::string change = comp["change"]; change != "resized") {
            others.push_back({{"name", comp["name"]},
                              {"what", change == "layers"        ? "its layers have changed"
                                       : change == "only before" ? "only in the first file"
                                                                 : "only in the second file"}});
        }
    }
    return others;
}

// ---- Pictures -----------------------------------------------------------------------------------------

std::string dataUri(const render::Picture& picture) {
    return "data:image/png;base64," + model::base64(render::encodePng(picture));
}

// The frame of the first version and the rectangle that is left of it, in its pixels.
void addStage(Json& comp) {
    const double width = comp["before"]["width"];
    const double height = comp["before"]["height"];
    const double left = comp["crop"]["left"];
    const double top = comp["crop"]["top"];
    const double right = left + comp["crop"]["width"].get<double>();
    const double bottom = top + comp["crop"]["height"].get<double>();
    const double stageLeft = std::min(0.0, left);
    const double stageTop = std::min(0.0, top);
    const double stageWidth = std::max(width, right) - stageLeft;
    const double stageHeight = std::max(height, bottom) - stageTop;
    constexpr double tallest = 420;  // on the page
    const int factor = comp["factor"];
    comp["stage"] = {{"left", stageLeft},
                     {"top", stageTop},
                     {"width", stageWidth},
                     {"height", stageHeight},
                     {"pageWidth", std::round(std::min(2 * stageWidth, tallest * stageWidth / stageHeight))},
                     {"afterShare", 100 * (right - left) / stageWidth},
                     {"pictureWidth", std::ceil(width / factor) * factor},
                     {"pictureHeight", std::ceil(height / factor) * factor}};
    // What lies in the frame and is left.
    const double innerLeft = std::clamp(left, 0.0, width);
    const double innerTop = std::clamp(top, 0.0, height);
    comp["inner"] = {{"left", innerLeft},
                     {"top", innerTop},
                     {"width", std::clamp(right, 0.0, width) - innerLeft},
                     {"height", std::clamp(bottom, 0.0, height) - innerTop}};
}

void addPictures(Json& comp, ReportedProject& before, ReportedProject& after) {
    const int factor = comp["factor"];
    const int frame = comp["frame"];
    const auto picture = [&](ReportedProject& reported) {
        const model::Comp& shown = *compById(reported.project, comp["id"]);
        return dataUri(reported.pictures.picture(shown, frame, factor, factor));
    };
    comp["beforePicture"] = picture(before);
    comp["afterPicture"] = picture(after);
}

// Each picture once, and for each frame which of them show it before and after.
class Animation {
 public:
    Animation(Json& animation, ReportedProject& before, ReportedProject& after) {
        const int factor = animation["factor"];
        for (const int frame : animation["held"].get<std::vector<int>>()) {
            const std::size_t first = add(before, frame, factor);
            const std::size_t second = add(after, frame, factor);
            if (frame == animation["shown"].get<int>()) {
                animation["place"] = frames_.size();
                animation["beforePicture"] = pictures_[first];
                animation["afterPicture"] = pictures_[second];
            }
            frames_.push_back({first, second});
        }
        animation["all"] = frames_.size() == animation["frames"].get<std::size_t>();
        animation["heldCount"] = frames_.size();
        animation["lastPlace"] = frames_.size() - 1;
        animation["lastFrame"] = animation["frames"].get<int>() - 1;
        animation["sameSize"] = animation["before"] == animation["after"];
        animation["reduced"] = factor > 1;
    }

    std::string text() const { return jsonText({{"pictures", pictures_}, {"frames", frames_}}); }

 private:
    std::size_t add(ReportedProject& reported, int frame, int factor) {
        std::string uri = dataUri(reported.pictures.picture(reported.project.root(), frame, factor, factor));
        const auto [known, isNew] = places_.try_emplace(std::move(uri), pictures_.size());
        if (isNew) {
            pictures_.push_back(known->first);
        }
        return known->second;
    }

    std::map<std::string, std::size_t> places_;
    std::vector<std::string> pictures_;
    std::vector<std::array<std::size_t, 2>> frames_;
};

// Inside a script element nothing may look like the element's end.
std::string insideScript(std::string json) {
    for (std::size_t at = 0; (at = json.find('<', at)) != std::string::npos;) {
        json.replace(at, 1, "\\u003c");
    }
    return json;
}

}  // namespace

std::string reportPage(const Json& report, ReportedProject& before, ReportedProject& after) {
    Json shown = report;
    addWords(shown["area"]);
    for (Json& comp : shown["resized"]) {
        addWords(comp["area"]);
        addStage(comp);
        addPictures(comp, before, after);
        comp["reduced"] = comp["factor"] > 1;
    }
    shown["compositionsText"] = counted(shown["compositions"], "composition");
    shown["resizedCount"] = shown["resized"].size();
    shown["anyResized"] = !shown["resized"].empty();
    for (Json& comp : shown["compared"]) {
        comp["framesText"] = counted(comp["frames"], "frame");
        if (Json& worst = comp["worst"]; !worst.is_null()) {
            worst["visible"] = worst["pixels"] > 0;
            worst["pixelsText"] = counted(worst["pixels"], "pixel");
        }
    }
    shown["anyCompared"] = !shown["compared"].empty();
    shown["anyNotDrawn"] = !shown["notDrawn"].empty();
    shown["others"] = otherChanges(shown["changed"]);
    shown["anyOthers"] = !shown["others"].empty();
    const Animation animation(shown["animation"], before, after);

    data view = viewOf(shown);
    view.set("style", data(scripts::style));
    view.set("player", data(scripts::player));
    view.set("report", insideScript(jsonText(report)));
    view.set("frames", insideScript(animation.text()));
    mustache page(scripts::page);
    return page.render(view);
}

}  // namespace headless::cli
