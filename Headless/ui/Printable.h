// The door of all text that other people wrote: names, paths, messages with them. Until here it is kept as it
// is.

#pragma once

#include <string>
#include <string_view>

namespace headless::ui {

// One line for a terminal. What could steer it (control characters, line breaks among them), change the order
// in which it shows text (marks of writing direction) or mean anything there (no UTF-8) comes out as an escape:
// \n, \x1B, \u202E.
std::string printable(std::string_view text);
// A JSON document for a terminal or a program: the same characters as JSON's own escapes, so that it still says
// what it said.
std::string printableJson(std::string_view json);

}  // namespace headless::ui
