#include "cli/Print.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>

#include "cli/ComparisonJson.h"
#include "ui/Printable.h"

namespace headless::cli {

namespace {

using Clock = std::chrono::steady_clock;

std::string status;                         // as it stands on the terminal
Clock::time_point lastWord = Clock::now();  // on standard error; at first the program's start

// Without a terminal. Those that watch over a silent program give it minutes.
constexpr std::chrono::seconds longestSilence{10};

// What fits into so many columns. Nothing but ASCII is narrow for sure.
std::string cut(const std::string& line, int columns) {
    std::size_t end = 0;
    for (std::size_t next = 0; end < line.size(); end = next) {
        const bool ascii = (line[end] & 0x80) == 0;
        next = end + 1;
        while (!ascii && next < line.size() && (line[next] & 0xC0) == 0x80) {
            ++next;
        }
        columns -= ascii ? 1 : 2;
        if (columns < 0) {
            break;
        }
    }
    return line.substr(0, end);
}

}  // namespace

Line::~Line() {
    clearStatus();
    std::cout << ui::printable(str()) << '\n';
}

void printJson(const model::Json& json) {
    clearStatus();
    std::cout << ui::printableJson(jsonText(json)) << '\n';
}

void say(const std::string& message) {
    clearStatus();
    std::cout << std::flush;
    std::cerr << "kestrin: " << ui::printable(message) << '\n';
    lastWord = Clock::now();
}

int statusColumns() {
    if (::isatty(STDERR_FILENO) == 0) {
        return 0;
    }
    constexpr int usual = 80;
    winsize size{};
    const int told = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
    const char* variable = std::getenv("COLUMNS");
    const int wanted = variable == nullptr ? 0 : std::atoi(variable);
    const int columns = told > 0 && wanted > 0 ? std::min(told, wanted) : std::max(told, wanted);
    return std::max((columns > 0 ? columns : usual) - 1, 1);  // some terminals wrap once the last one is filled
}

void showStatus(const std::string& line) {
    const int columns = statusColumns();
    if (columns == 0) {
        if (Clock::now() - lastWord >= longestSilence) {
            say(line);
        }
        return;
    }
    if (const std::string fitting = cut(ui::printable(line), columns); fitting != status) {
        status = fitting;
        std::cerr << '\r' << status << "\x1b[K" << std::flush;
    }
}

void clearStatus() {
    if (!status.empty()) {
        status.clear();
        std::cerr << "\r\x1b[K" << std::flush;
    }
}

bool flushed() {
    return static_cast<bool>(std::cout.flush());
}

}  // namespace headless::cli
