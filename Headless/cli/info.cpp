// kestrin info: what a project holds.

#include <iomanip>

#include "cli/Comps.h"
#include "cli/Find.h"
#include "cli/Print.h"
#include "cli/Text.h"
#include "cli/Verbs.h"

namespace headless::cli {

namespace {

const char* kindOf(model::LayerType type) {
    switch (type) {
        case model::LayerType::Precomp:
            return "precomp";
        case model::LayerType::Solid:
            return "solid";
        case model::LayerType::Image:
            return "image";
        case model::LayerType::Null:
            return "null";
        case model::LayerType::Shape:
            return "shape";
        case model::LayerType::Text:
            return "text";
        case model::LayerType::Audio:
            return "audio";
        case model::LayerType::Camera:
            return "camera";
        case model::LayerType::Light:
            return "light";
    }
    return "other";
}

void printLayer(const model::Project& project, const model::Layer& layer) {
    const std::string number = "#" + std::to_string(project.indexOf(layer) + 1);
    const std::string frames = shortNumber(layer.inFrame - layer.comp->firstFrame) + " to " +
                               shortNumber(layer.outFrame - layer.comp->firstFrame);
    Line line;
    line << "  " << std::left << std::setw(6) << number << std::setw(9) << kindOf(layer.type) << std::setw(16)
         << frames << inQuotes(project.nameOf(layer));
    if (layer.source != nullptr && (layer.source->comp || layer.type == model::LayerType::Image)) {
        line << " shows " << inQuotes(layer.source->name);
    }
    if (layer.parent != nullptr) {
        line << ", parent #" << project.indexOf(*layer.parent) + 1;
    }
    if (!layer.masks.empty()) {
        line << ", " << counted(static_cast<std::int64_t>(layer.masks.size()), "mask");
    }
    line << (layer.hidden ? ", hidden" : "");
}

void printComp(const model::Project& project, const model::Comp& comp, const Uses& uses) {
    Line();
    Line() << inQuotes(comp.item->name)
           << (comp.assetId.empty() ? ", the root" : ", id " + inQuotes(comp.assetId)) << ": "
           << sizeText(comp.item->size) << ", frames 0 to " << frameCount(comp) - 1;
    if (const auto found = uses.find(comp.item); found != uses.end()) {
        Line line;
        line << "  used by ";
        const char* separator = "";
        for (const model::Layer* use : found->second) {
            line << separator << "#" << project.indexOf(*use) + 1 << " of " << inQuotes(use->comp->item->name);
            separator = ", ";
        }
    } else if (!comp.assetId.empty()) {
        Line() << "  not used";
    }
    if (!comp.layers.empty()) {
        Line() << "  layer kind     frames          name";
    }
    for (const model::LayerPtr& layer : comp.layers) {
        printLayer(project, *layer);
    }
}

struct Options {
    std::string project;
    ReadingOptions reading;
};

ExitCode run(const Options& options) {
    const auto project = openProject(options.project, options.reading);
    Line() << options.project << ": " << counted(compCount(*project), "composition") << ", "
           << shortNumber(project->frameRate()) << " frames a second";
    const Uses uses = usesIn(*project);
    forEachComp(*project, [&](const model::Comp& comp) { printComp(*project, comp, uses); });
    return ExitCode::Done;
}

}  // namespace

void addInfo(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb = program.add_subcommand("info", "List compositions, sizes, layers and uses");
    addProject(*verb, options->project);
    addReadingOptions(*verb, options->reading);
    verb->footer("Example: kestrin info examples/lanterns.json");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
