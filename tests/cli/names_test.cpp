// Names are whatever an artist typed: any of them can be said, is shown as it is, and steers nothing.

#include <gmock/gmock.h>

#include "Program.h"
#include "cli/Progress.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Names : public Program {
 protected:
    // A composition of this name with a mask of this name, each beside others; there is a third layer.
    static std::string scene(const std::string& name) {
        return project("Scene", {100, 80})
            .with(solid("Other", {5, 5}))
            .with(precomp(name, {60, 60})
                      .with(solid("Red", {10, 10}).at({20, 20}))
                      .masked(box(0, 0, 49, 49), "Other")
                      .masked(box(10, 20, 39, 59), name))
            .with(solid("Below", {5, 5}))
            .text();
    }
    // As a prepared answer takes it.
    static std::string escaped(const std::string& name) {
        std::string result;
        for (const char character : name) {
            result +=
                std::string(std::string_view(",=\\").find(character) != std::string_view::npos ? "\\" : "") +
                character;
        }
        return result;
    }
};

TEST_F(Names, AnyNameCanBeSaidAndIsShownAsItIs) {
    for (const std::string name : {"two words", " spaces ", "\"quoted\" it's `so` $HOME", "[a,b]",
                                   "a=b,c\\d\\n", "\u706F\u7C60 \U0001F3EE", "\u0644\u0645\u0628\u0629",
                                   "--layer", "-o", "#3", "%s%n", "</script>", "//*", "null", "!Padding"}) {
        SCOPED_TRACE(name);
        std::string folderName = name;
        std::replace(folderName.begin(), folderName.end(), '/', '_');
        fs::create_directory(pathOf(folderName));
        const std::string place = folderName + "/" + folderName;
        const std::string in = write(place + ".json", scene(name));
        const std::string out = pathOf(place + " out.json");
        const auto crop = [&](std::vector<std::string> more) {
            more.insert(more.begin(), {"crop", in, "--layer=" + name, "-o", out});
            return run(std::move(more));
        };
        const Outcome visible = crop({});
        EXPECT_EQ(visible.code, ExitCode::Done) << visible.err;
        EXPECT_THAT(visible.out, HasSubstr("\"" + name + "\": 60 x 60 -> 10 x 10"));
        EXPECT_THAT(visible.out, HasSubstr("wrote " + out));
        EXPECT_EQ(run({"compare", in, out, "--comp=" + name}).code, ExitCode::Done);

        EXPECT_THAT(crop({"--mask=" + name}).out, HasSubstr("-> 30 x 40"));
        EXPECT_THAT(crop({"--mask", "--answer", "Choose Mask=" + escaped(name)}).out, HasSubstr("-> 30 x 40"));
        EXPECT_THAT(run({"info", in}).out, HasSubstr("\"" + name + "\", id \"" + name + "\": 60 x 60"));
        EXPECT_EQ(run({"menu", in, "--select=" + name}).out, "Layer > Kestrin\n");
        EXPECT_EQ(run({"render", in, "--comp=" + name, "--frame", "0", "-o", pathOf(place + ".png")}).code,
                  ExitCode::Done);
        EXPECT_THAT(run({"crop", in, "--layer=no " + name, "-o", out}).err,
                    HasSubstr("no layer is named \"no " + name + "\""));
    }
}

// An escape sequence, a line of its own, a control character of the second range, and marks that turn the order
// of what follows.
const std::string evil = "\x1b]0;title\x07\x1b[31mred\r\nwrote all\x7F\xC2\x9B\u202Etxt.\u2066\u200F\u061C";
const std::string evilShown =
    R"(\x1B]0;title\x07\x1B[31mred\x0D\nwrote all\x7F\x9B\u202Etxt.\u2066\u200F\u061C)";

void expectHarmless(const std::string& said) {
    SCOPED_TRACE(said);
    for (const char* harmful :
         {"\x1b", "\x07", "\r", "\nwrote all", "\x7F", "\xC2\x9B", "\u202E", "\u2066", "\u200F", "\u061C"}) {
        EXPECT_THAT(said, Not(HasSubstr(harmful)));
    }
}

TEST_F(Names, NothingInANameSteersTheTerminal) {
    const std::string in = write("in\x1b[31m.json", scene(evil));
    const std::string out = pathOf("out.json");
    const std::vector<std::vector<std::string>> commands{
        {"info", in},
        {"crop", in, "--layer", evil, "-o", out},
        {"compare", in, out},
        {"crop", in, "--layer", "none", "-o", out},
        {"crop", in, "--layer", evil, "--mask", "none", "-o", out},
        {"crop", in, "--all", "-o", out},
        {"render", in, "--comp", evil, "--frame", "0", "-o", pathOf("frame.png")},
        {"menu", in, "--select", evil + "?"},
        {"info", pathOf(evil)},
        {"info", in, evil},
    };
    for (const auto& command : commands) {
        const Outcome outcome = run(command);
        EXPECT_THAT(outcome.out + outcome.err, HasSubstr(evilShown));
        expectHarmless(outcome.out + outcome.err);
    }
    expectHarmless(run({"crop", in, "--layer", evil, "--mask", "--answers", "-", "-o", out}).err);
    const Outcome overlong = run({"menu", in, "--select", "\xE0\x80\x9B \xED\xA0\x80 \xF8"});
    EXPECT_THAT(overlong.err, HasSubstr(R"(\xE0\x80\x9B \xED\xA0\x80 \xF8)"));
}

TEST_F(Names, FactsKeepNamesAsTheyAre) {
    // The second use shows less of the composition than the first, and would show as much: a reason with a
    // name.
    const std::string in = write("in.json", project(evil, {300, 200})
                                                .with(useOf("Card", {100, 100}))
                                                .with(useOf("Card", {40, 40}).at({150, 0}))
                                                .having(comp("Card", {100, 100}).with(solid("s", {60, 60})))
                                                .text());
    const Outcome outcome = run({"crop", "--all", "--json", in, "-o", pathOf("out.json")});
    expectHarmless(outcome.out + outcome.err);
    const Json file = Json::parse(outcome.out)["files"][0];
    EXPECT_THAT(file["compositions"][0]["reason"].get<std::string>(),
                HasSubstr("of \"" + evil + "\" would differ"));
    EXPECT_EQ(file["comparison"]["verdict"], "equal");
    const Outcome lines = run({"crop", "--all", in, "-o", pathOf("out.json")});
    EXPECT_THAT(lines.out, HasSubstr("of \"" + evilShown + "\" would differ"));
    expectHarmless(lines.out + lines.err);
}

TEST(ProgressLine, FitsAnyWidth) {
    const std::string words = "7 %, 12 of 12 compositions, 1,000 of 1,000 frames, 10:20 left";
    for (int columns : {120, 80, 79}) {
        const std::string line = headless::cli::progressLine(7, words.substr(3), columns);
        EXPECT_LE(line.size(), static_cast<std::size_t>(columns));
        EXPECT_TRUE(line.starts_with("[") && line.ends_with("]   " + words)) << line;
    }
    EXPECT_EQ(headless::cli::progressLine(7, words.substr(3), 70), words);
}

TEST_F(Names, TheProgramPrintsInOnePlace) {
    int read = 0;
    for (const auto& entry : fs::directory_iterator(KESTRIN_CLI_SOURCES)) {
        const std::string name = entry.path().filename().string();
        if (name == "Print.cpp" || name == "describe.cpp" || entry.is_directory()) {
            continue;
        }
        ++read;
        for (const char* way : {"std::cout", "std::cerr", "stdout", "stderr", "printable("}) {
            const bool escapesForThePage = name == "ReportPage.cpp" && way == std::string("printable(");
            EXPECT_TRUE(escapesForThePage || contentOf(entry.path()).find(way) == std::string::npos)
                << name << " has its own " << way;
        }
    }
    EXPECT_GT(read, 20);
}

}  // namespace
}  // namespace kestrin_test
