// kestrin panel: a request as the companion script panel leaves it, taken up by the plug-in when it is idle.

#include <iostream>

#include "cli/Cropping.h"
#include "cli/Output.h"
#include "cli/Progress.h"
#include "cli/Text.h"
#include "files/WholeFile.h"

namespace headless::cli {

namespace {

struct Options {
    WorkplaceOptions workplace;
    SelectionOptions selection;
    int request = 0;
    std::string output;
};

ExitCode run(const Options& options) {
    constexpr int preferencesRequest = 4;
    if (options.output.empty() && options.request != preferencesRequest) {
        throw Stop(ExitCode::BadInput, "say where the result goes: -o FILE");
    }
    const auto output = options.output.empty() ? std::filesystem::path()
                                               : outputFile(options.output, options.workplace.project, false);
    Workplace workplace(options.workplace);
    Session& session = workplace.session();
    const model::Comp& comp = workplace.open(options.selection);
    const auto targets = cropTargets(session.project(), comp);
    const SizesBefore before(session.project());
    const Settling settling(session.project());
    const std::size_t stepsBefore = session.project().history.done().size();

    session.preferences().setLong("Kestrin", "Menu_Cmd", session.pluginCommand());
    session.preferences().setLong("Kestrin", "Panel_Run", options.request);
    const Progress progress(session);
    const A_Err error = session.tick();
    workplace.requireAnswered();
    if (error != A_Err_NONE) {
        throw Stop(ExitCode::Failed, "the plug-in failed (error " + std::to_string(error) + ")");
    }
    std::vector<std::string> settled;
    if (session.project().history.done().size() != stepsBefore) {
        settled = settling.settle(session.project(),
                                  options.request == 1 && expands(session.preferences(), Command::Standard));
    }
    CropResult result = before.compareWith(session.project(), targets, settling);
    result.settled = std::move(settled);
    if ((progress.interrupted() || (options.request == 3 && session.undoMismatches() > 0)) &&
        result.resized.empty()) {
        throw Stop(ExitCode::Cancelled, "cancelled; the project is as it was");
    }
    workplace.printMessages();
    if (options.request == preferencesRequest) {
        return ExitCode::Done;
    }
    const bool alerted = !session.messages().empty();
    if (alerted && result.resized.empty() && result.added.empty()) {
        return ExitCode::NothingToDo;
    }
    writeWhole(output,
               fileContent(session.project(), options.workplace.project, options.workplace.animation, output));
    print(result, alerted);
    std::cout << "wrote " << printable(output.string()) << '\n';
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
    verb->add_option("PROJECT", options->workplace.project, "Lottie file or .lottie archive")
        ->required()
        ->type_name("");
    addSelectionOptions(*verb, options->selection, "Layer that is selected");
    addWorkplaceOptions(*verb, options->workplace);
    verb->add_option("-o,--output", options->output, "File to write")->type_name("FILE");
    verb->footer("Example: kestrin panel 2 examples/lanterns.json --layer \"Big lantern\" -o cropped.json");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
