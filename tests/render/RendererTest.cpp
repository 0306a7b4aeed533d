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

const Scene small{12, 2, 12, 2, 0, 10};

std::string redBox() {
    return normalise(document({solid(0, 0, 4, 2, "#ff0000")}), small);
}

// Each composition shows the one below many times.
std::string heavy() {
    Jsons assets{composition("0", {solid(0, 0, 4, 2, "#ff0000")})};
    for (int level = 1; level < 8; ++level) {
        assets.push_back(composition(std::to_string(level), Jsons(12, use(std::to_string(level - 1)))));
    }
    return normalise(document({use("7")}, assets), small);
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

TEST(Renderer, AWorkerThatOutgrowsItsMemoryIsReplaced) {
    if (underAddressSanitizer) GTEST_SKIP() << "the worker's memory is not limited";
    Renderer renderer({.memoryBytes = 400u << 20});
    EXPECT_NE(errorAfter(renderer, heavy()), "none");
    expectDraws(renderer);
    EXPECT_NE(errorOf([&] { draw(renderer, 0, 30'000, 5'000); }), "none");
    expectDraws(renderer);
}

TEST(Renderer, AWorkerThatDiesIsExplainedAndReplaced) {
    Renderer renderer;
    renderer.prepare(redBox());
    draw(renderer, 0, 12, 2);  // the worker stands, with no signal handler that it was born with
    ASSERT_EQ(workers().size(), 1u);
    ::kill(workers().front(), SIGSEGV);
    EXPECT_EQ(errorOf([&] { draw(renderer, 0, 12, 2); }), "the renderer crashed (Segmentation fault)");
    expectDraws(renderer);
}

TEST(Renderer, AWorkerThatReachesOutsideIsStoppedAndReplaced) {
    if (underAddressSanitizer) GTEST_SKIP() << "the worker is not confined";
    Renderer renderer;
    // The renderer would read the picture from disk.
    renderer.prepare(
        R"({"v":"5.5.0","fr":30,"ip":0,"op":10,"w":12,"h":2,"assets":[{"id":"i","w":2,"h":2,"u":"/",)"
        R"("p":"nowhere.png","e":0}],"layers":[{"ddd":0,"ty":2,"refId":"i","ip":0,"op":10,"st":0,)"
        R"("ks":{}}]})");
    EXPECT_EQ(errorOf([&] { draw(renderer, 0, 12, 2); }),
              "the renderer tried something that it may not do (openat)");
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
