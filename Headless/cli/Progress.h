// How far a long command is, and the person's wish to end it.

#pragma once

#include "session/Session.h"

namespace headless::cli {

// While it lives, the plug-in's progress is drawn on standard error if that is a terminal, and an interrupt
// (Ctrl-C) holds the two keys that the plug-in takes as a cancel. A second interrupt ends the program.
class Progress {
 public:
    explicit Progress(Session& session);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    bool interrupted() const;

 private:
    Session& session_;
};

}  // namespace headless::cli
