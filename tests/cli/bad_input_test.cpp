// What cannot be done is refused with a message that names it, an exit code of its own, and nothing written.

#include <gmock/gmock.h>

#include "Program.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class BadInput : public Program {
 protected:
    void refusesContent(const std::string& content, const std::vector<std::string>& words) {
        SCOPED_TRACE(content.substr(0, 200));
        refuses(std::vector<std::string>{write("in.json", content), "-o", pathOf("out.json")}, words);
    }

    void refuses(std::vector<std::string> arguments, const std::vector<std::string>& words,
                 ExitCode code = ExitCode::BadInput) {
        arguments.insert(arguments.begin(), "crop");
        const auto before = files();
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_THAT(outcome.err, StartsWith("kestrin: "));
        for (const std::string& word : words) {
            EXPECT_THAT(outcome.err, HasSubstr(word));
        }
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(files(), before);
    }

    std::string scene() {
        return write("scene.json", project("Scene", {100, 80})
                                       .with(precomp("Card", {60, 60}).with(solid("Red", {10, 10})))
                                       .with(useOf("Card", {60, 60}))
                                       .with(text("Words"))
                                       .text());
    }
};

TEST_F(BadInput, FilesThatAreNoProjects) {
    refuses({pathOf("absent.json"), "-o", pathOf("out.json")}, {"absent.json", "no such file"});
    refusesContent("{\"layers\": [", {"in.json", "not JSON"});
    refusesContent("{\"name\": \"something else\"}", {"in.json", "not a Lottie animation"});
    refusesContent(project("P", {10, 10}).with(useOf("Missing", {5, 5})).text(),
                   {"layers[0].refId", "no asset \"Missing\""});
    refusesContent(project("P", {10, 10})
                       .with(useOf("A", {5, 5}))
                       .having(comp("A", {5, 5}).with(useOf("B", {5, 5})))
                       .having(comp("B", {5, 5}).with(useOf("A", {5, 5})))
                       .text(),
                   {"\"A\"", "contains itself"});
    refusesContent(project("P", {10, 10})
                       .with(solid("One", {5, 5}).index(1).childOf(2))
                       .with(solid("Two", {5, 5}).index(2).childOf(1))
                       .text(),
                   {"layers[0].parent", "circle"});
    Json picture = Json::parse(project("P", {10, 10}).text());
    picture["assets"].push_back({{"id", "i"}, {"w", 5}, {"h", 5}, {"u", "../"}, {"p", "secret.png"}});
    refusesContent(picture.dump(), {"assets[0]", "../secret.png", "outside the file", "--images"});
}

TEST_F(BadInput, NamesAndFramesThatDoNotExist) {
    const std::string file = scene();
    const std::string out = pathOf("out.json");
    refuses({file, "--comp", "Cart", "-o", out}, {"no composition", "\"Cart\"", "\"Scene\", \"Card\""});
    refuses({file, "--layer", "Cart", "-o", out}, {"no layer", "\"Cart\"", "\"Scene\"", "#3 \"Words\""});
    refuses({file, "--layer", "Card", "-o", out}, {"more than one layer", "#1 \"Card\", #2 \"Card\""});
    refuses({file, "--layer", "#4", "-o", out}, {"no layer", "\"#4\""});
    refuses({file, "--frame", "30", "-o", out}, {"frame 30", "\"Scene\"", "0 to 29"});
    refuses({file, "--comp", "Card", "--frame", "-1", "-o", out}, {"frame -1", "\"Card\""});
    refuses({file, "--time", "1.5", "-o", out}, {"1.5 s", "lasts 1 s"});
    refuses({file, "--padding", "lots", "-o", out}, {"--padding", "lots"});
    refuses({file, "--plugin", pathOf("none.so"), "-o", out}, {"none.so"});
    refuses({file, "--layer", "Words", "-o", out}, {"\"Scene\"", "pre-composition"}, ExitCode::NothingToDo);
}

TEST_F(BadInput, OutputsThatCannotBeWritten) {
    const std::string file = scene();
    const std::string content = contentOf(file);
    refuses({file}, {"-o", "--in-place"});
    refuses({file, "-o", file}, {"is the input", "--in-place"});
    refuses({file, "-o", pathOf("none/out.json")}, {"none/out.json", "no folder"});
    refuses({file, "-o", folder.string()}, {"is a folder"});
    EXPECT_EQ(contentOf(file), content);
}

TEST_F(BadInput, ADialogWithoutAnAnswerOrWithAWrongOne) {
    const std::string file = scene();
    const std::vector<std::string> half{file, "--layer",         "#1", "--resolution", "half",
                                        "-o", pathOf("out.json")};
    refuses(half, {"Low Resolution", "Accurate", "Fast"});
    auto wrong = half;
    wrong.insert(wrong.end(), {"--answer", "Low Resolution=Precise"});
    refuses(wrong, {"Precise", "Accurate"});
}

TEST_F(BadInput, NamesCannotSteerTheTerminal) {
    const std::string file = write("in.json", project("Sc\x1b[31mene\xC2\x9B", {100, 80}).text());
    const Outcome outcome = run({"info", file});
    EXPECT_EQ(outcome.code, ExitCode::Done);
    EXPECT_THAT(outcome.out, HasSubstr("\"Sc\\x1B[31mene\\x9B\""));
    refuses({pathOf("\x9B[31m\xC3(\xC3\xA9"), "-o", pathOf("out.json")},
            {"\\x9B[31m\\xC3(\xC3\xA9: there is no"});
}

}  // namespace

}  // namespace kestrin_test
