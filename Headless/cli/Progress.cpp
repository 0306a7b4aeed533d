#include "cli/Progress.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>

namespace headless::cli {

namespace {

volatile std::sig_atomic_t interrupts = 0;

void onInterrupt(int) {
    interrupts = interrupts + 1;
    if (interrupts > 1) {
        std::signal(SIGINT, SIG_DFL);
        std::raise(SIGINT);
    }
}

void draw(int percent) {
    constexpr int width = 40;
    const std::string done(static_cast<std::size_t>(percent * width / 100), '#');
    std::fprintf(stderr, "\r[%-*s] %3d %%", width, done.c_str(), percent);
}

}  // namespace

Progress::Progress(Session& session) : session_(session) {
    interrupts = 0;
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigaction(SIGINT, &action, nullptr);
    const bool visible = ::isatty(STDERR_FILENO) != 0;
    session_.beforeKeysAreRead = [this] {
        if (interrupted()) {
            session_.holdKeys(true, true);
        }
    };
    session_.onProgress = [visible](int percent) {
        if (visible) {
            draw(percent);
        }
    };
}

Progress::~Progress() {
    std::signal(SIGINT, SIG_DFL);
    if (::isatty(STDERR_FILENO) != 0 && !session_.progressShown().empty()) {
        std::fprintf(stderr, "\r%60s\r", "");
    }
    session_.beforeKeysAreRead = {};
    session_.onProgress = {};
    session_.holdKeys(false, false);
}

bool Progress::interrupted() const {
    return interrupts > 0;
}

}  // namespace headless::cli
