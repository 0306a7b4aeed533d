// kestrin render: one frame of a composition as a PNG.

#include "cli/Find.h"
#include "cli/Output.h"
#include "cli/Print.h"
#include "cli/Text.h"
#include "cli/Verbs.h"
#include "render/Png.h"
#include "session/CompPictures.h"

namespace headless::cli {

namespace {

struct Options {
    std::string project, comp, output;
    ReadingOptions reading;
    std::string resolution = "full";
    int frame = 0;
    ReadOnly readOnly = ReadOnly::Stays;
};

ExitCode run(const Options& options) {
    requireWritable(options.output, options.readOnly);
    const auto project = openProject(options.project, options.reading);
    const model::Comp& comp = findComp(*project, options.comp);
    const int frame = findFrame(comp, options.frame);
    const int factor = resolutionFactor(options.resolution);
    const render::Picture picture = CompPictures(*project).picture(comp, frame, factor, factor);
    writeResult(options.output, render::encodePng(picture), options.readOnly);
    Line() << inQuotes(comp.item->name) << ", frame " << frame << ": " << picture.width << " x "
           << picture.height;
    Line() << "wrote " << options.output;
    return ExitCode::Done;
}

}  // namespace

void addRender(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb = program.add_subcommand("render", "Write one frame of a composition as a PNG");
    addProject(*verb, options->project);
    verb->add_option("--comp", options->comp, "Composition, by name or asset id (the root)")->type_name("NAME");
    verb->add_option("--frame", options->frame, "Frame of that composition, from 0")
        ->required()
        ->type_name("N");
    addResolution(*verb, options->resolution);
    addReadingOptions(*verb, options->reading);
    verb->add_option("-o,--output", options->output, "File to write")->required()->type_name("PNG");
    addForce(*verb, options->readOnly);
    addTimeout(*verb);
    verb->footer("Example: kestrin render examples/lanterns.json --frame 30 -o frame.png");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
