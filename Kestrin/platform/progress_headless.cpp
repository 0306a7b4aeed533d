#include "platform/headless_suite.h"
#include "platform/progress.h"

namespace platform {

struct ProgressPanel::Panel {
    explicit Panel(const SPBasicSuite* basic) : suite(basic) {}
    HeadlessSuite suite;
};

ProgressPanel::ProgressPanel(const SPBasicSuite* basic, const char* title, const char* message)
    : panel_(std::make_unique<Panel>(basic)) {
    const Kestrin_PlatformSuite1* suite = panel_->suite.get();
    if (suite == nullptr || suite->OpenProgress(title, message) != A_Err_NONE) {
        panel_.reset();
    }
}

ProgressPanel::~ProgressPanel() {
    if (panel_ != nullptr) {
        panel_->suite.get()->CloseProgress();
    }
}

void ProgressPanel::show(int percent) noexcept {
    if (panel_ != nullptr) {
        panel_->suite.get()->SetProgress(percent);
    }
}

}  // namespace platform
