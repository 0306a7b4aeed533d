#include "cli/CommandLine.h"

#include <cmath>

namespace headless::cli {

void buildProgram(CLI::App& program, Action& action) {
    program.name("kestrin");
    program.description("Crops the compositions of Lottie files to their visible content.");
    program.set_version_flag("--version", "kestrin " KESTRIN_VERSION);
    program.require_subcommand(1);
    std::string footer = "Exit codes:\n";
    for (const ExitMeaning& exit : exitMeanings) {
        footer += "  " + std::to_string(static_cast<int>(exit.code)) + "  " + exit.meaning + "\n";
    }
    program.footer(footer + "\nkestrin VERB --help tells more, with an example.");
    addCrop(program, action);
    addInfo(program, action);
    addRender(program, action);
    addCompare(program, action);
    addReport(program, action);
    addPreferences(program, action);
    addMenu(program, action);
    addPanel(program, action);
}

std::chrono::milliseconds timeoutOf(const CLI::App& program) {
    const CLI::Option* option = program.get_subcommands().front()->get_option_no_throw("--timeout");
    const double seconds = option == nullptr ? 0 : option->count() > 0 ? option->as<double>() : usualTimeout;
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

}  // namespace headless::cli
