// What the program tells about itself: examples that work as printed, the manual page, the shells' completions.

#include <gmock/gmock.h>

#include <map>

#include "Program.h"
#include "cli/CommandLine.h"

namespace kestrin_test {
namespace {

using testing::HasSubstr;

class Help : public Program {
 protected:
    Help() { headless::cli::buildProgram(program, action); }

    std::vector<CLI::App*> verbs() { return program.get_subcommands({}); }

    // In the test's folder, with the program in the path.
    Outcome shell(const std::string& command) const {
        const std::string prepared = "cd '" + folder.string() + "' && PATH='" +
                                     fs::path(KESTRIN_PROGRAM).parent_path().string() + "':$PATH && { " +
                                     command + "\n} > .out 2> .err < /dev/null";
        const int status = std::system(("bash -c '" + quoted(prepared) + "'").c_str());
        return {static_cast<ExitCode>(WEXITSTATUS(status)), contentOf(pathOf(".out")),
                contentOf(pathOf(".err"))};
    }
    static std::string quoted(const std::string& text) {
        std::string result;
        for (const char character : text) {
            result += character == '\'' ? "'\\''" : std::string(1, character);
        }
        return result;
    }
    static bool has(const std::string& command) {
        return std::system(("command -v " + command + " > /dev/null").c_str()) == 0;
    }

    CLI::App program;
    headless::cli::Action action;
    const std::string described = KESTRIN_DESCRIBED;
};

TEST_F(Help, EveryVerbHasAnExampleThatWorksAsPrinted) {
    fs::create_directory(pathOf("examples"));
    fs::copy(KESTRIN_EXAMPLE, pathOf("examples"));
    const std::string mark = "Example: ";
    for (const CLI::App* verb : verbs()) {
        SCOPED_TRACE(verb->get_name());
        std::istringstream footer(verb->get_footer());
        int examples = 0;
        for (std::string line; std::getline(footer, line);) {
            if (line.starts_with(mark)) {
                const Outcome outcome = shell(line.substr(mark.size()));
                EXPECT_EQ(outcome.code, ExitCode::Done) << line << '\n' << outcome.err;
                ++examples;
            }
        }
        EXPECT_GE(examples, 1);
    }
}

TEST_F(Help, TheManualNamesEverythingAndIsCleanForItsReader) {
    if (!has("mandoc")) {
        GTEST_SKIP() << "mandoc is not installed";
    }
    const Outcome lint = shell("mandoc -T lint -W warning '" + described + "/kestrin.1'");
    EXPECT_EQ(static_cast<int>(lint.code), 0) << lint.out;
    const std::string page = shell("mandoc -T utf8 '" + described + "/kestrin.1' | col -b -x").out;
    std::string flowing;  // without the breaks and indentation of the page
    std::istringstream words(page);
    for (std::string word; words >> word;) {
        flowing += word + " ";
    }
    for (const CLI::App* verb : verbs()) {
        EXPECT_THAT(flowing, HasSubstr(verb->get_description().substr(1)));
        for (const CLI::Option* option : verb->get_options({})) {
            for (const std::string& name : option->get_lnames()) {
                EXPECT_THAT(flowing, HasSubstr(" --" + name));
            }
        }
    }
    EXPECT_THAT(flowing, HasSubstr("--layer \"Big lantern\" --padding 2 -o cropped.json"));
    EXPECT_THAT(flowing, HasSubstr("2 a wrong file, name or option"));
}

// What is offered for a line that ends where the cursor stands.
TEST_F(Help, ShellsCompleteVerbsOptionsAndChoices) {
    write("My \"file\" \U0001F3EE.lottie", "");
    const std::map<std::vector<std::string>, std::string> offered{
        {{"kestrin", "re"}, "render report "},
        {{"kestrin", "crop", "--plugi"}, "--plugin "},
        {{"kestrin", "crop", "x.json", "--resolution", ""}, "full half quarter third "},
    };
    for (const auto& [line, expected] : offered) {
        std::string words, text;
        for (const std::string& word : line) {
            words += "'" + word + "' ";
            text += (text.empty() ? "" : " ") + word;
        }
        SCOPED_TRACE(text);
        const Outcome bash =
            shell("source '" + described + "/kestrin.bash'; compopt() { :; }; COMP_WORDS=(" + words +
                  "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _kestrin; "
                  "printf '%s\\n' \"${COMPREPLY[@]}\" | sort | tr '\\n' ' '");
        EXPECT_EQ(bash.out == " " ? "" : bash.out, expected) << bash.err;
        if (has("fish")) {
            const Outcome fish =
                shell("HOME=$PWD fish -c \"source '" + described + "/kestrin.fish'; complete -C '" + text +
                      "'\" | cut -f 1 | sort | tr '\\n' ' '");
            EXPECT_EQ(fish.out, expected) << fish.err;
        }
    }
    if (has("fish")) {
        EXPECT_THAT(shell("HOME=$PWD fish -c \"source '" + described +
                          "/kestrin.fish'; complete -C 'kestrin info My'\"")
                        .out,
                    HasSubstr("My \"file\" \U0001F3EE.lottie"));
    }
    if (has("zsh")) {
        EXPECT_EQ(shell("zsh -n '" + described + "/_kestrin'").err, "");
    }
}

}  // namespace
}  // namespace kestrin_test
