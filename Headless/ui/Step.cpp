#include "ui/Step.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <vector>

namespace headless::ui {
namespace {

using Kind = Control::Kind;
using Predicate = bool (*)(const Control&);

bool isButton(const Control& control) {
    return control.kind == Kind::Button;
}
bool isField(const Control& control) {
    return control.kind == Kind::EditText;
}
bool isFieldOrList(const Control& control) {
    return isField(control) || isList(control);
}

bool bears(const Control& control, std::string_view name) {
    const std::string_view text = control.text;
    return text == name || (!text.empty() && text.back() == ':' && text.substr(0, text.size() - 1) == name);
}

[[noreturn]] void fail(const Dialog& dialog, const std::string& what) {
    throw std::runtime_error("dialog \"" + dialog.title + "\" " + what + " (" + buttonsOf(dialog) + ")");
}

const Control* named(const Dialog& dialog, std::string_view name, Predicate fits) {
    const auto found =
        std::find_if(dialog.controls.begin(), dialog.controls.end(),
                     [&](const Control& control) { return fits(control) && bears(control, name); });
    return found == dialog.controls.end() ? nullptr : &*found;
}

// The first field or list after a label of that name, within the label's group.
const Control* besideLabel(const Dialog& dialog, std::string_view name, Predicate fits) {
    for (auto label = dialog.controls.begin(); label != dialog.controls.end(); ++label) {
        if ((label->kind != Kind::StaticText && !isToggle(*label)) || !bears(*label, name)) continue;
        for (auto next = label + 1; next != dialog.controls.end() && next->depth >= label->depth; ++next) {
            if (next->depth == label->depth && fits(*next)) return &*next;
        }
    }
    return nullptr;
}

const Control* numbered(const Dialog& dialog, const std::string& place, Predicate fits) {
    int wanted = 0;
    const char* end = place.data() + place.size();
    if (std::from_chars(place.data(), end, wanted).ptr != end) return nullptr;
    for (const Control& control : dialog.controls) {
        if (fits(control) && --wanted == 0) return &control;
    }
    return nullptr;
}

const Control& usable(const Dialog& dialog, const Control* control, const std::string& what) {
    if (!control) fail(dialog, "has no " + what);
    if (!control->enabled || !control->visible) fail(dialog, "does not offer its " + what + " now");
    return *control;
}

const Control& fieldOrList(const Dialog& dialog, const std::string& name, Predicate fits, const char* what) {
    const Control* control = numbered(dialog, name, fits);
    if (!control) control = besideLabel(dialog, name, fits);
    return usable(dialog, control, std::string(what) + " \"" + name + "\"");
}

int entryOf(const Control& list, const std::string& entry) {
    const auto found = std::find(list.items.begin(), list.items.end(), entry);
    return found == list.items.end() ? -1 : static_cast<int>(found - list.items.begin());
}

std::vector<const Control*> listsWith(const Dialog& dialog, const std::string& entry) {
    std::vector<const Control*> result;
    for (const Control& control : dialog.controls) {
        if (isList(control) && entryOf(control, entry) >= 0) result.push_back(&control);
    }
    return result;
}

const Control& listFor(const Step& step, const Dialog& dialog) {
    if (!step.control.empty()) return fieldOrList(dialog, step.control, isList, "list");
    const std::vector<const Control*> lists = listsWith(dialog, step.text);
    if (lists.size() > 1) fail(dialog, "has several lists with \"" + step.text + "\": name the list as well");
    return usable(dialog, lists.empty() ? nullptr : lists.front(), "list with \"" + step.text + "\"");
}

Action selectIn(const Control& list, const Step& step, const Dialog& dialog) {
    const int entry = entryOf(list, step.text);
    if (entry < 0) fail(dialog, "has no \"" + step.text + "\" in its list \"" + step.control + "\"");
    return {Action::Kind::Select, list.id, {}, entry};
}

std::string_view trimmed(std::string_view text) {
    constexpr const char* blanks = " \t\r";
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

// Takes the first word off the line, with the blanks around it.
std::string_view takeWord(std::string_view& line) {
    line = trimmed(line);
    const std::string_view word = line.substr(0, line.find_first_of(" \t"));
    line = trimmed(line.substr(word.size()));
    return word;
}

}  // namespace

bool isList(const Control& control) {
    return control.kind == Kind::DropDownList || control.kind == Kind::ListBox;
}

bool isToggle(const Control& control) {
    return control.kind == Kind::CheckBox || control.kind == Kind::RadioButton;
}

std::string buttonsOf(const Dialog& dialog) {
    std::string result;
    for (const Control& control : dialog.controls) {
        if (isButton(control)) result += (result.empty() ? "buttons: " : ", ") + control.text;
    }
    return result.empty() ? "no buttons" : result;
}

std::optional<Action> actionFor(const Step& step, const Dialog& dialog) {
    const std::string quoted = "\"" + step.control + "\"";
    switch (step.kind) {
        case Step::Kind::Press: {
            const Control& button = usable(dialog, named(dialog, step.control, isButton), "button " + quoted);
            return Action{Action::Kind::Press, button.id, {}, -1};
        }
        case Step::Kind::Check:
        case Step::Kind::Uncheck: {
            const Control& box = usable(dialog, named(dialog, step.control, isToggle), "check box " + quoted);
            if (box.checked == (step.kind == Step::Kind::Check)) return std::nullopt;
            return Action{Action::Kind::Press, box.id, {}, -1};
        }
        case Step::Kind::Type: {
            const Control& field = fieldOrList(dialog, step.control, isField, "field");
            return Action{Action::Kind::SetText, field.id, step.text, -1};
        }
        case Step::Kind::Select:
            return selectIn(listFor(step, dialog), step, dialog);
        case Step::Kind::Enter:
            return Action{Action::Kind::Enter, -1, {}, -1};
        case Step::Kind::Escape:
            return Action{Action::Kind::Escape, -1, {}, -1};
        case Step::Kind::CloseBox:
            break;
    }
    return Action{};
}

Step stepNamed(const std::string& name, const Dialog& dialog) {
    if (named(dialog, name, isButton)) return {Step::Kind::Press, name, {}};
    if (named(dialog, name, isToggle)) return {Step::Kind::Check, name, {}};
    if (name.starts_with('!') && named(dialog, std::string_view(name).substr(1), isToggle)) {
        return {Step::Kind::Uncheck, name.substr(1), {}};
    }
    if (!listsWith(dialog, name).empty()) return {Step::Kind::Select, {}, name};
    for (std::size_t colon = name.find(':'); colon != std::string::npos; colon = name.find(':', colon + 1)) {
        const std::string label = name.substr(0, colon);
        const Control* control = besideLabel(dialog, label, isFieldOrList);
        if (!control) continue;
        const std::size_t value = std::min(name.find_first_not_of(' ', colon + 1), name.size());
        return {isField(*control) ? Step::Kind::Type : Step::Kind::Select, label, name.substr(value)};
    }
    if (name == "escape") return {Step::Kind::Escape, {}, {}};
    if (name == "close") return {Step::Kind::CloseBox, {}, {}};
    fail(dialog, "has nothing named \"" + name + "\"");
}

std::optional<Step> stepFromLine(std::string_view line) {
    const std::string_view verb = takeWord(line);
    if (verb == "press") return Step{Step::Kind::Press, std::string(line), {}};
    if (verb == "check") return Step{Step::Kind::Check, std::string(line), {}};
    if (verb == "uncheck") return Step{Step::Kind::Uncheck, std::string(line), {}};
    if (verb == "type" || verb == "select") {
        const std::string place(takeWord(line));
        return Step{verb == "type" ? Step::Kind::Type : Step::Kind::Select, place, std::string(line)};
    }
    if (verb == "enter") return Step{Step::Kind::Enter, {}, {}};
    if (verb == "escape") return Step{Step::Kind::Escape, {}, {}};
    if (verb == "close") return Step{Step::Kind::CloseBox, {}, {}};
    return std::nullopt;
}

}  // namespace headless::ui
