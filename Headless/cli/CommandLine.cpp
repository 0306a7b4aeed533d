#include "cli/CommandLine.h"

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

}  // namespace headless::cli
