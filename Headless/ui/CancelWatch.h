// Notices when the person cancels.

#pragma once

#include <optional>
#include <string>

#include "ui/Dialog.h"

namespace headless::ui {

// Passes on somebody's answers. A dialog is cancelled by Escape, by its close box (which is also what is left
// when the input ends or an interrupt comes), and by its button "Cancel". A plug-in may take that for an answer
// and go on: what it asks after that is closed without a question.
class CancelWatch final : public Answerer {
 public:
    // `answers` must outlive this.
    explicit CancelWatch(Answerer& answers) : answers_(answers) {}

    Action next(const Dialog& dialog) override;

    // The title of the dialog that was cancelled. One that another dialog had opened does not count while that
    // one is still to be answered.
    const std::optional<std::string>& cancelled() const { return title_; }

 private:
    Answerer& answers_;
    std::optional<std::string> title_;
    int showing_ = 0;  // of that dialog
};

}  // namespace headless::ui
