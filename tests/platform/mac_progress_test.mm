// The panel of macOS over GNUstep's AppKit: what the windows say of themselves, and what is on the screen.

#import <AppKit/AppKit.h>
#import <Foundation/NSDebug.h>
#include <gtest/gtest.h>

#include "PanelOnScreen.h"

namespace {

NSWindow* openPanel() {
    NSArray* windows = [NSApp windows];
    for (NSUInteger i = 0; i < [windows count]; ++i) {
        NSWindow* window = [windows objectAtIndex:i];
        if ([[window title] isEqualToString:[NSString stringWithUTF8String:panelTitle]]) {
            return window;
        }
    }
    return nil;
}

template <class View>
View* childOf(NSWindow* window, Class kind) {
    NSArray* children = [[window contentView] subviews];
    for (NSUInteger i = 0; i < [children count]; ++i) {
        if ([[children objectAtIndex:i] isKindOfClass:kind]) {
            return [children objectAtIndex:i];
        }
    }
    return nil;
}

class MacProgress : public testing::Test {
 protected:
    void SetUp() override {
        pool_ = [[NSAutoreleasePool alloc] init];
        [NSApplication sharedApplication];
        GSDebugAllocationActive(YES);
    }
    void TearDown() override { [pool_ drain]; }

    NSAutoreleasePool* pool_ = nil;
};

TEST_F(MacProgress, IsLaidOutAndGoneAfterwards) {
    {
        NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
        platform::ProgressPanel panel(nullptr, panelTitle, panelMessage);
        NSWindow* window = openPanel();
        ASSERT_NE(window, nil);
        EXPECT_TRUE([window isKindOfClass:[NSPanel class]]);
        EXPECT_TRUE([window isVisible]);
        EXPECT_EQ([window styleMask], 1U);
        EXPECT_EQ([window backingType], 2U);
        EXPECT_TRUE(NSEqualSizes([[window contentView] frame].size, NSMakeSize(300, 120)));
        EXPECT_NEAR(NSMidX([window frame]), NSMidX([[window screen] frame]), 1);
        NSColor* colour = [[window backgroundColor] colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
        EXPECT_NEAR([colour redComponent], 0.15, 1e-6);
        EXPECT_NEAR([colour greenComponent], 0.15, 1e-6);
        EXPECT_NEAR([colour blueComponent], 0.15, 1e-6);
        EXPECT_EQ([colour alphaComponent], 1);

        auto* bar = childOf<NSProgressIndicator>(window, [NSProgressIndicator class]);
        EXPECT_TRUE(NSEqualRects([bar frame], NSMakeRect(20, 80, 260, 10)));
        EXPECT_FALSE([bar isIndeterminate]);
        EXPECT_EQ([bar minValue], 0);
        EXPECT_EQ([bar maxValue], 100);
        EXPECT_EQ([bar doubleValue], 0);
        panel.show(40);
        EXPECT_EQ([bar doubleValue], 40);

        auto* text = childOf<NSTextView>(window, [NSTextView class]);
        EXPECT_TRUE(NSEqualRects([text frame], NSMakeRect(20, 35, 260, 30)));
        EXPECT_FALSE([text isEditable]);
        EXPECT_FALSE([text isSelectable]);
        EXPECT_FALSE([text drawsBackground]);
        EXPECT_TRUE([[text textColor] isEqual:[NSColor whiteColor]]);
        EXPECT_STREQ([[text string] UTF8String], panelMessage);
        [pool drain];
    }
    EXPECT_EQ(openPanel(), nil);
    // GNUstep keeps every text view, so that one is not counted.
    EXPECT_EQ(GSDebugAllocationCount([NSPanel class]), 0);
    EXPECT_EQ(GSDebugAllocationCount([NSProgressIndicator class]), 0);
}

TEST_F(MacProgress, RepaintsWithoutAnEventLoop) { expectPanelToRepaint(); }

}  // namespace
