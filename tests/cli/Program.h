// The built program, run as its users run it: arguments in; exit code, output and files out.

#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "cli/ExitCode.h"

namespace kestrin_test {

namespace fs = std::filesystem;
using headless::cli::ExitCode;

inline std::string contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

// A folder of its own for each test, gone afterwards.
class Program : public testing::Test {
 protected:
    struct Outcome {
        ExitCode code{};
        std::string out, err;
    };

    Program() {
        std::string name = (fs::temp_directory_path() / "kestrin-test-XXXXXX").string();
        folder = ::mkdtemp(name.data());
    }
    ~Program() override { fs::remove_all(folder); }

    std::string pathOf(const std::string& name) const { return (folder / name).string(); }

    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(folder / name, std::ios::binary) << content;
        return pathOf(name);
    }

    // `meanwhile` is called with the running program. Runs at the same time each need a folder for their
    // output.
    Outcome run(std::vector<std::string> arguments, const std::function<void(pid_t)>& meanwhile = {},
                const std::string& outputFolder = ".") const {
        arguments.insert(arguments.begin(), KESTRIN_PROGRAM);
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        const std::string out = pathOf(outputFolder + "/.out");
        const std::string err = pathOf(outputFolder + "/.err");
        const pid_t child = ::fork();
        if (child == 0) {
            const auto redirect = [](int descriptor, const std::string& file, int flags) {
                ::dup2(::open(file.c_str(), flags, 0600), descriptor);
            };
            redirect(STDIN_FILENO, input, O_RDONLY);
            redirect(STDOUT_FILENO, out, O_WRONLY | O_CREAT | O_TRUNC);
            redirect(STDERR_FILENO, err, O_WRONLY | O_CREAT | O_TRUNC);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        if (meanwhile) {
            meanwhile(child);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status);
        return {static_cast<ExitCode>(WEXITSTATUS(status)), contentOf(out), contentOf(err)};
    }

    // What lies in the folder beside the program's own output.
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (const std::string name = entry.path().filename().string(); name != ".out" && name != ".err") {
                names.push_back(name);
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path folder;
    std::string input = "/dev/null";  // a file that the program reads from
};

}  // namespace kestrin_test
