// Writes the manual page and the completions of three shells, all from the program's own verbs and options.
//
// What an option takes follows from its type name: FILE, PNG, HTML and DIR are completed as files and folders,
// words with | between them are the choices, [X] may be left out, none is a switch. A positional without a type
// name is a file.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "cli/CommandLine.h"

namespace {

using namespace headless::cli;

std::string replaced(std::string text, const std::vector<std::pair<std::string, std::string>>& escapes) {
    for (const auto& [from, to] : escapes) {
        for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
            text.replace(at, from.size(), to);
        }
    }
    return text;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

std::string oneLine(const std::string& text) {
    return replaced(text, {{"\n", " "}});
}

// What the type name says, without the check that stands behind it.
std::string typeOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    return type.substr(0, type.find(':'));
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

std::vector<std::string> choicesOf(const CLI::Option& option) {
    const std::string type = typeOf(option);
    return type.find('|') == std::string::npos ? std::vector<std::string>() : split(type, '|');
}

enum class Takes { Nothing, Words, Choice, File, Folder };

Takes takesOf(const CLI::Option& option) {
    const std::string type = typeOf(option);
    if (!takesValue(option)) {
        return Takes::Nothing;
    }
    if (!choicesOf(option).empty()) {
        return Takes::Choice;
    }
    if (type == "DIR") {
        return Takes::Folder;
    }
    return type == "FILE" || type == "PNG" || type == "HTML" || (option.get_positional() && type.empty())
               ? Takes::File
               : Takes::Words;
}

// "-o", "--output"
std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back("--" + name);
    }
    return names;
}

std::vector<const CLI::App*> verbsOf(const CLI::App& program) {
    return program.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& verb) {
    return verb.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

std::vector<const CLI::Option*> positionalsOf(const CLI::App& verb) {
    return verb.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::string upperCase(std::string text) {
    for (char& letter : text) {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return text;
}

std::string joined(const std::vector<std::string>& words, const std::string& separator) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

// ---- The manual page --------------------------------------------------------------------------------

// Text that is shown as it stands, wherever on a line it comes.
std::string roff(const std::string& text) {
    std::string result = replaced(oneLine(text), {{"\\", "\\e"},
                                                  {"-", "\\-"},
                                                  {"'", "\\(aq"},
                                                  {"`", "\\(ga"},
                                                  {"^", "\\(ha"},
                                                  {"~", "\\(ti"},
                                                  {"\"", "\\(dq"}});
    return result.starts_with(".") ? "\\&" + result : result;
}

void writeManualOption(std::ostream& out, const CLI::Option& option) {
    out << ".TP\n";
    const char* separator = "";
    for (const std::string& name : namesOf(option)) {
        out << separator << "\\fB" << roff(name) << "\\fR";
        separator = ", ";
    }
    if (takesValue(option) && !typeOf(option).empty()) {
        out << " \\fI" << roff(typeOf(option)) << "\\fR";
    }
    out << '\n' << roff(option.get_description()) << '\n';
}

// An example stands on lines of its own; everything else flows.
void writeManualFooter(std::ostream& out, const std::string& footer) {
    const std::string mark = "Example: ";
    for (const std::string& line : split(footer, '\n')) {
        if (line.starts_with(mark)) {
            out << ".PP\n.nf\n.RS\n" << roff(line.substr(mark.size())) << "\n.RE\n.fi\n";
        } else {
            out << ".PP\n" << roff(line) << '\n';
        }
    }
}

void writeManual(std::ostream& out, const CLI::App& program) {
    out << ".TH KESTRIN 1 \"" KESTRIN_DATE "\" \"kestrin " KESTRIN_VERSION "\" \"User Commands\"\n"
        << ".SH NAME\nkestrin \\- crop Lottie compositions to their visible content\n"
        << ".SH SYNOPSIS\n";
    for (const CLI::App* verb : verbsOf(program)) {
        out << (verb == verbsOf(program).front() ? "" : ".br\n") << "\\fBkestrin " << roff(verb->get_name())
            << "\\fR [\\fIoptions\\fR]";
        for (const CLI::Option* positional : positionalsOf(*verb)) {
            out << " \\fI" << roff(positional->get_name()) << "\\fR";
        }
        out << '\n';
    }
    out << ".SH DESCRIPTION\n"
        << roff(program.get_description()) << "\n.PP\n"
        << "Compositions are resized, and what shows them is corrected, so that nothing on screen shifts. "
           "Files "
           "are written whole or not at all.\n";
    for (const CLI::App* verb : verbsOf(program)) {
        out << ".SH KESTRIN " << upperCase(verb->get_name()) << '\n' << roff(verb->get_description()) << ".\n";
        for (const CLI::Option* positional : positionalsOf(*verb)) {
            out << ".TP\n\\fI" << roff(positional->get_name()) << "\\fR\n"
                << roff(positional->get_description()) << '\n';
        }
        for (const CLI::Option* option : optionsOf(*verb)) {
            writeManualOption(out, *option);
        }
        writeManualFooter(out, verb->get_footer());
    }
    out << ".SH EXIT STATUS\n";
    for (const ExitMeaning& exit : exitMeanings) {
        out << ".TP\n" << static_cast<int>(exit.code) << '\n' << roff(exit.meaning) << '\n';
    }
}

// ---- bash -------------------------------------------------------------------------------------------

std::string bashTakes(const CLI::Option& option) {
    switch (takesOf(option)) {
        case Takes::Choice:
            return "takes=words words='" + joined(choicesOf(option), " ") + "'";
        case Takes::File:
            return "takes=default words=";
        case Takes::Folder:
            return "takes=dirnames words=";
        default:
            return "takes=none words=";
    }
}

void writeBash(std::ostream& out, const CLI::App& program) {
    std::vector<std::string> verbNames;
    for (const CLI::App* verb : verbsOf(program)) {
        verbNames.push_back(verb->get_name());
    }
    out << R"(# bash completion for kestrin
_kestrin() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} verb=${COMP_WORDS[1]}
    local words= takes=default
    if [ "$cur" = = ]; then
        cur=
    elif [ "$prev" = = ]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W ")"
        << joined(verbNames, " ") << R"( --help --version" -- "$cur")
        return
    fi
    case $verb in
)";
    for (const CLI::App* verb : verbsOf(program)) {
        std::vector<std::string> names;
        for (const CLI::Option* option : optionsOf(*verb)) {
            for (const std::string& name : namesOf(*option)) {
                names.push_back(name);
            }
        }
        out << "    " << verb->get_name() << ") words='" << joined(names, " ") << "' ;;\n";
    }
    out << "    esac\n    case $verb:$prev in\n";
    for (const CLI::App* verb : verbsOf(program)) {
        for (const CLI::Option* option : optionsOf(*verb)) {
            std::vector<std::string> patterns;
            for (const std::string& name : namesOf(*option)) {
                patterns.push_back(verb->get_name() + ":" + name);
            }
            if (takesValue(*option)) {
                out << "    " << joined(patterns, " | ") << ") " << bashTakes(*option) << " ;;\n";
            }
        }
    }
    out << R"(    esac
    if [ $takes = words ] || [[ $cur = -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
    elif [ $takes != none ]; then
        compopt -o $takes  # the shell itself knows best how to quote a name
    fi
}
complete -F _kestrin kestrin
)";
}

// ---- zsh --------------------------------------------------------------------------------------------

// Inside single quotes and one of the parts that colons and brackets divide.
std::string zsh(const std::string& text) {
    return replaced(oneLine(text), {{"\\", "\\\\"}, {"[", "\\["}, {"]", "\\]"}, {":", "\\:"}, {"'", "'\\''"}});
}

std::string zshAction(const CLI::Option& option) {
    switch (takesOf(option)) {
        case Takes::Choice:
            return "(" + joined(choicesOf(option), " ") + ")";
        case Takes::File:
            return "_files";
        case Takes::Folder:
            return "_files -/";
        default:
            return " ";
    }
}

void writeZsh(std::ostream& out, const CLI::App& program) {
    out << "#compdef kestrin\n_kestrin() {\n    local context state state_descr line\n    typeset -A opt_args\n"
           "    _arguments -C '(- *)--help[Print help]' '(- *)--version[Print the version]' '1:verb:->verb' "
           "'*::argument:->arguments'\n"
           "    case $state in\n    verb)\n        local -a verbs=(\n";
    for (const CLI::App* verb : verbsOf(program)) {
        out << "            '" << verb->get_name() << ":" << zsh(verb->get_description()) << "'\n";
    }
    out << "        )\n        _describe verb verbs\n        ;;\n    arguments)\n        case $words[1] in\n";
    for (const CLI::App* verb : verbsOf(program)) {
        out << "        " << verb->get_name() << ")\n            _arguments";
        for (const CLI::Option* option : optionsOf(*verb)) {
            for (const std::string& name : namesOf(*option)) {
                const bool isLong = name.starts_with("--");
                const bool takes = takesValue(*option);
                out << " \\\n                '*" << name << (takes ? (isLong ? "=" : "+") : "") << '['
                    << zsh(option->get_description()) << ']'
                    << (takes ? ":" + zsh(typeOf(*option)) + ":" + zshAction(*option) : "") << '\'';
            }
        }
        for (const CLI::Option* positional : positionalsOf(*verb)) {
            out << " \\\n                ':" << zsh(positional->get_name()) << ':' << zshAction(*positional)
                << '\'';
        }
        out << "\n            ;;\n";
    }
    out << "        esac\n        ;;\n    esac\n}\n_kestrin \"$@\"\n";
}

// ---- fish -------------------------------------------------------------------------------------------

std::string fish(const std::string& text) {
    return "'" + replaced(oneLine(text), {{"\\", "\\\\"}, {"'", "\\'"}}) + "'";
}

void writeFish(std::ostream& out, const CLI::App& program) {
    out << "# fish completion for kestrin\n"
           "complete -c kestrin -n __fish_use_subcommand -f -l help -d 'Print help'\n"
           "complete -c kestrin -n __fish_use_subcommand -f -l version -d 'Print the version'\n";
    for (const CLI::App* verb : verbsOf(program)) {
        out << "complete -c kestrin -n __fish_use_subcommand -f -a " << verb->get_name() << " -d "
            << fish(verb->get_description()) << '\n';
    }
    for (const CLI::App* verb : verbsOf(program)) {
        for (const CLI::Option* option : optionsOf(*verb)) {
            out << "complete -c kestrin -n '__fish_seen_subcommand_from " << verb->get_name() << "'";
            for (const std::string& name : option->get_snames()) {
                out << " -s " << name;
            }
            for (const std::string& name : option->get_lnames()) {
                out << " -l " << name;
            }
            switch (takesOf(*option)) {
                case Takes::Nothing:
                    break;
                case Takes::Words:
                    out << " -x";
                    break;
                case Takes::Choice:
                    out << " -x -a " << fish(joined(choicesOf(*option), " "));
                    break;
                case Takes::File:
                    out << " -r -F";
                    break;
                case Takes::Folder:
                    out << " -x -a '(__fish_complete_directories)'";
                    break;
            }
            out << " -d " << fish(option->get_description()) << '\n';
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "describe FOLDER\n";
        return 2;
    }
    CLI::App program;
    Action action;
    buildProgram(program, action);
    const std::filesystem::path folder = argv[1];
    const auto write = [&](const char* name, void (*content)(std::ostream&, const CLI::App&)) {
        std::ofstream out(folder / name, std::ios::binary);
        content(out, program);
        return static_cast<bool>(out.flush());
    };
    const bool written = write("kestrin.1", writeManual) && write("kestrin.bash", writeBash) &&
                         write("_kestrin", writeZsh) && write("kestrin.fish", writeFish);
    return written ? 0 : 1;
}
