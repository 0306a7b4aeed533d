// Whatever happens to the program, and whenever: each of its files is the old one or the new one, whole.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>

#include "cli/Program.h"
#include "files/WholeFile.h"
#include "model/Preferences.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using headless::model::Preferences;
using testing::AnyOf;
using testing::HasSubstr;

constexpr int killed = 0;

class Stopped : public Program {
 protected:
    // Runs the program with the nth of the calls by which it changes files stopped. False when there is none.
    bool runStopped(int call, int error, const std::vector<std::string>& arguments) {
        const std::string mark = pathOf("stopped");
        fs::remove(mark);
        ::setenv("KESTRIN_STOP", (std::to_string(call) + " " + std::to_string(error) + " " + mark).c_str(), 1);
        ::setenv("LD_PRELOAD", KESTRIN_STOP_LIBRARY, 1);
        ::setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
        outcome = run(arguments);
        ::unsetenv("LD_PRELOAD");
        return fs::remove(mark);
    }

    // The program at each stop in turn, `prepare` before and `check` after it.
    template <class Prepare, class Check>
    void sweep(int error, int leastStops, const std::vector<std::string>& arguments, Prepare prepare,
               Check check) {
        for (int call = 1;; ++call) {
            prepare();
            const auto before = files();
            const bool stopped = runStopped(call, error, arguments);
            SCOPED_TRACE("call " + std::to_string(call) + " gives " + std::to_string(error));
            check();
            if (!stopped) {
                EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
                EXPECT_GT(call, leastStops);
                break;
            }
            // Only a program that was killed may leave something beside its files.
            EXPECT_LE(files().size(), before.size() + (error == killed ? 1u : 0u));
            if (error == killed) {
                EXPECT_THAT(outcome.err, HasSubstr("(exit code 99)"));
            } else {
                EXPECT_THAT(outcome.err, HasSubstr("cannot write"));
            }
            EXPECT_EQ(outcome.code, ExitCode::Failed);
            if (HasFailure()) {
                break;
            }
            clear();
        }
    }
    void clear() {
        for (const std::string& name : files()) {
            fs::remove(folder / name);
        }
    }

    Outcome outcome;
};

TEST_F(Stopped, ProjectAndPreferencesAreOldOrNew) {
    const std::string project = kestrin_test::project("Scene", {100, 80})
                                    .with(precomp("Card", {60, 60}).with(solid("Red", {10, 10}).at({20, 20})))
                                    .text();
    const std::string oldPreferences = "# mine\n\n[\"Other\"]\n\t\"key\" = \"1\"\n";
    const auto prepare = [&] {
        write("in.json", project);
        write("out.json", "old");
        fs::permissions(pathOf("out.json"), fs::perms(0640));
        fs::create_symlink("out.json", pathOf("link.json"));
        write("prefs", oldPreferences);
    };
    std::vector<std::string> arguments = {"crop", "--layer", "Card", "--padding", "1", "--resolution", "half"};
    arguments.insert(arguments.end(),
                     {"--answer", "Low Resolution=Accurate,Remember My Choice", "--preferences",
                      pathOf("prefs"), "-o", pathOf("link.json"), pathOf("in.json")});
    prepare();
    ASSERT_EQ(run(arguments).code, ExitCode::Done);
    const std::string result = contentOf(pathOf("out.json"));
    const std::string newPreferences = contentOf(pathOf("prefs"));
    EXPECT_THAT(newPreferences, HasSubstr("\"Resolution\" = \"1\""));
    EXPECT_THAT(newPreferences, testing::Not(HasSubstr("Padding")));  // asked for this once
    clear();
    for (const int error : {killed, ENOSPC, EACCES}) {
        sweep(error, 10, arguments, prepare, [&] {
            EXPECT_EQ(contentOf(pathOf("in.json")), project);
            EXPECT_THAT(contentOf(pathOf("out.json")), AnyOf("old", result));
            EXPECT_THAT(contentOf(pathOf("prefs")), AnyOf(oldPreferences, newPreferences));
            EXPECT_TRUE(fs::is_symlink(pathOf("link.json")));
            EXPECT_EQ(fs::status(pathOf("out.json")).permissions(), fs::perms(0640));
        });
        clear();
    }
}

TEST_F(Stopped, APictureIsOldOrNew) {
    const std::string project = kestrin_test::project("Scene", {20, 10}).with(solid("Red", {10, 10})).text();
    const std::vector<std::string> arguments = {"render", pathOf("in.json"), "--frame", "0",
                                                "-o",     pathOf("out.png")};
    write("in.json", project);
    ASSERT_EQ(run(arguments).code, ExitCode::Done);
    const std::string result = contentOf(pathOf("out.png"));
    struct stat about {};
    ASSERT_EQ(::stat(pathOf("out.png").c_str(), &about), 0);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(about.st_mode & 0777, 0666 & ~mask);
    const auto prepare = [&] { write("in.json", project), write("out.png", "old"); };
    sweep(killed, 5, arguments, prepare,
          [&] { EXPECT_THAT(contentOf(pathOf("out.png")), AnyOf("old", result)); });
}

TEST_F(Stopped, WhereNothingCanBeWrittenTheLinkAndTheFileStay) {
    fs::create_directory(pathOf("there"));
    fs::create_symlink("there/new", pathOf("link"));
    headless::writeWhole(pathOf("link"), "one");  // it leads to no file yet
    EXPECT_EQ(contentOf(pathOf("there/new")), "one");
    fs::remove_all(pathOf("there"));
    EXPECT_THROW(headless::writeWhole(pathOf("link"), "two"), std::runtime_error);
    EXPECT_TRUE(fs::is_symlink(pathOf("link")));
}

TEST_F(Stopped, ProgramsThatSavePreferencesAtOnceLoseNothing) {
    constexpr int programs = 4;
    constexpr int rounds = 25;
    const std::string file = write("prefs", "[\"S\"]\n\"gone\" = \"1\"\n");
    std::vector<pid_t> children;
    for (int program = 0; program < programs; ++program) {
        const pid_t child = ::fork();
        if (child == 0) {
            try {
                Preferences store = Preferences::load(file);
                for (int round = 0; round < rounds; ++round) {
                    store.setLong("S", std::to_string(program) + "." + std::to_string(round), round);
                    store.remove("S", "gone");
                    store.save(file);
                }
                ::_exit(0);
            } catch (...) {
                ::_exit(1);
            }
        }
        children.push_back(child);
    }
    for (int read = 0; read < 200; ++read) {
        EXPECT_NO_THROW(Preferences::load(file));  // never half of one
    }
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const Preferences store = Preferences::load(file);
    for (int entry = 0; entry < programs * rounds; ++entry) {
        EXPECT_TRUE(store.has("S", std::to_string(entry / rounds) + "." + std::to_string(entry % rounds)))
            << entry;
    }
    EXPECT_FALSE(store.has("S", "gone"));
    EXPECT_EQ(files(), std::vector<std::string>{"prefs"});
}

}  // namespace

}  // namespace kestrin_test
