#include "cli/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>

#include "cli/Text.h"

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

void drawLine(int percent, const std::string& text) {
    constexpr int width = 30;
    const std::string done(static_cast<std::size_t>(percent * width / 100), '#');
    std::fprintf(stderr, "\r[%-*s] %3d %%%s\033[K", width, done.c_str(), percent, text.c_str());
}

std::string minutesText(double seconds) {
    const auto whole = static_cast<int>(seconds + 0.5);
    const int rest = whole % 60;
    return std::to_string(whole / 60) + (rest < 10 ? ":0" : ":") + std::to_string(rest);
}

}  // namespace

Progress::Progress(Session& session) : session_(session), visible_(::isatty(STDERR_FILENO) != 0) {
    interrupts = 0;
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigaction(SIGINT, &action, nullptr);
    session_.beforeKeysAreRead = [this] {
        if (interrupted()) {
            session_.holdKeys(true, true);
        }
    };
    session_.onProgress = [this](int percent) {
        if (visible_) {
            drawLine(percent, "");
        }
    };
}

Progress::Progress(Session& session, int comps, int frames) : Progress(session) {
    comps_ = comps;
    frames_ = frames;
    session_.onProgress = [this](int) { frameDone(); };
}

Progress::~Progress() {
    std::signal(SIGINT, SIG_DFL);
    if (visible_) {
        std::fprintf(stderr, "\r\033[K");
    }
    session_.beforeKeysAreRead = {};
    session_.onProgress = {};
    session_.holdKeys(false, false);
}

bool Progress::interrupted() const {
    return interrupts > 0;
}

void Progress::frameDone() {
    ++framesDone_;
    draw();
}

void Progress::compDone(int frames) {
    ++compsDone_;
    framesOfDoneComps_ += frames;
    framesDone_ = framesOfDoneComps_;
    draw();
}

void Progress::draw() const {
    if (!visible_) {
        return;
    }
    const int done = std::min(framesDone_, frames_);
    std::string text = "  " + std::to_string(compsDone_) + " of " + counted(comps_, "composition") + ", " +
                       std::to_string(done) + " of " + counted(frames_, "frame");
    if (done > 0) {
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start_;
        text += ", " + minutesText(spent.count() * (frames_ - done) / done) + " left";
    }
    drawLine(frames_ == 0 ? 100 : done * 100 / frames_, text);
}

}  // namespace headless::cli
