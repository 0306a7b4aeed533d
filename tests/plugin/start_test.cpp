#include <gtest/gtest.h>

#include "Kestrin.h"
#include "platform/FakeHost.h"

namespace {

TEST(Start, TheCommandStandsAtTheBottomOfTheLayerMenuBehindALine) {
    StartHost host;
    EXPECT_EQ(EntryPointFunc(host.basic(), 0, 0, 9, nullptr), 0);
    EXPECT_EQ(host.calls(),
              (std::vector<std::string>{"insert 0 - into 5 at -1", "number", "insert 77 Kestrin into 5 at -1",
                                        "command hook", "menu hook", "idle hook"}));
}

}  // namespace
