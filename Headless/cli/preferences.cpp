// kestrin preferences: the plug-in's own dialog over a preference file.

#include "cli/Cropping.h"
#include "cli/Output.h"
#include "cli/Print.h"
#include "cli/Supervisor.h"

namespace headless::cli {

namespace {

// The dialog needs a host, and a host always has a project open.
std::unique_ptr<model::Project> emptyProject() {
    return model::Project::read(
        R"({"v":"5.7.0","fr":30,"ip":0,"op":30,"w":100,"h":100,"layers":[],"assets":[]})");
}

ExitCode run(const WorkplaceOptions& options) {
    requireWritable(options.preferences);
    workOn(options.preferences);
    Workplace workplace(options, emptyProject());
    Session& session = workplace.session();
    const model::Preferences before = session.preferences();
    holdKeysFor(session, Command::Preferences);
    const A_Err error = workplace.run([&] { return session.runCommand(session.pluginCommand()); });
    workplace.printMessages();
    if (error != A_Err_NONE) {
        throw Stop(ExitCode::Failed, "the plug-in failed (error " + std::to_string(error) + ")");
    }
    if (session.preferences() == before) {
        Line() << "nothing changed";
    } else {
        session.savePreferences();
        workplace.write([] {});
        Line() << "wrote " << options.preferences;
    }
    return ExitCode::Done;
}

}  // namespace

void addPreferences(CLI::App& program, Action& action) {
    auto options = std::make_shared<WorkplaceOptions>();
    CLI::App* verb =
        program.add_subcommand("preferences", "Edit a preference file in the plug-in's own dialog");
    addWorkplaceOptions(*verb, *options);
    verb->get_option("--preferences")->required();
    verb->footer(
        "Example: kestrin preferences --preferences kestrin.prefs --answer \"Kestrin "
        "Preferences=Padding,Save\"\n"
        "Example: kestrin crop examples/lanterns.json --layer \"Big lantern\" --preferences kestrin.prefs -o "
        "padded.json");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
