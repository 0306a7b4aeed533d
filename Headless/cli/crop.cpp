// kestrin crop: runs the plug-in's command on a project and writes the result.

#include "cli/Batch.h"
#include "cli/Cropping.h"
#include "cli/Find.h"
#include "cli/Output.h"
#include "cli/Print.h"
#include "cli/Progress.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

struct Options {
    WorkplaceOptions workplace;
    std::vector<std::string> projects;
    SelectionOptions selection;
    CropRequest request;
    std::string output;
    std::string resolution = "full";
    bool duration = false;
    bool inPlace = false;
    ReadOnly readOnly = ReadOnly::Stays;
    int mostFrames = usualFrames;
    // Of whole animations.
    bool all = false;
    double leastSaving = CropAllRequest{}.leastSaving;
    std::string unseen;
    bool json = false;
};

// What is about one composition, one moment or one layer.
constexpr const char* onlyForOne[] = {"--comp", "--layer",  "--frame",         "--time",      "--duration",
                                      "--mask", "--expand", "--include-masks", "--resolution"};

ExitCode runAll(const Options& options) {
    CropAllRequest crop;
    crop.padding = options.request.padding.value_or(crop.padding);
    crop.leastSaving = options.leastSaving;
    crop.unseen = unseenKinds(options.unseen);
    crop.plugInOnly = options.request.plugInOnly;
    crop.mostFrames = options.mostFrames;
    return cropFiles({options.workplace, options.projects, options.output, options.inPlace, options.readOnly,
                      options.json, crop});
}

// Throws NothingCropped where something forbids it.
std::vector<Concern> concernsAbout(const model::Project& project, const model::Comp& comp) {
    Concerns concerns(project);
    std::vector<Concern> all;
    for (const model::Item* target : cropTargets(project, comp)) {
        for (Concern& concern : concerns.about(*target)) {
            if (concern.weight == Concern::Weight::Forbids) {
                throw NothingCropped(inQuotes(target->name) + " is left: " + sentence(concern));
            }
            all.push_back(std::move(concern));
        }
    }
    return all;
}

ExitCode run(Options& options, bool maskCrop) {
    if (options.output.empty() && !options.inPlace) {
        throw Stop(ExitCode::BadInput, "say where the result goes: -o FILE, or --in-place");
    }
    if (options.all) {
        return runAll(options);
    }
    if (options.projects.size() > 1) {
        throw Stop(ExitCode::BadInput, "several projects can only be cropped as a whole: --all");
    }
    options.workplace.project = options.projects.front();
    const auto output =
        outputFile(options.output, options.workplace.project, options.inPlace, options.readOnly);
    ResultFile file(options.workplace.project, output, options.readOnly);
    options.request.resolution = resolutionFactor(options.resolution);
    options.request.command = options.duration ? Command::Duration
                              : maskCrop       ? Command::MaskCrop
                                               : Command::Standard;

    Workplace workplace(options.workplace);
    model::Comp& comp = workplace.open(options.selection);
    printWarnings(concernsAbout(workplace.session().project(), comp));
    if (options.duration) {
        requireFrames(framesOf(cropTargets(workplace.session().project(), comp)), options.mostFrames);
    }
    const CropResult result = [&] {
        const Progress progress(workplace.session());
        return crop(workplace, comp, options.request);
    }();

    file.put(workplace.session().project(), options.workplace.reading.animation);
    workplace.write([&] { file.write(); });
    const auto& messages = workplace.session().messages();
    workplace.printMessages();
    print(result, std::any_of(messages.begin(), messages.end(),
                              [](const Message& message) { return message.kind == Message::Kind::Alert; }));
    Line() << "wrote " << output.string();
    return ExitCode::Done;
}

void addWholeOptions(CLI::App& verb, Options& options) {
    const auto whole = [](CLI::Option* option) { return option->group("Whole animations"); };
    CLI::Option* all =
        whole(verb.add_flag("--all", options.all,
                            "Crop every composition to what it ever shows, innermost first; leave\n"
                            "2 pixels of padding, look at the result, and put back what has shifted"));
    whole(verb.add_option("--least-saving", options.leastSaving,
                          "Percent of its area below which a composition is left (5)"))
        ->check(CLI::Range(0.0, 100.0))
        ->needs(all)
        ->type_name("PERCENT");
    whole(verb.add_option("--crop-unseen", options.unseen,
                          "Crop compositions also where this is not drawn here, so that nobody can look\n"
                          "whether it shifts; several with commas between them"))
        ->needs(all)
        ->type_name(allUnseenKinds("|") + "|all");
    whole(verb.add_flag("--json", options.json, "Print what was done as one JSON document"))->needs(all);
}

}  // namespace

void addCrop(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb = program.add_subcommand("crop", "Crop compositions to what is visible");
    CropRequest& request = options->request;
    verb->add_option("PROJECT", options->projects, "Lottie file or .lottie archive; several with --all")
        ->required()
        ->expected(1, -1)
        ->type_name("");
    addSelectionOptions(
        *verb, options->selection,
        "Layer whose composition is cropped; without it the opened\ncomposition itself is cropped");
    CLI::Option* duration =
        verb->add_flag("--duration", options->duration, "Keep what is visible at any frame, not only at one");
    CLI::Option* mask =
        verb->add_option("--mask", request.mask,
                         "Crop to a mask of the layer instead of the visible pixels; without a\n"
                         "name the only one, or the one that a dialog asks for")
            ->expected(0, 1)
            ->excludes(duration)
            ->type_name("[NAME]");
    verb->add_flag("--delete-mask", request.deleteMask, "Delete that mask afterwards")->needs(mask);
    verb->add_option("--expand", request.expand, "Enlarge by this many pixels on each side before cropping")
        ->check(CLI::Range(0, 30'000))
        ->type_name("N");
    verb->add_option("--padding", request.padding, "Pixels to leave around the content on each side")
        ->check(CLI::Range(-30'000, 30'000))
        ->type_name("N");
    verb->add_flag("--include-masks", request.includeMasks, "Crop to what the layer's masks leave, too");
    verb->add_flag("--plug-in-only", request.plugInOnly,
                   "Leave half pixels of odd sizes, and children of the layers that\nshow a cropped "
                   "composition, as the plug-in does");
    addResolution(*verb, options->resolution);
    addWorkplaceOptions(*verb, options->workplace);
    CLI::Option* inPlace = verb->add_flag("--in-place", options->inPlace, "Write over the project file");
    verb->add_option("-o,--output", options->output, "File to write; with --all also a folder")
        ->excludes(inPlace)
        ->type_name("FILE");
    addForce(*verb, options->readOnly);
    addMostFrames(*verb, options->mostFrames);

    addWholeOptions(*verb, *options);
    verb->footer(
        "Example: kestrin crop examples/lanterns.json --layer \"Big lantern\" --padding 2 -o cropped.json\n"
        "Example: kestrin crop --all examples/lanterns.json -o small.json");
    verb->callback([&action, options, mask, verb] {
        for (const char* one : onlyForOne) {
            if (options->all && verb->get_option(one)->count() > 0) {
                throw CLI::ExcludesError(one, "--all");
            }
        }
        action = [options, maskCrop = mask->count() > 0] { return run(*options, maskCrop); };
    });
}

}  // namespace headless::cli
