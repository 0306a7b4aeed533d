#include "ui/Interrupt.h"

#include <unistd.h>

namespace headless::ui {

namespace {

volatile std::sig_atomic_t interrupts = 0;
volatile std::sig_atomic_t noted = 0;
volatile std::sig_atomic_t exitCodeOfInterrupt = 0;
pid_t ownProcess = 0;

void onInterrupt(int) {
    if (::getpid() != ownProcess) {
        return;  // a process that was split off a moment ago
    }
    interrupts = interrupts + 1;
    if (noted == 0 || interrupts > 1) {
        ::_exit(exitCodeOfInterrupt);
    }
}

}  // namespace

void endOnInterrupt(int exitCode) {
    ownProcess = ::getpid();
    exitCodeOfInterrupt = exitCode;
    struct sigaction action {};
    action.sa_handler = onInterrupt;  // whoever waits for input is woken: calls are not taken up again
    ::sigaction(SIGINT, &action, nullptr);
}

void noteInterrupts() {
    noted = 1;
}

bool interrupted() {
    return interrupts > 0;
}

NoInterrupt::NoInterrupt() {
    sigset_t interrupt{};
    ::sigemptyset(&interrupt);
    ::sigaddset(&interrupt, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &interrupt, &before_);
}

NoInterrupt::~NoInterrupt() {
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace headless::ui
