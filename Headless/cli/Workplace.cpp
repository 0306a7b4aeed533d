#include "cli/Workplace.h"

#include <unistd.h>

#include <algorithm>

#include "cli/Find.h"
#include "cli/PluginFile.h"
#include "cli/Print.h"
#include "cli/Supervisor.h"
#include "cli/Text.h"
#include "ui/Interrupt.h"
#include "ui/Terminal.h"

namespace headless::cli {

namespace {

// Who answers what was not prepared: a person at a terminal, or whatever is at the other end of the pipe if
// asked.
std::unique_ptr<ui::Answerer> otherAnswers(const WorkplaceOptions& options) {
    const bool atTerminal = ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
    return atTerminal || options.answerFile == "-" ? ui::personAtTerminal() : nullptr;
}

SessionOptions sessionOptions(const WorkplaceOptions& options) {
    SessionOptions how;
    how.depth = options.depth == 16   ? render::Depth::Bits16
                : options.depth == 32 ? render::Depth::Bits32
                                      : render::Depth::Bits8;
    how.preferencesFile = options.preferences;
    return how;
}

}  // namespace

void addWorkplaceOptions(CLI::App& verb, WorkplaceOptions& options) {
    verb.add_option("--answer", options.answers,
                    "Answer to a dialog: \"Low Resolution=Accurate\". May be given several times")
        ->allow_extra_args(false)
        ->type_name("TITLE=BUTTON");
    verb.add_option("--answers", options.answerFile,
                    "File of answers; - asks on standard error and reads steps from standard input")
        ->type_name("FILE");
    verb.add_option("--depth", options.depth, "Bits a channel of rendered frames (8)")
        ->check(CLI::IsMember({8, 16, 32}).description(""))
        ->type_name("8|16|32");
    addReadingOptions(verb, options.reading);
    verb.add_option("--preferences", options.preferences, "Preferences of the host and the plug-in")
        ->type_name("FILE");
    verb.add_option("--plugin", options.plugin, "Plug-in library (Kestrin.so beside this program)")
        ->type_name("FILE");
    addTimeout(verb);
}

void addSelectionOptions(CLI::App& verb, SelectionOptions& options, const std::string& aboutLayers) {
    verb.add_option("--comp", options.comp, "Composition to open, by name or asset id (the root)")
        ->type_name("NAME");
    verb.add_option("--layer,--select", options.layers,
                    aboutLayers + "; \"#3\" is the third from the top. May be given\nseveral times")
        ->allow_extra_args(false)
        ->type_name("NAME");
    CLI::Option* frame =
        verb.add_option("--frame", options.frame, "Frame of the opened composition, from 0")->type_name("N");
    verb.add_option("--time", options.seconds, "The same as a time")->excludes(frame)->type_name("SECONDS");
}

Workplace::Workplace(const WorkplaceOptions& options)
    : Workplace(options, openProject(options.project, options.reading)) {}

Workplace::Workplace(const WorkplaceOptions& options, std::unique_ptr<model::Project> project)
    : others_(otherAnswers(options)), answers_(others_.get()) {
    const auto plugin = pluginFile(options.plugin);
    try {
        for (const std::string& answer : options.answers) {
            answers_.add(answer);
        }
        if (!options.answerFile.empty() && options.answerFile != "-") {
            answers_.addFile(options.answerFile);
        }
        session_ = std::make_unique<Session>(std::move(project), watch_, sessionOptions(options));
    } catch (const std::runtime_error& error) {
        throw Stop(ExitCode::BadInput, error.what());
    }
    session_->onHook = inHook;
    session_->loadPlugin(plugin);
    ui::noteInterrupts();
}

model::Comp& Workplace::open(const SelectionOptions& selection) {
    model::Project& project = session_->project();
    model::Comp& comp = findComp(project, selection.comp);
    std::vector<model::SelectedThing> things;
    for (const std::string& name : selection.layers) {
        const model::SelectedThing thing{findLayer(project, comp, name).id, -1};
        if (std::find(things.begin(), things.end(), thing) == things.end()) {
            things.push_back(thing);
        }
    }
    if (selection.frame) {
        comp.currentFrame = findFrame(comp, *selection.frame);
    } else if (selection.seconds) {
        comp.currentFrame = frameAt(project, comp, *selection.seconds);
    }
    session_->openComp(comp);
    session_->select(comp, std::move(things));
    return comp;
}

bool Workplace::cancelled() const {
    return ui::interrupted() || watch_.cancelled();
}

A_Err Workplace::run(const std::function<A_Err()>& command) {
    session_->beforeKeysAreRead = [this] {
        if (cancelled()) {
            session_->holdKeys(true, true);
        }
    };
    const A_Err error = command();
    session_->beforeKeysAreRead = {};
    session_->holdKeys(false, false);
    if (const auto unanswered = answers_.unanswered()) {
        answers_.forgetUnanswered();
        throw Stop(ExitCode::BadInput, *unanswered);
    }
    requireGoingOn();
    return error;
}

void Workplace::requireGoingOn() const {
    if (cancelled()) {
        const auto& dialog = watch_.cancelled();
        const bool inDialog = dialog && !ui::interrupted();
        throw Stop(ExitCode::Cancelled, "cancelled" + (inDialog ? " in the dialog " + inQuotes(*dialog) : ""));
    }
}

void Workplace::write(const std::function<void()>& rest) {
    const ui::NoInterrupt untilDone;
    requireGoingOn();
    session_->writePreferences();
    rest();
}

void Workplace::printMessages() const {
    for (const Message& message : session_->messages()) {
        if (message.kind == Message::Kind::Alert) {
            Line() << "alert: " << message.title;
            for (const std::string& line : linesOf(message.text)) {
                Line() << "    " << line;
            }
        } else {
            say("warning: " + message.title + ": " + inOneLine(message.text));
        }
    }
    for (const std::string& title : answers_.unused()) {
        say("note: no dialog had the title " + inQuotes(title));
    }
}

}  // namespace headless::cli
