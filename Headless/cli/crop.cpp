// kestrin crop: runs the plug-in's command on a project and writes the result.

#include <unistd.h>

#include <iostream>

#include "cli/Cropping.h"
#include "cli/Find.h"
#include "cli/Output.h"
#include "cli/PluginFile.h"
#include "cli/Text.h"
#include "cli/Verbs.h"
#include "ui/PreparedAnswers.h"
#include "ui/Terminal.h"

namespace headless::cli {

namespace {

struct Options {
    CropRequest request;
    std::string project, output, plugin, preferences, images;
    std::string resolution = "full";
    int depth = 8;
    std::vector<std::string> answers;
    std::string answerFile;
    bool inPlace = false;
};

// Who answers what was not prepared: a person at a terminal, or whatever is at the other end of the pipe if
// asked.
std::unique_ptr<ui::Answerer> otherAnswers(const Options& options) {
    const bool atTerminal = ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
    return atTerminal || options.answerFile == "-" ? ui::personAtTerminal() : nullptr;
}

void prepare(ui::PreparedAnswers& answers, const Options& options) {
    try {
        for (const std::string& answer : options.answers) {
            answers.add(answer);
        }
        if (!options.answerFile.empty() && options.answerFile != "-") {
            answers.addFile(options.answerFile);
        }
    } catch (const std::runtime_error& error) {
        throw Stop(ExitCode::BadInput, error.what());
    }
}

render::Depth depthOf(int bits) {
    return bits == 16 ? render::Depth::Bits16 : bits == 32 ? render::Depth::Bits32 : render::Depth::Bits8;
}

std::int64_t area(model::Size size) {
    return std::int64_t{size.width} * size.height;
}

std::string resizedLine(const CroppedComp& comp) {
    const std::int64_t saved = area(comp.before) - area(comp.after);
    std::string line =
        inQuotes(comp.name) + ": " + sizeText(comp.before) + " -> " + sizeText(comp.after) + ", ";
    line += saved >= 0
                ? grouped(saved) + " pixels saved (" + std::to_string(saved * 100 / area(comp.before)) + " %)"
                : grouped(-saved) + " pixels more";
    return line + ", " + counted(comp.uses, "use") + " corrected";
}

void print(const CropResult& result, const Session& session) {
    for (const CroppedComp& comp : result.resized) {
        std::cout << resizedLine(comp) << '\n';
    }
    for (const CroppedComp& comp : result.added) {
        std::cout << inQuotes(comp.name) << ": added, " << sizeText(comp.after) << '\n';
    }
    bool alerted = false;
    for (const Message& message : session.messages()) {
        if (message.kind == Message::Kind::Alert) {
            alerted = true;
            std::cout << "alert: " << printable(message.title) << "\n    " << indented(message.text) << '\n';
        } else {
            say("warning: " + printable(message.title) + ": " + indented(message.text));
        }
    }
    for (const CroppedComp& comp : result.unchanged) {
        std::cout << inQuotes(comp.name) << ": " << (alerted ? "left" : "already tight") << " at "
                  << sizeText(comp.after) << '\n';
    }
}

ExitCode run(Options& options) {
    if (options.output.empty() && !options.inPlace) {
        throw Stop(ExitCode::BadInput, "say where the result goes: -o FILE, or --in-place");
    }
    const auto output = outputFile(options.output, options.project, options.inPlace);
    const auto plugin = pluginFile(options.plugin);
    options.request.resolution = resolutionFactor(options.resolution);

    const auto others = otherAnswers(options);
    ui::PreparedAnswers answers(others.get());
    prepare(answers, options);
    SessionOptions how;
    how.depth = depthOf(options.depth);
    how.preferencesFile = options.preferences;
    Session session(openProject(options.project, options.images), answers, how);
    session.loadPlugin(plugin);
    const CropResult result = crop(session, answers, options.request);

    writeWhole(output, session.project().write());
    print(result, session);
    for (const std::string& title : answers.unused()) {
        say("note: no dialog had the title " + inQuotes(title));
    }
    std::cout << "wrote " << printable(output.string()) << '\n';
    return ExitCode::Done;
}

}  // namespace

void addCrop(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb = program.add_subcommand("crop", "Crop compositions to what is visible at one frame");
    CropRequest& request = options->request;
    verb->add_option("PROJECT", options->project, "Lottie file")->required()->type_name("");
    verb->add_option("--comp", request.comp, "Composition to open, by name or asset id (the root)")
        ->type_name("NAME");
    verb->add_option("--layer", request.layers,
                     "Layer whose composition is cropped; \"#3\" is the third from the top. May be given\n"
                     "several times. Without it the opened composition itself is cropped")
        ->allow_extra_args(false)
        ->type_name("NAME");
    CLI::Option* frame =
        verb->add_option("--frame", request.frame, "Frame of the opened composition, from 0")->type_name("N");
    verb->add_option("--time", request.seconds, "The same as a time")->excludes(frame)->type_name("SECONDS");
    verb->add_option("--expand", request.expand, "Enlarge by this many pixels on each side before cropping")
        ->check(CLI::Range(0, 30'000))
        ->type_name("N");
    verb->add_option("--padding", request.padding, "Pixels to leave around the content on each side")
        ->check(CLI::Range(-30'000, 30'000))
        ->type_name("N");
    verb->add_flag("--include-masks", request.includeMasks, "Crop to what the layer's masks leave, too");
    addResolution(*verb, options->resolution);
    verb->add_option("--depth", options->depth, "Bits a channel of the rendered frame (8)")
        ->check(CLI::IsMember({8, 16, 32}))
        ->type_name("8|16|32");
    verb->add_option("--answer", options->answers,
                     "Answer to a dialog: \"Low Resolution=Accurate\". May be given several times")
        ->allow_extra_args(false)
        ->type_name("TITLE=BUTTON");
    verb->add_option("--answers", options->answerFile,
                     "File of answers; - asks on standard error and reads steps from standard input")
        ->type_name("FILE");
    addImageFolder(*verb, options->images);
    verb->add_option("--preferences", options->preferences, "Preferences of the host and the plug-in")
        ->type_name("FILE");
    verb->add_option("--plugin", options->plugin, "Plug-in library (Kestrin.so beside this program)")
        ->type_name("FILE");
    CLI::Option* inPlace = verb->add_flag("--in-place", options->inPlace, "Write over the project file");
    verb->add_option("-o,--output", options->output, "File to write")->excludes(inPlace)->type_name("FILE");
    verb->footer(
        "Example: kestrin crop examples/lanterns.json --layer \"Big lantern\" --padding 2 -o cropped.json");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
