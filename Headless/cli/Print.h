// All that the program prints goes through here, a line at a time. Line breaks are made here alone: whatever a
// line holds, it can neither steer a terminal nor pass for another line.

#pragma once

#include <sstream>
#include <string>

#include "model/Json.h"

namespace headless::cli {

// A line of standard output, printed at the end of its life.
class Line : public std::ostringstream {
 public:
    Line() = default;
    ~Line() override;
};

// The same as JSON.
void printJson(const model::Json& json);
// A line on standard error, as the program speaks there.
void say(const std::string& message);
// Columns for the status line, which is drawn where standard error is a terminal; 0 where it is none.
int statusColumns();
// The last line of the terminal, in place of the one before. It never wraps, and goes when a line is printed.
// Where there is no terminal, it is said now and then in a long silence.
void showStatus(const std::string& line);
void clearStatus();
// Whether all of standard output could be written.
bool flushed();

}  // namespace headless::cli
