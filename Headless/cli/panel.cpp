// kestrin panel: a request as the companion script panel leaves it, taken up by the plug-in when it is idle.

#include "cli/Cropping.h"
#include "cli/Output.h"
#include "cli/Print.h"
#include "cli/Progress.h"

namespace headless::cli {

namespace {

// As the panel numbers them, from 1.
constexpr Command commands[] = {Command::Standard, Command::Duration, Command::MaskCrop, Command::Preferences};

struct Options {
    WorkplaceOptions workplace;
    SelectionOptions selection;
    int request = 0;
    std::string output;
    ReadOnly readOnly = ReadOnly::Stays;
    int mostFrames = usualFrames;
};

ExitCode run(const Options& options) {
    const Command command = commands[options.request - 1];
    if (options.output.empty() && command != Command::Preferences) {
        throw Stop(ExitCode::BadInput, "say where the result goes: -o FILE");
    }
    std::optional<ResultFile> file;
    if (!options.output.empty()) {
        file.emplace(options.workplace.project,
                     outputFile(options.output, options.workplace.project, false, options.readOnly),
                     options.readOnly);
    }
    Workplace workplace(options.workplace);
    Session& session = workplace.session();
    const model::Comp& comp = workplace.open(options.selection);
    const std::vector<const model::Item*> targets = cropTargets(session.project(), comp);
    if (command == Command::Duration) {
        requireFrames(framesOf(targets), options.mostFrames);
    }
    const ProjectBefore before(session.project(), targets);

    session.preferences().setLong("Kestrin", "Menu_Cmd", session.pluginCommand());
    session.preferences().setLong("Kestrin", "Panel_Run", options.request);
    const A_Err error = [&] {
        const Progress progress(session);
        return workplace.run([&] { return session.tick(); });
    }();
    if (error != A_Err_NONE) {
        throw Stop(ExitCode::Failed, "the plug-in failed (error " + std::to_string(error) + ")");
    }
    const CropResult result = before.settledResult(runsOf(session.preferences(), command));
    workplace.printMessages();
    if (command == Command::Preferences) {
        workplace.write([] {});
        return ExitCode::Done;
    }
    const bool alerted = !session.messages().empty();
    if (alerted && result.resized.empty() && result.added.empty()) {
        return ExitCode::NothingToDo;
    }
    file->put(session.project(), options.workplace.reading.animation);
    workplace.write([&] { file->write(); });
    print(result, alerted);
    Line() << "wrote " << options.output;
    return ExitCode::Done;
}

}  // namespace

void addPanel(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb = program.add_subcommand("panel", "Run a request as the companion panel would leave it");
    verb->add_option("REQUEST", options->request, "1 crop, 2 duration crop, 3 mask crop, 4 preferences")
        ->required()
        ->check(CLI::Range(1, 4).description(""))
        ->type_name("1|2|3|4");
    addProject(*verb, options->workplace.project);
    addSelectionOptions(*verb, options->selection, "Layer that is selected");
    addWorkplaceOptions(*verb, options->workplace);
    verb->add_option("-o,--output", options->output, "File to write")->type_name("FILE");
    addForce(*verb, options->readOnly);
    addMostFrames(*verb, options->mostFrames);
    verb->footer("Example: kestrin panel 2 examples/lanterns.json --layer \"Big lantern\" -o cropped.json");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
