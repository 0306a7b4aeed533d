// What a plug-in without a desktop asks instead of the system: held keys, and a place to show progress.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

A_Err getModifierKeys(A_u_longlong* flags) noexcept {
    return gate("GetModifierKeys", [&](Session& session) { need(flags) = session.keys(); });
}

A_Err openProgress(const A_char* title, const A_char* message) noexcept {
    return gate("OpenProgress", [&](Session& session) {
        need(title);
        need(message);
        session.openProgress();
    });
}

A_Err setProgress(A_long percent) noexcept {
    return gate("SetProgress", [&](Session& session) { session.showProgress(percent); });
}

A_Err closeProgress() noexcept {
    return gate("CloseProgress", [](Session& session) { session.closeProgress(); });
}

}  // namespace

const Kestrin_PlatformSuite1 tablePlatformSuite1 = {.GetModifierKeys = getModifierKeys,
                                                    .OpenProgress = openProgress,
                                                    .SetProgress = setProgress,
                                                    .CloseProgress = closeProgress};

}  // namespace headless
