// A person, or a program, at the other end of a pipe: prints a dialog as text and reads one step per line.

#pragma once

#include <istream>
#include <ostream>

#include "ui/Dialog.h"

namespace headless::ui {

class LineAnswers final : public Answerer {
 public:
    // Both must outlive this.
    LineAnswers(std::istream& in, std::ostream& out) : in_(in), out_(out) {}

    // The end of the input closes the dialog.
    Action next(const Dialog& dialog) override;

 private:
    std::istream& in_;
    std::ostream& out_;
};

}  // namespace headless::ui
