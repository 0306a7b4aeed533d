#include "cli/Supervisor.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <new>

#include "cli/Print.h"
#include "cli/Text.h"
#include "cli/Verbs.h"
#include "files/WholeFile.h"

namespace headless::cli {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Work is not ended while a file is being written, and no file is written once it is to end.
enum Stage : int { Working, Writing, Ending };

// What both processes see. Texts end with a 0 and are cut where they do not fit.
struct Page {
    std::atomic<int> stage = Working;
    std::atomic<bool> done = false;
    char file[4096] = "", hook[64] = "", writing[4096] = "";
    char written[1 << 16] = "";  // with a comma before each
};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

Page* page = nullptr;  // in the process that works
std::string current;   // file

template <std::size_t Size>
void setText(char (&text)[Size], const std::string& value) {
    text[value.copy(text, Size - 1)] = '\0';
}

void beginWriting(const std::filesystem::path& file) {
    setText(page->writing, file.string());
    int stage = Working;
    while (!page->stage.compare_exchange_strong(stage, Writing)) {
        ::pause();  // the end is on its way
        stage = Working;
    }
}

void endWriting(const std::filesystem::path& file, bool written) {
    if (written) {
        const std::string names = page->written;
        setText(page->written, names + (names.empty() ? "" : ", ") + file.string());
    }
    page->stage = Working;
}

// ---- The process that waits ----------------------------------------------------------------------------

// How the terminal was before the work began; a dialog may be open when that ends.
class TerminalState {
 public:
    TerminalState() : known_(::isatty(STDIN_FILENO) != 0 && ::tcgetattr(STDIN_FILENO, &state_) == 0) {}
    void restore() const {
        if (known_ && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp()) {  // in the background we would be stopped
            ::tcsetattr(STDIN_FILENO, TCSADRAIN, &state_);
        }
    }

 private:
    termios state_{};
    bool known_;
};

constexpr int passedOn[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// Ends this process as the other one ended.
[[noreturn]] void endBy(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    std::raise(signal);
    ::sigprocmask(SIG_UNBLOCK, &only, nullptr);
    ::_exit(128 + signal);
}

class Watch {
 public:
    Watch(Page& shared, pid_t child, milliseconds longest) : page_(shared), child_(child), longest_(longest) {}

    ExitCode result(const sigset_t& signals, const TerminalState& terminal) {
        const int status = await(signals);
        if (WIFEXITED(status) && page_.done) {
            return static_cast<ExitCode>(WEXITSTATUS(status));
        }
        terminal.restore();
        if (page_.stage == Ending) {
            return fail(ExitCode::TimedOut,
                        "ended after " + shortNumber(double(longest_.count()) / 1000) + " s" +
                            (*page_.hook ? ", in the plug-in's " + hook() : ""),
                        "; --timeout SECONDS allows more, --timeout 0 any time");
        }
        if (WIFSIGNALED(status) && comesFromOutside(WTERMSIG(status))) {
            endBy(WTERMSIG(status));
        }
        if (WIFEXITED(status) && WEXITSTATUS(status) == static_cast<int>(ExitCode::Cancelled)) {
            return fail(ExitCode::Cancelled, "cancelled");  // by an interrupt, at once
        }
        if (WIFEXITED(status) && passed_ != 0) {
            endBy(passed_);
        }
        const bool inHook = *page_.hook != '\0';
        const std::string where = inHook ? " in its " + hook() : "";
        if (WIFSIGNALED(status)) {
            const int signal = WTERMSIG(status);
            return fail(ExitCode::Failed,
                        signal == SIGKILL
                            ? "the program was killed, perhaps because there was not enough memory"
                            : (inHook ? "the plug-in crashed (" : "the program crashed (") +
                                  std::string(::strsignal(signal)) + ")" + where);
        }
        const std::string code = " (exit code " + std::to_string(WEXITSTATUS(status)) + ")";
        return fail(ExitCode::Failed, inHook ? "the plug-in ended the program" + code + where
                                             : "the program ended before its work was done" + code);
    }

 private:
    static bool comesFromOutside(int signal) {
        return signal == SIGPIPE ||
               std::find(std::begin(passedOn), std::end(passedOn), signal) != std::end(passedOn);
    }

    // Until the other process has ended.
    int await(const sigset_t& signals) {
        constexpr milliseconds aLook{250}, grace{2'000};
        milliseconds waited{0}, endingFor{0};
        while (true) {
            int status = 0;
            const pid_t ended = ::waitpid(child_, &status, WNOHANG);
            if (ended == child_) {
                return status;
            }
            const milliseconds most =
                longest_.count() > 0 ? std::clamp(longest_ - waited, milliseconds{20}, aLook) : aLook;
            const timespec time{0, most.count() * 1'000'000};
            const auto before = Clock::now();
            siginfo_t info{};
            const int signal = ::sigtimedwait(&signals, &info, &time);
            const auto passed = std::min(most, std::chrono::ceil<milliseconds>(Clock::now() - before));
            waited += passed;
            if (signal > 0 && signal != SIGCHLD) {
                passed_ = signal;
                if (info.si_code != SI_KERNEL) {  // the terminal's have reached both
                    ::kill(child_, signal);
                }
            }
            int stage = Working;
            if (longest_.count() > 0 && waited >= longest_ &&
                page_.stage.compare_exchange_strong(stage, Ending)) {
                ::kill(child_, SIGTERM);  // an open dialog tidies up
            } else if (page_.stage == Ending && (endingFor += passed) > grace) {
                ::kill(child_, SIGKILL);
            }
        }
    }

    std::string hook() const { return std::string(page_.hook); }

    ExitCode fail(ExitCode code, const std::string& what, const std::string& advice = "") const {
        const std::string file = page_.file;
        const std::string written = page_.written;
        const std::string open =
            page_.stage == Writing ? "; " + std::string(page_.writing) + " is the old file or the new one" : "";
        say((file.empty() ? "" : file + ": ") + what +
            (!written.empty() ? "; written before: " + written
             : open.empty()   ? "; nothing was written"
                              : "") +
            open + advice);
        return code;
    }

    Page& page_;
    pid_t child_;
    milliseconds longest_;
    int passed_ = 0;  // the last signal that came
};

}  // namespace

std::optional<ExitCode> supervised(std::chrono::milliseconds longest) {
    void* const memory =
        ::mmap(nullptr, sizeof(Page), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    Page* const shared = new (memory) Page;
    sigset_t signals, before;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    for (const int signal : passedOn) {
        sigaddset(&signals, signal);
    }
    std::signal(SIGCHLD, SIG_DFL);
    ::sigprocmask(SIG_BLOCK, &signals, &before);
    const TerminalState terminal;
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child < 0) {
        throw Stop(ExitCode::Failed, std::string("the program cannot start its work: ") + std::strerror(errno));
    }
    if (child > 0) {
        return Watch(*shared, child, longest).result(signals, terminal);
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {  // it died before the line above
        ::_exit(static_cast<int>(ExitCode::Failed));
    }
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    page = shared;
    watchWrites({beginWriting, endWriting});
    return std::nullopt;
}

void workIsDone() {
    if (page != nullptr) {
        page->done = true;
    }
}

void workOn(const std::string& file) {
    current = file;
    if (page != nullptr) {
        setText(page->file, file);
    }
}

std::string workedOn() {
    return current;
}

void inHook(const char* hook) {
    if (page != nullptr) {
        setText(page->hook, hook == nullptr ? "" : hook);
    }
}

}  // namespace headless::cli
