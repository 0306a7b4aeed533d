// kestrin: the plug-in at work on Lottie files, without a person or a screen.

#include <csignal>

#include "cli/CommandLine.h"
#include "cli/Print.h"
#include "cli/Supervisor.h"
#include "ui/Interrupt.h"

namespace {

using namespace headless::cli;

ExitCode failWith(ExitCode code, const std::string& message) {
    say(message);
    return code;
}

ExitCode run(int argc, char** argv) {
    CLI::App program;
    Action action;
    buildProgram(program, action);
    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& request) {  // help and version
        program.exit(request);
        return ExitCode::Done;
    } catch (const CLI::ParseError& error) {
        return failWith(ExitCode::BadInput, std::string(error.what()) + "; kestrin --help tells more");
    }
    try {
        if (const auto outcome = supervised(timeoutOf(program))) {
            return *outcome;
        }
        headless::ui::endOnInterrupt(static_cast<int>(ExitCode::Cancelled));
        const ExitCode code = action();
        if (!flushed()) {
            return failWith(ExitCode::Failed, "the output could not be written to standard output");
        }
        return code;
    } catch (...) {
        const Stop stop = caught();
        const bool cancelled = stop.code == ExitCode::Cancelled;
        return failWith(stop.code, stop.what() + std::string(cancelled ? "; nothing was written" : ""));
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is an error when it is written
    const ExitCode code = run(argc, argv);
    workIsDone();
    return static_cast<int>(code);
}
