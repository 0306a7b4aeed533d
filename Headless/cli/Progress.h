// How far a long command is.

#pragma once

#include <chrono>
#include <string>

#include "session/Session.h"

namespace headless::cli {

// A percentage and more to say, with a bar before them if there is room in so many columns.
std::string progressLine(int percent, const std::string& text, int columns);

// While it lives, the progress is drawn on standard error if that is a terminal, else said there now and then.
class Progress {
 public:
    // Of one command of the plug-in: the percentage that it shows.
    explicit Progress(Session& session);
    // Of a whole animation: compositions and frames.
    Progress(Session& session, int comps, int frames);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // The plug-in's own frames count by themselves.
    void frameDone();
    // `frames`: that were expected for it, done or not.
    void compDone(int frames);

 private:
    void draw();

    Session& session_;
    int comps_ = 0, frames_ = 0;
    int compsDone_ = 0, framesDone_ = 0, framesOfDoneComps_ = 0;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace headless::cli
