#include "render/Renderer.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "Drawing.h"
#include "Workers.h"
#include "render/Sanitizer.h"

namespace headless::render {
namespace {

const Scene small{12, 2, 0, 10};

std::string redBox() {
    return textOf(document({solid(0, 0, 4, 2, "#ff0000")}), small);
}

// Each composition shows the one below many times.
std::string heavy() {
    Jsons assets{composition("0", {solid(0, 0, 4, 2, "#ff0000")})};
    for (int level = 1; level < 8; ++level) {
        assets.push_back(composition(std::to_string(level), Jsons(12, use(std::to_string(level - 1)))));
    }
    return textOf(document({use("7")}, assets), small);
}

std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const RenderError& error) {
        return error.what();
    }
    return "none";
}

std::string errorAfter(Renderer& renderer, const std::string& document) {
    return errorOf([&] {
        renderer.prepare(document);
        draw(renderer, 0, 12, 2);
    });
}

void expectDraws(Renderer& renderer) {
    renderer.prepare(redBox());
    EXPECT_EQ(row(draw(renderer, 0, 12, 2), 1), "RRRR........");
}

TEST(Renderer, RefusesWhatItCannotDrawAndGoesOn) {
    Renderer renderer({.picturePixels = 100});
    EXPECT_EQ(errorOf([&] { draw(renderer, 0, 4, 4); }), "no document is prepared");
    EXPECT_EQ(errorAfter(renderer, "[1, 2"), "the renderer cannot read the document");
    renderer.prepare(redBox());
    for (const auto& [width, height] :
         {std::pair(11, 10), std::pair(0, 4), std::pair(4, -1), std::pair(40'000, 1)}) {
        EXPECT_THROW(draw(renderer, 0, width, height), RenderError) << width << " x " << height;
    }
    EXPECT_EQ(row(draw(renderer, 0, 12, 2), 1), "RRRR........");
}

TEST(Renderer, ALateWorkerIsReplaced) {
    Renderer renderer({.frameTime = std::chrono::milliseconds(300)});
    EXPECT_EQ(errorAfter(renderer, heavy()), "the renderer takes longer than 0.3 s");
    EXPECT_EQ(errorOf([&] { draw(renderer, 0, 12, 2); }), "no document is prepared");
    expectDraws(renderer);
}

TEST(Renderer, TimeInWhichEverythingStandsStillIsNotHeldAgainstTheWorker) {
    Renderer renderer({.frameTime = std::chrono::milliseconds(400)});
    expectDraws(renderer);
    const pid_t self = ::getpid();
    const pid_t worker = workers().at(0);
    ::kill(worker, SIGSTOP);
    renderer.start({1, 12, 2, {}});
    const pid_t waker = ::fork();
    if (waker == 0) {
        ::usleep(1'000'000);
        ::kill(worker, SIGCONT);
        ::kill(self, SIGCONT);
        ::_exit(0);
    }
    ::raise(SIGSTOP);
    EXPECT_NE(renderer.finish(), nullptr);
    ::waitpid(waker, nullptr, 0);
}

TEST(Renderer, ADocumentThatOutgrowsTheMemoryIsAnError) {
    Renderer renderer({.memoryBytes = 300u << 20});
    const std::string wide =
        textOf(document({solid(0, 0, 4, 2, "#ff0000", "\"nm\": \"" + std::string(120u << 20, 'x') + '"')}));
    EXPECT_EQ(errorAfter(renderer, wide), "the document needs more memory than is allowed");
    expectDraws(renderer);
}

// Expressions, as those that never end, run in the module.
TEST(Renderer, WhatStopsTheModuleIsExplained) {
    Renderer renderer({.frameTime = std::chrono::milliseconds(500)});
    const auto moved = [](const std::string& expression) {
        return textOf(document({solid(0, 0, 4, 2, "#ff0000",
                                      R"("ks": {"p": {"a": 0, "k": [0, 0], "x": ")" + expression + R"("}})")}));
    };
    EXPECT_EQ(errorAfter(renderer, moved("while (true) {}")), "the renderer takes longer than 0.5 s");
    renderer.prepare(moved("var $bm_rt = nobody.position;"));
    EXPECT_EQ(row(draw(renderer, 0, 12, 2), 0), "RRRR........") << "one that throws leaves the value";
    renderer.prepare(moved("var $bm_rt = [value[0] + 2 * 3, value[1]];"));
    EXPECT_EQ(row(draw(renderer, 0, 12, 2), 0), "......RRRR..");
    renderer.prepare(moved("function f() { return f() + 1 } f();"));
    EXPECT_NE(errorOf([&] { draw(renderer, 0, 12, 2); }), "?");
    expectDraws(renderer);
}

TEST(Renderer, AWorkerThatDiesIsExplainedAndReplaced) {
    Renderer renderer;
    renderer.prepare(redBox());
    draw(renderer, 0, 12, 2);  // the worker stands, with no signal handler that it was born with
    ASSERT_EQ(workers().size(), 1u);
    ::kill(workers().front(), SIGKILL);
    EXPECT_EQ(errorOf([&] { draw(renderer, 0, 12, 2); }), "the renderer crashed (Killed)");
    expectDraws(renderer);
}

TEST(Renderer, LeavesNoProcessBehind) {
    {
        Renderer one;
        Renderer other;
        one.prepare(redBox());
        other.prepare(redBox());
    }
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
}

}  // namespace
}  // namespace headless::render
