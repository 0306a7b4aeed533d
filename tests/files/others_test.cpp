// Files that are not ours alone: other runs at the same time, other people's files, links and permissions.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <thread>

#include "archive/DotLottie.h"
#include "archive/Packed.h"
#include "cli/Output.h"
#include "cli/Program.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using headless::Lost;
using headless::ReadOnly;
using headless::writeWhole;
using headless::cli::ResultFile;
using testing::HasSubstr;

class Others : public Program {
 protected:
    static std::string scene() {
        return project("Scene", {100, 80})
            .with(precomp("Card", {60, 60}).with(solid("Red", {10, 20}).at({5, 5})))
            .text();
    }
    std::string refusal(const std::string& file, ReadOnly how = ReadOnly::Stays) {
        try {
            writeWhole(file, "new", how);
            return "";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }
    struct stat statusOf(const std::string& name) {
        struct stat about {};
        EXPECT_EQ(::lstat(pathOf(name).c_str(), &about), 0);
        return about;
    }
    static constexpr uid_t somebody = 65'534;
    static bool mayGiveAway() { return ::geteuid() == 0; }
};

TEST_F(Others, RunsOnOneArchiveLoseNoCrop) {
    for (int round = 0; round < 6; ++round) {
        const std::string file = write("in.lottie", packed({{"a/x.json", scene()}, {"a/y.json", scene()}}));
        std::map<std::string, Outcome> outcomes;
        std::vector<std::thread> runs;
        for (const std::string animation : {"x", "y"}) {
            fs::create_directory(folder / animation);
            Outcome& outcome = outcomes[animation];
            runs.emplace_back([&outcome, file, animation, this] {
                outcome = run({"crop", "--all", file, "--animation", animation, "--in-place"}, {}, animation);
            });
        }
        for (std::thread& each : runs) {
            each.join();
        }
        int done = 0;
        const auto archive = headless::archive::openArchive(file);
        for (const auto& [animation, outcome] : outcomes) {
            const Size size = headless::archive::openAnimation(archive, animation)->items[1]->size;
            const bool isCropped = size != Size{60, 60};
            EXPECT_EQ(isCropped, outcome.code == ExitCode::Done) << outcome.err;
            if (!isCropped) {
                EXPECT_THAT(outcome.err, HasSubstr("in.lottie was changed by somebody else"));
            }
            done += isCropped;
        }
        EXPECT_GT(done, 0);
    }
}

TEST_F(Others, WhatWasReplacedOrDeletedMeanwhileStaysSo) {
    const std::string file = write("in.json", scene());
    const auto cropped = headless::model::Project::read(scene());
    const auto written = [&] {
        ResultFile result(file, file, ReadOnly::Stays);
        return [result, &cropped]() mutable {
            result.put(*cropped, "");
            try {
                result.write();
                return std::string();
            } catch (const headless::cli::Stop& stop) {
                return std::string(stop.what());
            }
        };
    };
    EXPECT_EQ(written()(), "");
    auto replaced = written();
    const auto time = fs::last_write_time(file);
    std::string other = scene();
    other[other.find("Scene")] = 'O';  // of the same size, at the same time, in the same file
    write("in.json", other);
    fs::last_write_time(file, time);
    EXPECT_THAT(replaced(), HasSubstr("in.json was changed by somebody else"));
    EXPECT_EQ(contentOf(file), other);
    auto deleted = written();
    fs::remove(file);
    EXPECT_THAT(deleted(), HasSubstr("in.json was changed by somebody else"));
    EXPECT_EQ(files(), std::vector<std::string>{});
}

TEST_F(Others, AReadOnlyFileIsReplacedOnlyByForce) {
    const std::string file = write("in.json", scene());
    const std::string out = write("out.json", "old");
    fs::permissions(out, fs::perms(0444));
    const Outcome refused = run({"crop", file, "-o", out});
    EXPECT_EQ(refused.code, ExitCode::BadInput);
    EXPECT_THAT(refused.err,
                HasSubstr("out.json: the file is read-only; make it writable first, or say --force"));
    EXPECT_EQ(contentOf(out), "old");
    EXPECT_EQ(run({"crop", file, "-o", out, "--force"}).code, ExitCode::Done);
    EXPECT_NE(contentOf(out), "old");
    EXPECT_EQ(statusOf("out.json").st_mode & 0777, 0444u);

    fs::permissions(file, fs::perms(0444));
    EXPECT_EQ(run({"crop", "--all", file, "--in-place"}).code, ExitCode::BadInput);
    EXPECT_EQ(contentOf(file), scene());
    fs::permissions(write("prefs", ""), fs::perms(0444));
    EXPECT_EQ(run({"preferences", "--preferences", pathOf("prefs")}).code, ExitCode::BadInput);
}

TEST_F(Others, HardLinksAreSaidAndTheLongestNamesAreWritten) {
    const std::string file = write("in.json", scene());
    const std::string out = write("out.json", "old");
    fs::create_hard_link(out, pathOf("other"));
    EXPECT_THAT(run({"crop", file, "-o", out}).err, HasSubstr("out.json had 1 other name (hard links)"));
    EXPECT_EQ(contentOf(pathOf("other")), "old");

    const std::string longest = std::string(250, 'n') + ".json";
    EXPECT_EQ(run({"crop", file, "-o", pathOf(longest)}).code, ExitCode::Done);
    EXPECT_EQ(contentOf(pathOf(longest)), contentOf(out));
}

TEST_F(Others, OwnersAreKeptWhereTheSystemLetsUs) {
    if (!mayGiveAway()) {
        GTEST_SKIP() << "only root can give files away";
    }
    const std::string file = write("kept", "old");
    ASSERT_EQ(::chown(file.c_str(), somebody, somebody), 0);
    const Lost kept = writeWhole(file, "new");
    EXPECT_FALSE(kept.owner || kept.group);
    EXPECT_EQ(statusOf("kept").st_uid, somebody);
    EXPECT_EQ(statusOf("kept").st_gid, somebody);

    // Somebody's folder with a file of ours that all may write to, but our group more than others.
    write("lost", "old");
    fs::permissions(pathOf("lost"), fs::perms(0676));
    ASSERT_EQ(::chown(folder.c_str(), somebody, somebody), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        bool asExpected = ::setgid(somebody) == 0 && ::setuid(somebody) == 0;
        const Lost lost = writeWhole(pathOf("lost"), "new");
        ::_exit(asExpected && lost.owner && lost.group ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contentOf(pathOf("lost")), "new");
    EXPECT_EQ(statusOf("lost").st_mode & 0777, 0666u);  // the new group gets no more than others
}

TEST_F(Others, TrapsInAFolderForEverybodyAreNotSteppedInto) {
    if (!mayGiveAway()) {
        GTEST_SKIP() << "only root can give files away";
    }
    write("mine", "old");
    fs::create_directory(pathOf("all"));
    fs::permissions(pathOf("all"), fs::perms(01777));
    const std::string link = pathOf("all/link");
    fs::create_symlink("../mine", link);
    EXPECT_EQ(refusal(link), "");
    ASSERT_EQ(::lchown(link.c_str(), somebody, somebody), 0);
    write("mine", "old");
    EXPECT_THAT(refusal(link, ReadOnly::IsReplaced),
                HasSubstr("all/link: a link there belongs to somebody else"));
    fs::create_symlink("all/link", pathOf("by way"));
    EXPECT_THAT(refusal(pathOf("by way")), HasSubstr("belongs to somebody else"));
    const std::string theirs = write("all/theirs", "old");
    ASSERT_EQ(::chown(theirs.c_str(), somebody, somebody), 0);
    EXPECT_THAT(refusal(theirs), HasSubstr("the file there belongs to somebody else"));
    EXPECT_EQ(contentOf(theirs), "old");
    EXPECT_EQ(contentOf(pathOf("mine")), "old");
    // Found before the work begins.
    EXPECT_EQ(run({"crop", write("in.json", scene()), "-o", link}).code, ExitCode::BadInput);
    fs::permissions(pathOf("all"), fs::perms(0755));
    EXPECT_EQ(refusal(link), "");
}

}  // namespace
}  // namespace kestrin_test
