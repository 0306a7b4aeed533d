// kestrin menu: what the plug-in's menu entry says and whether it can be chosen.

#include <algorithm>

#include "cli/Cropping.h"
#include "cli/Print.h"

namespace headless::cli {

namespace {

struct Options {
    WorkplaceOptions workplace;
    SelectionOptions selection;
    std::vector<std::string> keys;
};

ExitCode run(const Options& options) {
    Workplace workplace(options.workplace);
    workplace.open(options.selection);
    const auto held = [&](const char* key) {
        return std::find(options.keys.begin(), options.keys.end(), key) != options.keys.end();
    };
    const Command command = held("shift") ? (held("command") ? Command::MaskCrop : Command::Preferences)
                                          : (held("command") ? Command::Duration : Command::Standard);
    const MenuEntry entry = holdKeysFor(workplace.session(), command);
    Line() << "Layer > " << entry.name << (entry.enabled ? "" : " (disabled)");
    return ExitCode::Done;
}

}  // namespace

void addMenu(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb =
        program.add_subcommand("menu", "Show the plug-in's menu entry as a selection and keys make it");
    addProject(*verb, options->workplace.project);
    addSelectionOptions(*verb, options->selection, "Layer that is selected");
    verb->add_option("--keys", options->keys, "Keys that are held while the menu is open")
        ->delimiter(',')
        ->check(CLI::IsMember({"shift", "command"}))
        ->type_name("shift,command");
    addWorkplaceOptions(*verb, options->workplace);
    verb->footer("Example: kestrin menu examples/lanterns.json --select \"Big lantern\" --keys shift,command");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
