#include "render/Frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include "Drawing.h"
#include "Workers.h"

namespace headless::render {
namespace {

constexpr int frameCount = 12;

// A box that goes one pixel to the right each frame.
std::string moving() {
    return textOf(
        document({solid(0, 0, 1, 2, "#ff0000",
                        R"("ks": {"p": {"a": 1, "k": [{"t": 0, "s": [0, 0]}, {"t": 12, "s": [12, 0]}]}})")}),
        {12, 2, 0, frameCount});
}

class FramesTest : public testing::Test {
 protected:
    FramesTest() { prepare(); }

    void prepare() { frames_.prepare(moving, frameCount); }
    // Where the box is.
    std::size_t at(int frame) { return row(frames_.frame(frame, 12, 2), 0).find('R'); }
    std::string errorAt(int frame) {
        try {
            at(frame);
        } catch (const RenderError& error) {
            return error.what();
        }
        return "none";
    }

    Frames frames_{{.frameTime = std::chrono::milliseconds(800)}, 2};
};

TEST_F(FramesTest, ComeInWhateverOrderTheyAreAskedFor) {
    for (const std::size_t frame : {0, 1, 2, 3, 3, 4, 2, 3, 4, 5, 11, 0, 2, 4, 6, 8, 10, 11}) {
        EXPECT_EQ(at(static_cast<int>(frame)), frame);
    }
    EXPECT_EQ(row(frames_.frame(11, 24, 2), 0).find('R'), 22u);
}

TEST_F(FramesTest, AreDrawnAheadOnlyInSequenceAndToTheEnd) {
    for (const int frame : {5, 3, 3, 0}) at(frame);
    EXPECT_EQ(workers().size(), 1u);
    for (int frame = 1; frame < frameCount; ++frame) EXPECT_EQ(at(frame), static_cast<std::size_t>(frame));
    EXPECT_EQ(workers().size(), 2u);
    const auto both = workers();
    at(0);
    at(1);
    EXPECT_EQ(workers(), both) << "a worker was replaced without need";
}

TEST_F(FramesTest, AFailureAheadCountsWhenItsFrameIsAskedFor) {
    for (const std::size_t frame : {0, 1, 2}) EXPECT_EQ(at(static_cast<int>(frame)), frame);
    ASSERT_EQ(workers().size(), 2u);
    ::kill(workers().back(), SIGKILL);  // gets frame 4 next
    EXPECT_EQ(at(3), 3u);
    EXPECT_EQ(errorAt(4), "the renderer crashed (Killed)");
    for (const std::size_t frame : {4, 5, 6, 7}) EXPECT_EQ(at(static_cast<int>(frame)), frame);
}

TEST_F(FramesTest, AnotherDocumentThrowsAwayWhatIsDrawnAhead) {
    at(0);
    at(1);
    ASSERT_EQ(workers().size(), 2u);
    ::kill(workers().back(), SIGSTOP);
    prepare();
    for (const std::size_t frame : {0, 1, 2, 3}) EXPECT_EQ(at(static_cast<int>(frame)), frame);
}

TEST(Frames, AWorldStaysWhileItIsHeld) {
    std::vector<World> held;
    {
        Frames frames;
        frames.prepare(moving, frameCount);
        for (int frame = 0; frame < 6; ++frame) {
            const auto depth = static_cast<Depth>(1 + frame % 3);
            held.push_back(frames.world(frame, {depth, 12 * (1 + frame / 3), 2}));
        }
        frames.frame(0, 12, 2);
    }
    for (std::size_t frame = 0; frame < held.size(); ++frame) {
        const World& world = held[frame];
        const std::size_t channelBytes = std::size_t{1} << frame % 3;
        std::string alphas;  // a digit for each pixel of the second row: whether there is any
        for (std::size_t x = 0; x < static_cast<std::size_t>(world.width); ++x) {
            const std::byte* alpha = world.memory.get() + world.rowBytes() + x * 4 * channelBytes;
            alphas += std::all_of(alpha, alpha + channelBytes, [](std::byte b) { return b == std::byte{}; })
                          ? '.'
                          : 'x';
        }
        const std::size_t scale = 1 + frame / 3;
        std::string expected(12 * scale, '.');
        EXPECT_EQ(alphas, expected.replace(frame * scale, scale, scale, 'x')) << frame;
    }
}

}  // namespace
}  // namespace headless::render
