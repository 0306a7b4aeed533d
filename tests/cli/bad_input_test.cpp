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
                                       .having(comp("Empty", {5, 5}))
                                       .text());
    }
};

TEST_F(BadInput, FilesThatAreNoProjects) {
    refuses({pathOf("absent.json"), "-o", pathOf("out.json")}, {"absent.json", "no such file"});
    refuses({pathOf("\x9B[31m\xC3(\xC3\xA9"), "-o", pathOf("out.json")},
            {"\\x9B[31m\\xC3(\xC3\xA9: there is no"});
    refuses({write("in.json", "{\"layers\": ["), "-o", pathOf("out.json")}, {"in.json", "not JSON"});
    Json picture = Json::parse(project("P", {10, 10}).text());
    picture["assets"].push_back({{"id", "i"}, {"w", 5}, {"h", 5}, {"u", "../"}, {"p", "secret.png"}});
    refuses({write("in.json", picture.dump()), "-o", pathOf("out.json")},
            {"assets[0]", "../secret.png", "outside the file", "--images"});
}

TEST_F(BadInput, NamesAndFramesThatDoNotExist) {
    struct Case {
        std::vector<std::string> options, words;
        ExitCode code = ExitCode::BadInput;
    };
    for (const Case& each :
         std::vector<Case>{{{"--comp", "Cart"}, {"no composition", "\"Cart\"", "\"Scene\", \"Card\""}},
                           {{"--layer", "Cart"}, {"no layer", "\"Cart\"", "\"Scene\"", "#3 \"Words\""}},
                           {{"--layer", "Card"}, {"more than one layer", "#1 \"Card\", #2 \"Card\""}},
                           {{"--frame", "30"}, {"frame 30", "\"Scene\"", "0 to 29"}},
                           {{"--time", "1.5"}, {"1.5 s", "lasts 1 s"}},
                           {{"--padding", "lots"}, {"--padding", "lots"}},
                           {{"--plugin", "none.so"}, {"none.so"}},
                           {{"--layer", "#1", "--resolution", "half"}, {"Low Resolution", "Accurate", "Fast"}},
                           {{"--layer", "Words"}, {"\"Scene\"", "pre-composition"}, ExitCode::NothingToDo},
                           {{"--comp", "Empty"}, {"has no layers"}, ExitCode::NothingToDo}}) {
        std::vector<std::string> arguments{scene(), "-o", pathOf("out.json")};
        arguments.insert(arguments.end(), each.options.begin(), each.options.end());
        refuses(arguments, each.words, each.code);
    }
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

}  // namespace

}  // namespace kestrin_test
