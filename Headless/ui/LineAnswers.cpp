#include "ui/LineAnswers.h"

#include <algorithm>
#include <stdexcept>

#include "ui/Printable.h"
#include "ui/Step.h"

namespace headless::ui {
namespace {

constexpr const char* help =
    "press BUTTON | check BOX | uncheck BOX | type FIELD TEXT | select LIST ENTRY | enter | escape | close";

// Labels of several lines keep them, one below the other.
std::string printableLines(const std::string& text, const std::string& indent) {
    std::string result;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string_view line = std::string_view(text).substr(begin, end - begin);
        if (line.ends_with('\r')) line.remove_suffix(1);
        result += (begin == 0 ? "" : "\n" + indent) + printable(line);
        begin = end + 1;
    }
    return result;
}

void print(std::ostream& out, const Dialog& dialog) {
    int fields = 0;
    int lists = 0;
    out << "== " << printable(dialog.title) << " ==\n";
    for (const Control& control : dialog.controls) {
        const bool isList = ui::isList(control);
        const bool isField = control.kind == Control::Kind::EditText;
        fields += isField;
        lists += isList;
        if (!control.visible || (control.kind == Control::Kind::Group)) continue;
        const std::string indent(static_cast<std::size_t>(control.depth) * 2, ' ');
        const std::string text = printable(control.text);
        out << indent;
        if (isList) {
            out << "list " << lists << ":\n";
            for (std::size_t i = 0; i < control.items.size(); ++i) {
                const bool selected = control.selection == static_cast<int>(i);
                out << indent << (selected ? "  * " : "    ") << printable(control.items[i]) << '\n';
            }
            continue;
        }
        if (isField) out << "field " << fields << ": " << text;
        if (isToggle(control)) out << (control.checked ? "[x] " : "[ ] ") << text;
        if (control.kind == Control::Kind::Button) out << "< " << text << " >";
        if (control.kind == Control::Kind::StaticText || control.kind == Control::Kind::Panel) {
            out << printableLines(control.text, indent);
        }
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
            out_ << printable(error.what()) << '\n';
        }
    }
    out_ << "the input ended before the dialog was answered (" << printable(buttonsOf(dialog)) << ")\n"
         << std::flush;
    return {};
}

}  // namespace headless::ui
