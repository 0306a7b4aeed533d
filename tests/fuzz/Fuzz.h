// What a target of the fuzzer has: one function that takes an input and comes back, whatever it is.

#pragma once

#include <string>

// Ends the program when it does not hold.
void require(bool holds, const char* what);

// Of each target. An exception that leaves it is a fault.
void tryInput(const std::string& input);
