// The progress panel as a person sees it, whatever draws it.

#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "Screen.h"
#include "platform/progress.h"

inline constexpr char panelTitle[] = "Crop Duration Progress";
inline constexpr char panelMessage[] = "To cancel, hold Command + Shift";

// Opens the panel, moves its bar and closes it, without an event loop.
inline void expectPanelToRepaint() {
    constexpr Screen::Colour background = 0x262626;
    using Colours = std::vector<Screen::Colour>;

    std::optional<platform::ProgressPanel> panel(std::in_place, nullptr, panelTitle, panelMessage);
    Box window{};
    ASSERT_TRUE(becomesVisible([&](const Screen& screen) {
        window = screen.boxOf(background);
        return window.width == 300 && window.height == 120;
    })) << window.width
        << " x " << window.height;
    // Ends and middle of the bar, off its rim.
    const auto colours = [&](const Screen& screen) {
        const auto at = [&](int x) { return screen.at(window.left + x, window.top + 35); };
        return Colours{at(30), at(110), at(140), at(270)};
    };
    const Box text{window.left + 20, window.top + 55, 260, 30};
    EXPECT_TRUE(becomesVisible([&](const Screen& screen) { return screen.countBrightIn(text) > 50; }));

    const auto atStart = colours(Screen());
    const Screen::Colour empty = atStart.front();
    EXPECT_EQ(atStart, (Colours{empty, empty, empty, empty}));
    panel->show(40);
    Screen::Colour full = empty;
    EXPECT_TRUE(
        becomesVisible([&](const Screen& screen) { return (full = colours(screen).front()) != empty; }));
    EXPECT_EQ(colours(Screen()), (Colours{full, full, empty, empty}));
    panel->show(100);
    EXPECT_TRUE(becomesVisible([&](const Screen& screen) {
        return colours(screen) == Colours{full, full, full, full};
    }));

    panel.reset();
    EXPECT_TRUE(becomesVisible([](const Screen& screen) { return screen.boxOf(background).width == 0; }));
}
