// A small non-modal panel with a text and a bar from 0 to 100.

#pragma once

#include <memory>

#include "AEGP_Host.h"

namespace platform {

// On screen from construction to destruction. A panel that cannot be opened is no error: the calls do
// nothing then. Repaints without the host's event loop. Main thread.
class ProgressPanel {
 public:
    ProgressPanel(const SPBasicSuite* basic, const char* title, const char* message);
    ~ProgressPanel();
    ProgressPanel(const ProgressPanel&) = delete;
    ProgressPanel& operator=(const ProgressPanel&) = delete;

    void show(int percent) noexcept;

 private:
    struct Panel;
    std::unique_ptr<Panel> panel_;
};

}  // namespace platform
