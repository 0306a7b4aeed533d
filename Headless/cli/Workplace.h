// What verbs that run the plug-in begin with: a project, the host around it, the plug-in in it, and somebody or
// something that answers dialogs.

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/Verbs.h"
#include "session/Session.h"
#include "ui/CancelWatch.h"
#include "ui/PreparedAnswers.h"

namespace headless::cli {

struct WorkplaceOptions {
    std::string project;
    ReadingOptions reading;
    std::string plugin, preferences, answerFile;
    std::vector<std::string> answers;
    int depth = 8;
};

// Which composition is in front, what is selected in it, and where its time slider stands.
struct SelectionOptions {
    std::string comp;                 // empty: the root
    std::vector<std::string> layers;  // none: nothing is selected
    std::optional<int> frame;         // from the composition's first; neither: its first
    std::optional<double> seconds;
};

void addWorkplaceOptions(CLI::App& verb, WorkplaceOptions& options);
void addSelectionOptions(CLI::App& verb, SelectionOptions& options, const std::string& aboutLayers);

class Workplace {
 public:
    // Throws Stop and model::ProjectError.
    explicit Workplace(const WorkplaceOptions& options);
    // The same with a project that is not the options'.
    Workplace(const WorkplaceOptions& options, std::unique_ptr<model::Project> project);

    Session& session() { return *session_; }
    // Opens the composition, selects the layers and moves the slider. Throws Stop.
    model::Comp& open(const SelectionOptions& selection);
    // Runs a command of the plug-in. While it does, a cancel holds the two keys that the plug-in takes as one.
    // Throws Stop when a dialog was not answered, and when the person cancelled.
    A_Err run(const std::function<A_Err()>& command);
    // Throws Stop when the person cancelled a dialog, or interrupts. Nothing is then to be written.
    void requireGoingOn() const;
    // Whether an answer was prepared for dialogs of this title.
    bool hasAnswer(const std::string& title) const { return answers_.has(title); }
    // The preferences that scripts saved, and the rest with them. Until it is done no interrupt comes: throws
    // Stop like that before, not after.
    void write(const std::function<void()>& rest);
    // Alerts on standard output, warnings and unused answers on standard error.
    void printMessages() const;

 private:
    bool cancelled() const;

    std::unique_ptr<ui::Answerer> others_;
    ui::PreparedAnswers answers_;
    ui::CancelWatch watch_{answers_};
    std::unique_ptr<Session> session_;
};

}  // namespace headless::cli
