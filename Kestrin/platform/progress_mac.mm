// The progress panel in AppKit, memory managed by hand.
//
// Nothing here throws or catches; the host's event loop does not run while the panel is open, so everything
// that changes is drawn and flushed at once.

#import <AppKit/AppKit.h>

#if defined(__APPLE__)
#import <QuartzCore/CATransaction.h>
#endif

#include "platform/progress.h"

namespace {

class AutoreleasePool {
 public:
    AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
    ~AutoreleasePool() { [pool_ drain]; }
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

 private:
    NSAutoreleasePool* pool_;
};

// Windows that Core Animation composes show what was drawn only once its transaction ends.
void flushToScreen() {
#if defined(__APPLE__)
    [CATransaction flush];
#endif
}

NSPanel* newPanel(const char* title) {
    NSPanel* panel = [[NSPanel alloc] initWithContentRect:NSMakeRect(0, 0, 300, 120)
                                                styleMask:NSWindowStyleMaskTitled
                                                  backing:NSBackingStoreBuffered
                                                    defer:NO];
    [panel setReleasedWhenClosed:NO];
    [panel setTitle:[NSString stringWithUTF8String:title]];
    [panel setBackgroundColor:[NSColor colorWithRed:0.15 green:0.15 blue:0.15 alpha:1]];
    return panel;
}

NSProgressIndicator* newBar() {
    NSProgressIndicator* bar = [[NSProgressIndicator alloc] initWithFrame:NSMakeRect(20, 80, 260, 10)];
    [bar setIndeterminate:NO];
    [bar setMaxValue:100];
    [bar setDoubleValue:0];
    return bar;
}

NSTextView* newText(const char* message) {
    NSTextView* text = [[NSTextView alloc] initWithFrame:NSMakeRect(20, 35, 260, 30)];
    [text setEditable:NO];
    [text setSelectable:NO];
    [text setDrawsBackground:NO];
    [text setTextColor:[NSColor whiteColor]];
    [text setString:[NSString stringWithUTF8String:message]];
    return text;
}

}  // namespace

namespace platform {

struct ProgressPanel::Panel {
    Panel(const char* title, const char* message)
        : panel(newPanel(title)), bar(newBar()), text(newText(message)) {
        [[panel contentView] addSubview:bar];
        [[panel contentView] addSubview:text];
        [panel center];
        [panel makeKeyAndOrderFront:nil];
        [panel display];
        flushToScreen();
    }
    ~Panel() {
        [panel close];
        [text release];
        [bar release];
        [panel release];
        flushToScreen();
    }
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    NSPanel* panel;
    NSProgressIndicator* bar;
    NSTextView* text;
};

ProgressPanel::ProgressPanel(const SPBasicSuite*, const char* title, const char* message) {
    const AutoreleasePool pool;
    panel_ = std::make_unique<Panel>(title, message);
}

ProgressPanel::~ProgressPanel() {
    const AutoreleasePool pool;
    panel_.reset();
}

void ProgressPanel::show(int percent) noexcept {
    const AutoreleasePool pool;
    [panel_->bar setDoubleValue:percent];
    [panel_->panel displayIfNeeded];
    flushToScreen();
}

}  // namespace platform
