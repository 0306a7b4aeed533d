#include "ui/Keyboard.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "ui/Step.h"

namespace headless::ui {
namespace {

std::vector<int> stops(const Dialog& dialog) {
    std::vector<int> result;
    for (const Control& control : dialog.controls) {
        const bool takesKeys = control.kind == Control::Kind::EditText ||
                               control.kind == Control::Kind::Button || isList(control) || isToggle(control);
        if (takesKeys && control.enabled && control.visible) result.push_back(control.id);
    }
    return result;
}

}  // namespace

void Keyboard::attend(const Dialog& dialog) {
    const std::vector<int> ids = stops(dialog);
    const bool isNew = dialog.showing != showing_;
    if (isNew || std::find(ids.begin(), ids.end(), focus_) == ids.end()) {
        focus_ = ids.empty() ? -1 : ids.front();
        typed_.reset();
    }
    if (isNew) pending_.reset();
    showing_ = dialog.showing;
}

const Control* Keyboard::focused(const Dialog& dialog) const {
    const auto found = std::find_if(dialog.controls.begin(), dialog.controls.end(),
                                    [&](const Control& control) { return control.id == focus_; });
    return found == dialog.controls.end() ? nullptr : &*found;
}

void Keyboard::moveFocus(int direction, const Dialog& dialog) {
    const std::vector<int> ids = stops(dialog);
    if (ids.empty()) return;
    const auto place = std::find(ids.begin(), ids.end(), focus_) - ids.begin();
    const auto count = static_cast<std::ptrdiff_t>(ids.size());
    focus_ = ids[static_cast<std::size_t>((place + direction + count) % count)];
}

std::string Keyboard::fieldText(const Control& field) const {
    return field.id == focus_ && typed_ ? *typed_ : field.text;
}

std::optional<Action> Keyboard::act(Key key, const Dialog& dialog) {
    const Control* control = focused(dialog);
    switch (key) {
        case Key::Next:
            moveFocus(1, dialog);
            return std::nullopt;
        case Key::Previous:
            moveFocus(-1, dialog);
            return std::nullopt;
        case Key::Left:
        case Key::Right: {
            if (!control || !isList(*control)) return std::nullopt;
            const int entry = control->selection + (key == Key::Right ? 1 : -1);
            if (entry < 0 || entry >= static_cast<int>(control->items.size())) return std::nullopt;
            return Action{Action::Kind::Select, control->id, {}, entry};
        }
        case Key::Space:
        case Key::Enter: {
            const bool isButton = control && control->kind == Control::Kind::Button;
            if (isButton || (key == Key::Space && control && isToggle(*control))) {
                return Action{Action::Kind::Press, control->id, {}, -1};
            }
            if (key == Key::Space) return std::nullopt;
            return Action{Action::Kind::Enter, -1, {}, -1};
        }
        case Key::Escape:
            return Action{Action::Kind::Escape, -1, {}, -1};
        case Key::Close:
            return Action{};
        case Key::Backspace:
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<Action> Keyboard::press(Key key, const Dialog& dialog) {
    const Control* control = focused(dialog);
    if (control && control->kind == Control::Kind::EditText) {
        if (key == Key::Space) {
            type(" ", dialog);
            return std::nullopt;
        }
        if (key == Key::Backspace) {
            std::string text = fieldText(*control);
            while (!text.empty() && (text.back() & 0xC0) == 0x80) text.pop_back();
            if (!text.empty()) text.pop_back();
            typed_ = std::move(text);
            return std::nullopt;
        }
        if (typed_) {
            const Action handOver{Action::Kind::SetText, control->id, *std::exchange(typed_, std::nullopt), -1};
            pending_ = act(key, dialog);
            return handOver;
        }
    }
    return act(key, dialog);
}

void Keyboard::type(std::string_view character, const Dialog& dialog) {
    const Control* control = focused(dialog);
    if (!control || control->kind != Control::Kind::EditText) return;
    typed_ = fieldText(*control).append(character);
}

std::optional<Action> Keyboard::takePending() {
    return std::exchange(pending_, std::nullopt);
}

}  // namespace headless::ui
