// Names are whatever an artist typed: any of them can be said, is shown as it is, and steers nothing.

#include <gmock/gmock.h>

#include "Program.h"
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

TEST_F(Names, NothingInANameSteersTheTerminal) {
    const std::string name = "\x1b]0;title\x07\x1b[31mred\r\n\x7F\xC2\x9B";
    const std::string shown = "\"\\x1B]0;title\\x07\\x1B[31mred\\x0D\\n\\x7F\\x9B\"";
    const std::string in = write("in\x1b[31m.json", scene(name));
    const std::string out = pathOf("out.json");
    const std::vector<std::vector<std::string>> commands{
        {"info", in},
        {"crop", in, "--layer", name, "-o", out},
        {"compare", in, out},
        {"crop", in, "--layer", "none", "-o", out},
        {"crop", in, "--layer", name, "--mask", "none", "-o", out},
        {"crop", in, "--all", "-o", out},
        {"render", in, "--comp", name, "--frame", "0", "-o", pathOf("frame.png")},
        {"menu", in, "--select", name + "?"},
    };
    for (const auto& command : commands) {
        const Outcome outcome = run(command);
        const std::string said = outcome.out + outcome.err;
        SCOPED_TRACE(said);
        EXPECT_THAT(said, HasSubstr(shown.substr(1, shown.size() - 2)));
        for (const char* harmful : {"\x1b", "\x07", "\r", "\x7F", "\xC2\x9B"}) {
            EXPECT_THAT(said, Not(HasSubstr(harmful)));
        }
    }
}

}  // namespace
}  // namespace kestrin_test
