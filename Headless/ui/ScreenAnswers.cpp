#include "ui/ScreenAnswers.h"

#include <curses.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <clocale>
#include <cwchar>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "ui/Interrupt.h"
#include "ui/Printable.h"
#include "ui/Step.h"

namespace headless::ui {
namespace {

constexpr int longestDeafness = 200;  // milliseconds, to an interrupt

// curses tells the end of a terminal and a moment without keys alike.
bool terminalEnded() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return ::poll(&input, 1, 0) > 0;  // there is something, and it was no key
}

// The terminal is curses' from construction to destruction.
class Screen {
 public:
    Screen() : screen_(newterm(nullptr, stdout, stdin)) {
        if (!screen_) throw std::runtime_error("this kind of terminal cannot show a dialog");
        set_escdelay(25);
        cbreak();
        noecho();
        keypad(stdscr, TRUE);
        curs_set(0);
        timeout(longestDeafness);
    }
    ~Screen() {
        endwin();
        delscreen(screen_);
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

 private:
    SCREEN* screen_;
};

struct Row {
    std::string text;
    bool focused = false;
    bool enabled = true;
};

std::string listText(const Control& list) {
    const bool chosen = list.selection >= 0 && list.selection < static_cast<int>(list.items.size());
    return "< " + (chosen ? list.items[static_cast<std::size_t>(list.selection)] : std::string("none")) + " >";
}

std::string rowText(const Control& control, const Keyboard& keyboard) {
    switch (control.kind) {
        case Control::Kind::EditText:
            return "[" + keyboard.fieldText(control) + "_]";
        case Control::Kind::CheckBox:
        case Control::Kind::RadioButton:
            return (control.checked ? "[x] " : "[ ] ") + control.text;
        case Control::Kind::Button:
            return "( " + control.text + " )";
        case Control::Kind::DropDownList:
        case Control::Kind::ListBox:
            return listText(control);
        case Control::Kind::Panel:
        case Control::Kind::StaticText:
        case Control::Kind::Group:
            break;
    }
    return control.text;
}

// At a line break, or at the last blank within the width. Counts bytes: rows of other scripts come out shorter.
std::size_t endOfRow(const std::string& text, std::size_t begin, std::size_t width) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    if (end - begin <= width) return end;
    const std::size_t blank = text.rfind(' ', begin + width);
    return blank == std::string::npos || blank <= begin ? end : blank;
}

std::vector<Row> rowsOf(const Dialog& dialog, const Keyboard& keyboard, std::size_t width) {
    std::vector<Row> rows{{"== " + dialog.title + " =="}};
    for (const Control& control : dialog.controls) {
        if (!control.visible || control.kind == Control::Kind::Group) continue;
        const std::string indent(static_cast<std::size_t>(control.depth) * 2, ' ');
        std::string text = rowText(control, keyboard);
        const bool isLabel = control.kind == Control::Kind::StaticText || control.kind == Control::Kind::Panel;
        if (!isLabel) text = printable(text);
        std::erase(text, '\r');
        for (std::size_t begin = 0; begin <= text.size();) {
            const std::size_t end = endOfRow(text, begin, width - std::min(width, indent.size()));
            rows.push_back(
                {indent + text.substr(begin, end - begin), control.id == keyboard.focus(), control.enabled});
            begin = end + 1;
        }
    }
    rows.push_back({"Tab: next   Left, Right: choose   Space, Enter: press   Escape: cancel   Ctrl-D: close"});
    return rows;
}

// The rows around the focus, where not all fit.
void draw(const std::vector<Row>& rows) {
    erase();
    const int height = std::max(getmaxy(stdscr), 1);
    const auto focus = std::find_if(rows.begin(), rows.end(), [](const Row& row) { return row.focused; });
    const int focusRow = focus == rows.end() ? 0 : static_cast<int>(focus - rows.begin());
    const int first = std::clamp(focusRow - height / 2, 0, std::max(static_cast<int>(rows.size()) - height, 0));
    for (int y = 0; y < height && first + y < static_cast<int>(rows.size()); ++y) {
        const Row& row = rows[static_cast<std::size_t>(first + y)];
        attrset(row.focused ? A_REVERSE : row.enabled ? A_NORMAL : A_DIM);
        mvaddnstr(y, 0, printable(row.text).c_str(), -1);
        attrset(A_NORMAL);
    }
    refresh();
}

std::optional<Key> keyFor(int status, wint_t code) {
    static const std::map<wint_t, Key> special{
        {KEY_DOWN, Key::Next},   {KEY_UP, Key::Previous}, {KEY_BTAB, Key::Previous},      {KEY_LEFT, Key::Left},
        {KEY_RIGHT, Key::Right}, {KEY_ENTER, Key::Enter}, {KEY_BACKSPACE, Key::Backspace}};
    static const std::map<wint_t, Key> plain{{'\t', Key::Next},      {' ', Key::Space},   {'\n', Key::Enter},
                                             {'\r', Key::Enter},     {0x1b, Key::Escape}, {4, Key::Close},
                                             {0x7f, Key::Backspace}, {8, Key::Backspace}};
    const auto& keys = status == KEY_CODE_YES ? special : plain;
    const auto found = keys.find(code);
    return found == keys.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

ScreenAnswers::ScreenAnswers() {
    std::setlocale(LC_CTYPE, "");
}

Action ScreenAnswers::next(const Dialog& dialog) {
    keyboard_.attend(dialog);
    if (const std::optional<Action> left = keyboard_.takePending()) return *left;
    const Screen screen;
    for (;;) {
        draw(rowsOf(dialog, keyboard_, static_cast<std::size_t>(std::max(getmaxx(stdscr), 1))));
        wint_t code = 0;
        const int status = get_wch(&code);
        if (status == ERR) {
            if (interrupted() || terminalEnded()) return {};
            continue;
        }
        if (const std::optional<Key> key = keyFor(status, code)) {
            if (const std::optional<Action> action = keyboard_.press(*key, dialog)) return *action;
        } else if (status == OK && code >= 0x20) {
            std::array<char, MB_LEN_MAX> bytes{};
            std::mbstate_t state{};
            const std::size_t length = std::wcrtomb(bytes.data(), static_cast<wchar_t>(code), &state);
            if (length != static_cast<std::size_t>(-1)) keyboard_.type({bytes.data(), length}, dialog);
        }
    }
}

}  // namespace headless::ui
