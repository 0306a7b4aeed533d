// kestrin compare: whether two versions of a project look the same.

#include "cli/Comparison.h"
#include "cli/ComparisonJson.h"
#include "cli/Print.h"
#include "cli/Text.h"
#include "cli/Verbs.h"

namespace headless::cli {

namespace {

struct Options {
    VersionsOptions versions;
    ComparisonRequest request;
    bool json = false;
};

void print(const ChangedComp& comp) {
    Line line;
    line << "changed: " << inQuotes(comp.name);
    if (!comp.before || !comp.after) {
        line << ", only in the " << (comp.before ? "first" : "second");
    } else if (comp.before != comp.after) {
        line << ", " << sizeText(*comp.before) << " -> " << sizeText(*comp.after);
    } else {
        line << ", its layers";
    }
}

void print(const ComparedComp& comp) {
    Line line;
    line << word(comp.verdict) << ": " << inQuotes(comp.name);
    if (comp.otherTimes) {
        line << ", its frames or their rate are not the same";
        return;
    }
    line << ", " << counted(comp.frames, "frame") << " compared";
    if (comp.worst.largest > 0) {
        line << ", largest difference " << comp.worst.largest << " of 255 at frame " << comp.worst.frame
             << ", pixel " << comp.worst.at.x << "," << comp.worst.at.y;
        if (comp.worst.pixels > 0) {
            line << " (" << counted(static_cast<std::int64_t>(comp.worst.pixels), "pixel") << ")";
        }
    }
    if (comp.offset) {
        line << "; resized itself" << (comp.assetId.empty() ? ", which shows on screen" : "")
             << "; laid over its old picture, moved by " << comp.offset->x << "," << comp.offset->y;
    }
}

void print(const Comparison& comparison) {
    Line() << conclusion(comparison);
    for (const ChangedComp& comp : comparison.changed) {
        print(comp);
    }
    for (const ComparedComp& comp : comparison.compared) {
        print(comp);
    }
}

ExitCode run(Options& options) {
    const auto [before, after] = openVersions(options.versions);
    options.request.mostFrames = options.versions.mostFrames;
    const Comparison comparison = compare(*before, *after, options.request);
    if (options.json) {
        model::Json document = documentJson("compare", options.versions.before, options.versions.after);
        document.update(comparisonJson(comparison));
        printJson(document);
    } else {
        print(comparison);
    }
    return comparison.verdict() == Verdict::Shifted ? ExitCode::Differs : ExitCode::Done;
}

}  // namespace

void addCompare(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb = program.add_subcommand("compare", "Say whether two versions of a project look the same");
    verb->add_option("--frame", options->request.frame,
                     "Compare this frame of each composition only, from 0 (all frames)")
        ->type_name("N");
    verb->add_option("--comp", options->request.comp, "Compare this composition only, by name or asset id")
        ->type_name("NAME");
    verb->add_flag("--json", options->json, "Print one JSON document instead of lines");
    addVersions(*verb, options->versions, "Example: kestrin compare examples/lanterns.json cropped.json");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
