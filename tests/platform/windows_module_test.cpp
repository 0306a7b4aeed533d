// The module as a host meets it: its resource, its entry point, its hooks.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "FakeHost.h"
#include "Pipl.h"

namespace {

using Calls = std::vector<std::string>;
using EntryPoint = A_Err (*)(SPBasicSuite*, A_long, A_long, AEGP_PluginID, AEGP_GlobalRefcon*);

class WindowsModule : public testing::Test {
 protected:
    void SetUp() override { ASSERT_NE(module_, nullptr) << "error " << GetLastError(); }
    void TearDown() override { FreeLibrary(module_); }

    Pipl properties() const {
        const HRSRC found = FindResourceA(module_, MAKEINTRESOURCEA(16000), "PiPL");
        const auto* bytes = static_cast<const char*>(LockResource(LoadResource(module_, found)));
        return Pipl({bytes, bytes + SizeofResource(module_, found)});
    }
    A_Err load() {
        const auto entry = reinterpret_cast<EntryPoint>(
            reinterpret_cast<void*>(GetProcAddress(module_, properties().cString("8664").c_str())));
        return entry == nullptr ? -1 : entry(host_.basic(), 0, 0, 9, nullptr);
    }

    const HMODULE module_ = LoadLibraryW(L"Kestrin.aex");
    StartHost host_;
};

void press(std::vector<int> keys, DWORD flags) {
    for (const int key : keys) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = static_cast<WORD>(key);
        input.ki.dwFlags = flags;
        ASSERT_EQ(SendInput(1, &input, sizeof input), 1U);
    }
}

TEST_F(WindowsModule, ItsResourceNamesTheEntryPoint) {
    const Pipl pipl = properties();
    EXPECT_EQ(pipl.keys(), "kind name catg vers 8664 ");
    EXPECT_EQ(pipl.code("kind"), "AEgx");
    EXPECT_EQ(pipl.pascalString("name"), "Kestrin");
    EXPECT_EQ(load(), 0);
}

TEST_F(WindowsModule, AnIntegerThrownInsideStaysInside) {
    host_.withhold("AEGP Register Suite", 6);
    EXPECT_EQ(load(), 516);
    EXPECT_EQ(host_.acquired(), host_.released());
}

// In a process that has shown a window, wine goes by the display's own keyboard instead.
TEST_F(WindowsModule, TheMenuEntryFollowsTheKeys) {
    ASSERT_EQ(load(), 0);
    const struct {
        std::vector<int> keys;
        Calls calls;
    } steps[] = {{{VK_SHIFT}, {"rename Kestrin Preferences", "enable"}},
                 {{VK_CONTROL}, {"rename Kestrin Duration", "disable"}},
                 {{VK_SHIFT, VK_CONTROL}, {"rename Mask Crop", "disable"}},
                 {{VK_MENU}, {"rename Kestrin", "disable"}}};
    for (const auto& [keys, calls] : steps) {
        host_.forgetCalls();
        press(keys, 0);
        host_.idleHook(nullptr, nullptr, nullptr);
        press(keys, KEYEVENTF_KEYUP);
        EXPECT_EQ(host_.calls(), calls);
    }
}

}  // namespace
