// The plug-in's settings, read afresh from the host's preference store at each place that needs them.

#pragma once

#include "AEGP_SuiteHandler.h"

// One place's access to the plug-in's section. Keys are ids of the string table. `open` comes first.
class Preferences {
 public:
    explicit Preferences(AEGP_SuiteHandler& suites) noexcept : suites_(suites) {}

    A_Err open();
    // One byte, non-zero meaning on. An absent key reads as off.
    A_Err readFlag(int key, A_Boolean* flag);
    // An absent key reads as 0.
    A_Err readNumber(int key, A_long* number);
    A_Err remove(int key);

 private:
    AEGP_SuiteHandler& suites_;
    AEGP_PersistentBlobH store_ = nullptr;
};
