#include "cli/Progress.h"

#include <algorithm>

#include "cli/Print.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

std::string minutesText(double seconds) {
    const auto whole = static_cast<int>(seconds + 0.5);
    const int rest = whole % 60;
    return std::to_string(whole / 60) + (rest < 10 ? ":0" : ":") + std::to_string(rest);
}

void show(int percent, const std::string& text) {
    showStatus(progressLine(percent, text, statusColumns()));
}

}  // namespace

std::string progressLine(int percent, const std::string& text, int columns) {
    const std::string words = std::to_string(percent) + " %" + text;
    constexpr std::size_t widestNumber = 5;
    const std::size_t margin = widestNumber - std::min(widestNumber, words.find('%') + 1);
    constexpr int shortest = 10;
    constexpr int longest = 30;
    const int room = std::min(longest, columns - static_cast<int>(words.size() + margin) - 3);
    if (room < shortest) {
        return words;
    }
    const auto done = static_cast<std::size_t>(room * std::clamp(percent, 0, 100) / 100);
    return '[' + std::string(done, '#') + std::string(static_cast<std::size_t>(room) - done, ' ') + "] " +
           std::string(margin, ' ') + words;
}

Progress::Progress(Session& session) : session_(session) {
    session_.onProgress = [](int percent) { show(percent, ""); };
}

Progress::Progress(Session& session, int comps, int frames) : Progress(session) {
    comps_ = comps;
    frames_ = frames;
    session_.onProgress = [this](int) { frameDone(); };
}

Progress::~Progress() {
    clearStatus();
    session_.onProgress = {};
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

void Progress::draw() {
    const int done = std::min(framesDone_, frames_);
    std::string text = ", " + std::to_string(compsDone_) + " of " + counted(comps_, "composition") + ", " +
                       std::to_string(done) + " of " + counted(frames_, "frame");
    if (done > 0) {
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start_;
        text += ", " + minutesText(spent.count() * (frames_ - done) / done) + " left";
    }
    show(frames_ == 0 ? 100 : static_cast<int>(100.0 * done / frames_), text);
}

}  // namespace headless::cli
