// Answers to dialogs that were written down before the run, found by the dialog's title.

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Dialog.h"
#include "ui/Step.h"

namespace headless::ui {

// A title's answer holds for every dialog of that title. Given several times, the answers are used in order and
// the last one repeats.
class PreparedAnswers final : public Answerer {
 public:
    // A dialog without a prepared answer is handed to `otherwise`, which must outlive this, or recorded.
    explicit PreparedAnswers(Answerer* otherwise = nullptr) : otherwise_(otherwise) {}

    // "Low Resolution=Accurate,Remember My Choice": names as in stepNamed, buttons pressed last; without a
    // button the default one. A backslash takes the meaning from the = , or \ after it. Throws
    // std::runtime_error.
    void add(std::string_view answer);
    // The JSON form, see README.md. Throws std::runtime_error naming the file and the place in it.
    void addFile(const std::filesystem::path& file);

    bool has(const std::string& title) const { return titles_.contains(title); }

    Action next(const Dialog& dialog) override;

    // A message for the user about the first dialog that was not answered as it should be, and was closed.
    // Nothing while all were.
    std::optional<std::string> unanswered() const;
    void forgetUnanswered() { firstProblem_.clear(); }

    // Titles that were prepared for and that no dialog bore.
    std::vector<std::string> unused() const;

 private:
    struct Answer {
        bool isOneLine = false;
        std::vector<std::string> names;  // of the one-line form; become steps when the dialog is there
        std::vector<Step> steps;         // of a file: played as they stand
    };
    struct Title {
        std::vector<Answer> answers;
        std::size_t used = 0;
    };
    struct Open {
        std::vector<Step> steps;
        std::size_t done = 0;
    };

    Action play(const Dialog& dialog);
    static std::vector<Step> stepsFor(const Answer& answer, const Dialog& dialog);

    Answerer* otherwise_;
    std::map<std::string, Title> titles_;
    std::map<int, Open> open_;  // by Dialog::showing; several where a dialog opens another
    std::string firstProblem_;
};

}  // namespace headless::ui
