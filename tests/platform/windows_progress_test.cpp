// The panel of Windows: what its windows say of themselves, and what is on the screen.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

#include "PanelOnScreen.h"

namespace {

HWND openPanel() {
    return FindWindowA("KestrinProgress", panelTitle);
}

Box placeOf(HWND child) {
    RECT frame{};
    GetWindowRect(child, &frame);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&frame), 2);
    return {frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top};
}

std::string textOf(HWND window) {
    char text[80] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
}

TEST(WindowsProgress, IsLaidOutAndGoneAfterwards) {
    for (int round = 0; round < 2; ++round) {
        platform::ProgressPanel panel(nullptr, panelTitle, panelMessage);
        const HWND window = openPanel();
        ASSERT_NE(window, nullptr);
        EXPECT_TRUE(IsWindowVisible(window));
        RECT inside{};
        GetClientRect(window, &inside);
        EXPECT_EQ(inside.right, 300);
        EXPECT_EQ(inside.bottom, 120);

        const HWND bar = FindWindowExA(window, nullptr, PROGRESS_CLASSA, nullptr);
        EXPECT_EQ(placeOf(bar), (Box{20, 30, 260, 10}));
        EXPECT_EQ(SendMessageA(bar, PBM_GETRANGE, TRUE, 0), 0);
        EXPECT_EQ(SendMessageA(bar, PBM_GETRANGE, FALSE, 0), 100);
        for (const int percent : {1, 40, 100}) {
            panel.show(percent);
            EXPECT_EQ(SendMessageA(bar, PBM_GETPOS, 0, 0), percent);
        }
        const HWND text = FindWindowExA(window, nullptr, "STATIC", nullptr);
        EXPECT_EQ(placeOf(text), (Box{20, 55, 260, 30}));
        EXPECT_EQ(textOf(text), "To cancel, hold Ctrl + Shift");
    }
    EXPECT_EQ(openPanel(), nullptr);
}

TEST(WindowsProgress, RepaintsWithoutAnEventLoop) {
    expectPanelToRepaint();
}

}  // namespace
