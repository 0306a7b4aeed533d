// Where the program comes to an end that nobody meant: a plug-in that does not come back, no time, no memory
// and no room left. It says so, names the file, and leaves it as it was.

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <thread>

#include "cli/Program.h"
#include "render/Sanitizer.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class Bounds : public Program {
 protected:
    Bounds() { write("in.json", original); }

    // In place, with a plug-in that does not come back.
    Outcome cropFaulty(const std::string& fault, std::vector<std::string> more = {}) {
        ::setenv("KESTRIN_FAULT", fault.c_str(), 1);
        ::setenv("KESTRIN_GOOD_PLUGIN", KESTRIN_GOOD_PLUGIN, 1);
        more.insert(more.begin(), {"crop", pathOf("in.json"), "--layer", "Card", "--in-place", "--plugin",
                                   KESTRIN_FAULTY_PLUGIN});
        return run(more);
    }
    // With a limit of the system's.
    Outcome runWithin(__rlimit_resource resource, rlim_t most, const std::vector<std::string>& arguments) {
        rlimit usual{};
        ::getrlimit(resource, &usual);
        const rlimit limit{most, usual.rlim_max};
        ::setrlimit(resource, &limit);
        const Outcome outcome = run(arguments);
        ::setrlimit(resource, &usual);
        return outcome;
    }
    void expectUntouched() {
        EXPECT_EQ(contentOf(pathOf("in.json")), original);
        EXPECT_EQ(files(), std::vector<std::string>{"in.json"});
    }

    const std::string original = project("Scene", {100, 80})
                                     .with(precomp("Card", {60, 60}).with(solid("Red", {10, 10}).at({20, 20})))
                                     .text();
};

TEST_F(Bounds, APlugInThatDoesNotComeBackIsNamed) {
    struct Case {
        const char* fault;
        const char* says;
    };
    for (const Case& each :
         {Case{"crash in start", "the plug-in crashed (Segmentation fault) in its EntryPointFunc"},
          Case{"crash in menu", "the plug-in crashed (Segmentation fault) in its UpdateMenuHook"},
          Case{"leave in menu", "the plug-in ended the program (exit code 0) in its UpdateMenuHook"}}) {
        SCOPED_TRACE(each.fault);
        const Outcome outcome = cropFaulty(each.fault);
        EXPECT_EQ(outcome.code, ExitCode::Failed);
        EXPECT_EQ(outcome.err, "kestrin: " + pathOf("in.json") + ": " + each.says + "; nothing was written\n");
        expectUntouched();
    }
    const Outcome looping = cropFaulty("loop in menu", {"--timeout", "0.5"});
    EXPECT_EQ(looping.code, ExitCode::TimedOut);
    EXPECT_THAT(
        looping.err,
        AllOf(HasSubstr("in.json: ended after 0.5 s, in the plug-in's UpdateMenuHook; nothing was written"),
              HasSubstr("--timeout")));
    expectUntouched();

    // What was written before is not denied.
    const Outcome late = cropFaulty("crash in end");
    EXPECT_EQ(late.code, ExitCode::Failed);
    EXPECT_THAT(late.err, HasSubstr("in its end; written before: " + pathOf("in.json")));
    EXPECT_NE(contentOf(pathOf("in.json")), original);
    EXPECT_EQ(cropFaulty("none").code, ExitCode::Done);
}

TEST_F(Bounds, TimeAndFramesOfACommand) {
    const std::string file = write(
        "long.json",
        project("Long", {900, 900})
            .lasting(0, 600'000)
            .with(precomp("Card", {900, 900}).with(solid("s", {9, 9}).shown(0, 600'000)).shown(0, 600'000))
            .text());
    const std::string before = contentOf(file);
    const std::vector<std::vector<std::string>> commands{
        {"crop", file, "--duration", "--layer", "Card", "--in-place"},
        {"crop", "--all", file, "--in-place"},
        {"panel", "2", file, "--layer", "Card", "-o", pathOf("out.json")},
        {"compare", file, pathOf("in.json"), "--comp", "Long"},
        {"report", file, pathOf("in.json"), "-o", pathOf("out.html")}};
    fs::remove(pathOf("in.json"));
    std::string other = before;
    other.replace(other.find("900"), 3, "901");
    write("in.json", other);
    for (const std::vector<std::string>& command : commands) {
        SCOPED_TRACE(testing::PrintToString(command));
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.code, ExitCode::BadInput);
        EXPECT_THAT(outcome.err, AllOf(HasSubstr("00,000 frames to draw"), HasSubstr("at most 500,000"),
                                       HasSubstr("--most-frames")));
    }
    const auto begin = std::chrono::steady_clock::now();
    std::vector<std::string> allowed = commands.front();
    allowed.insert(allowed.end(), {"--most-frames", "600000", "--timeout", "1"});
    const Outcome outcome = run(allowed);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    EXPECT_EQ(outcome.code, ExitCode::TimedOut);
    EXPECT_THAT(outcome.err, HasSubstr("long.json: ended after 1 s"));
    EXPECT_EQ(contentOf(file), before);
    EXPECT_EQ(files(), (std::vector<std::string>{"in.json", "long.json"}));
}

TEST_F(Bounds, MemoryThatRunsOutIsOneMessageWithTheFile) {
    if (headless::render::underAddressSanitizer) {
        GTEST_SKIP() << "the sanitizer needs more address space than can be limited";
    }
    const std::string large = write(
        "large.json", project("Large", {100, 80})
                          .with(precomp("Card", {60, 60}).with(solid(std::string(48 << 20, 'n'), {10, 10})))
                          .text());
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"info", large},
                                               {"render", large, "--frame", "0", "-o", pathOf("out.png")},
                                               {"compare", pathOf("in.json"), large},
                                               {"report", pathOf("in.json"), large, "-o", pathOf("out.html")},
                                               {"crop", large, "-o", pathOf("out.json")},
                                               {"crop", "--all", large, "-o", pathOf("out.json")},
                                               {"panel", "1", large, "-o", pathOf("out.json")},
                                               {"menu", large}}) {
        SCOPED_TRACE(testing::PrintToString(command));
        const Outcome outcome = runWithin(RLIMIT_AS, 160 << 20, command);
        EXPECT_EQ(outcome.code, ExitCode::Failed);
        EXPECT_EQ(outcome.err, "kestrin: " + large + ": there is not enough memory\n");
    }
    EXPECT_EQ(files(), (std::vector<std::string>{"in.json", "large.json"}));
}

TEST_F(Bounds, AFileThatMayNotGrowIsAnError) {
    const std::string large = write(
        "large.json", project("Large", {100, 80})
                          .with(precomp("Card", {60, 60}).with(solid(std::string(100'000, 'n'), {10, 10})))
                          .text());
    const std::string before = contentOf(large);
    const Outcome outcome = runWithin(RLIMIT_FSIZE, 64 << 10, {"crop", large, "--in-place"});
    EXPECT_EQ(outcome.code, ExitCode::Failed);
    EXPECT_THAT(outcome.err, HasSubstr("large.json"));
    EXPECT_EQ(contentOf(large), before);
    EXPECT_EQ(files(), (std::vector<std::string>{"in.json", "large.json"}));
}

TEST_F(Bounds, SignalsToTheProgramEndItsWork) {
    ::setenv("KESTRIN_FAULT", "loop in menu", 1);
    ::setenv("KESTRIN_GOOD_PLUGIN", KESTRIN_GOOD_PLUGIN, 1);
    for (const int signal : {SIGINT, SIGTERM, SIGKILL}) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t program = ::fork();
        if (program == 0) {
            ::close(ends[0]);
            ::execl(KESTRIN_PROGRAM, KESTRIN_PROGRAM, "menu", pathOf("in.json").c_str(), "--plugin",
                    KESTRIN_FAULTY_PLUGIN, nullptr);
            ::_exit(127);
        }
        ::close(ends[1]);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ::kill(program, signal);
        if (signal == SIGINT) {  // the first is left to the plug-in, which may be about to end
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            ::kill(program, signal);
        }
        int status = 0;
        ::waitpid(program, &status, 0);
        if (signal == SIGINT) {
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == static_cast<int>(ExitCode::Cancelled))
                << status;
        } else {
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << signal << " " << status;
        }
        char byte;
        EXPECT_EQ(::read(ends[0], &byte, 1), 0);  // nobody holds the other end any more
        ::close(ends[0]);
    }
    expectUntouched();
}

}  // namespace
}  // namespace kestrin_test
