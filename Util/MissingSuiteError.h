// What the suite handler raises when the host lacks a suite.

#pragma once

#include "AEGP_Host.h"

// Throws the integer PF_Err_BAD_CALLBACK_PARAM (516). Operations catch `A_Err` and return it to the host.
[[noreturn]] inline void MissingSuiteError() {
    throw A_Err{PF_Err_BAD_CALLBACK_PARAM};
}
