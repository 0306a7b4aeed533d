// The person cancels: nothing is written, however it is done, and the program says so.

#include <gmock/gmock.h>
#include <pty.h>

#include "Program.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using testing::HasSubstr;

class Cancel : public Program {
 protected:
    // Asks at which resolution.
    std::vector<std::string> crop(std::vector<std::string> more = {}) const {
        std::vector<std::string> all{
            "crop", KESTRIN_EXAMPLE, "--layer",       "Big lantern", "--resolution",
            "half", "--preferences", pathOf("prefs"), "-o",          pathOf("out.json")};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    // With a terminal, on which the keys are pressed once this word stands there.
    Outcome runAtTerminal(std::vector<std::string> arguments, const std::string& word,
                          const std::string& keys) {
        arguments.insert(arguments.begin(), KESTRIN_PROGRAM);
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        winsize size{24, 60, 0, 0};
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
        if (child == 0) {
            ::setenv("TERM", "xterm", 1);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        Outcome outcome;
        bool pressed = false;
        char part[4096];
        for (ssize_t count; (count = ::read(terminal, part, sizeof part)) > 0;) {
            outcome.out.append(part, static_cast<std::size_t>(count));
            if (!pressed && outcome.out.find(word) != std::string::npos) {
                pressed = ::write(terminal, keys.data(), keys.size()) == static_cast<ssize_t>(keys.size());
            }
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ::close(terminal);
        EXPECT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status);
        outcome.code = static_cast<ExitCode>(WEXITSTATUS(status));
        return outcome;
    }
};

TEST_F(Cancel, ADialogByAnAnswerOrTheEndOfThem) {
    for (const std::string steps : {"escape\n", "check Remember My Choice\nclose\n", "type x\n"}) {
        input = write("steps", steps);
        const Outcome outcome = run(crop({"--answers", "-"}));
        EXPECT_EQ(outcome.code, ExitCode::Cancelled) << steps << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr("cancelled in the dialog \"Low Resolution\"; nothing was written"));
        EXPECT_EQ(files(), std::vector<std::string>{"steps"});
    }
    EXPECT_EQ(run(crop()).code, ExitCode::BadInput) << "nobody was asked";
    EXPECT_EQ(run(crop({"--answer", "Low Resolution=Fast"})).code, ExitCode::Done);
}

TEST_F(Cancel, AChoiceOfACancelledCommandIsNotRemembered) {
    const std::string in = write(
        "in.json", project("Scene", {100, 80})
                       .with(precomp("Card", {60, 60}).with(solid("Deep", {10, 10}).at({20, 20}).threeD()))
                       .text());
    const auto crop = [&](const std::string& resolution) {
        return run({"crop", in, "--layer", "Card", "--resolution", "half", "--preferences", pathOf("prefs"),
                    "-o", pathOf("out.json"), "--answer", "3D Layers=No,Remember My Choice", "--answer",
                    "Low Resolution=" + resolution})
            .code;
    };
    EXPECT_EQ(crop("escape"), ExitCode::Cancelled);
    EXPECT_EQ(files(), std::vector<std::string>{"in.json"});
    EXPECT_EQ(crop("Accurate"), ExitCode::Done);
    EXPECT_THAT(contentOf(pathOf("prefs")), HasSubstr("\"ThreeD\" = \"2\""));
}

TEST_F(Cancel, PreferencesLikewise) {
    const auto edit = [&](std::vector<std::string> answers) {
        std::vector<std::string> all{"preferences", "--preferences", pathOf("prefs")};
        for (const std::string& answer : answers) {
            all.insert(all.end(), {"--answer", answer});
        }
        return run(all);
    };
    for (const char* way : {"Cancel", "Padding,escape", "close"}) {
        const Outcome outcome = edit({std::string("Kestrin Preferences=") + way});
        EXPECT_EQ(outcome.code, ExitCode::Cancelled) << way;
        EXPECT_THAT(outcome.err, HasSubstr("nothing was written"));
        EXPECT_TRUE(files().empty());
    }
    // A dialog within that is closed leads back to the first.
    EXPECT_EQ(edit({"Kestrin Preferences=Padding,Panel,Save", "Kestrin Panel Preferences=close"}).code,
              ExitCode::Done);
    EXPECT_EQ(files(), std::vector<std::string>{"prefs"});
}

TEST_F(Cancel, AtATerminalByAnyKeyThatCancels) {
    for (const std::string keys : {"\x03", "\x04", "\x1b"}) {
        const Outcome outcome = runAtTerminal(crop(), "Accurate", keys);
        EXPECT_EQ(outcome.code, ExitCode::Cancelled) << outcome.out;
        EXPECT_THAT(outcome.out, HasSubstr("nothing was written"));
        EXPECT_TRUE(files().empty());
        EXPECT_EQ(runAtTerminal({"preferences", "--preferences", pathOf("prefs")}, "Help", keys).code,
                  ExitCode::Cancelled);
        EXPECT_TRUE(files().empty());
    }
    EXPECT_EQ(runAtTerminal(crop(), "Accurate", "\r").code, ExitCode::Done);
    EXPECT_EQ(files(), std::vector<std::string>{"out.json"});
}

TEST_F(Cancel, TheProgressLineFitsTheTerminal) {
    const Outcome outcome =
        runAtTerminal({"crop", "--all", KESTRIN_EXAMPLE, "-o", pathOf("out.json")}, "frames", "");
    EXPECT_EQ(outcome.code, ExitCode::Done);
    int drawn = 0;
    std::istringstream pieces(outcome.out);
    for (std::string piece; std::getline(pieces, piece, '\r');) {
        if (const std::size_t end = piece.find("\x1b[K"); end != std::string::npos) {
            EXPECT_LT(end, 60u) << piece;
            ++drawn;
        }
    }
    EXPECT_GT(drawn, 2);
}

}  // namespace
}  // namespace kestrin_test
