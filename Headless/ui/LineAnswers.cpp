#include "ui/LineAnswers.h"

#include <stdexcept>

#include "ui/Step.h"

namespace headless::ui {
namespace {

constexpr const char* help =
    "press BUTTON | check BOX | uncheck BOX | type FIELD TEXT | select LIST ENTRY | enter | escape | close";

// Names come from files: control characters must not reach a terminal, save the line breaks of long labels.
std::string shown(const std::string& text, const std::string& indent) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0u;
        if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {  // the second range of them
            result += '?';
            ++i;
        } else if (byte == '\n') {
            result += '\n' + indent;
        } else if (byte != '\r') {
            result += byte < 0x20 || byte == 0x7f ? '?' : text[i];
        }
    }
    return result;
}

void print(std::ostream& out, const Dialog& dialog) {
    int fields = 0;
    int lists = 0;
    out << "== " << shown(dialog.title, "") << " ==\n";
    for (const Control& control : dialog.controls) {
        const bool isList = ui::isList(control);
        const bool isField = control.kind == Control::Kind::EditText;
        fields += isField;
        lists += isList;
        if (!control.visible || (control.kind == Control::Kind::Group)) continue;
        const std::string indent(static_cast<std::size_t>(control.depth) * 2, ' ');
        const std::string text = shown(control.text, indent);
        out << indent;
        if (isList) {
            out << "list " << lists << ":\n";
            for (std::size_t i = 0; i < control.items.size(); ++i) {
                const bool selected = control.selection == static_cast<int>(i);
                out << indent << (selected ? "  * " : "    ") << shown(control.items[i], indent + "    ")
                    << '\n';
            }
            continue;
        }
        if (isField) out << "field " << fields << ": " << text;
        if (isToggle(control)) out << (control.checked ? "[x] " : "[ ] ") << text;
        if (control.kind == Control::Kind::Button) out << "< " << text << " >";
        if (control.kind == Control::Kind::StaticText || control.kind == Control::Kind::Panel) out << text;
        out << (control.enabled ? "\n" : " (off)\n");
    }
}

}  // namespace

Action LineAnswers::next(const Dialog& dialog) {
    print(out_, dialog);
    for (std::string line; out_ << "> " << std::flush, std::getline(in_, line);) {
        const std::optional<Step> step = stepFromLine(line);
        if (!step) {
            out_ << help << '\n';
            continue;
        }
        try {
            if (const std::optional<Action> action = actionFor(*step, dialog)) return *action;
        } catch (const std::runtime_error& error) {
            out_ << shown(error.what(), "") << '\n';
        }
    }
    if (firstProblem_.empty()) {
        firstProblem_ = "the input ended before the dialog \"" + dialog.title + "\" was answered (" +
                        buttonsOf(dialog) + ")";
    }
    return {};
}

std::optional<std::string> LineAnswers::unanswered() const {
    return firstProblem_.empty() ? std::nullopt : std::optional(firstProblem_);
}

}  // namespace headless::ui
