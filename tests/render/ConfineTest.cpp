#include "render/Confine.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>
#include <vector>

#include "render/Sanitizer.h"

namespace headless::render {
namespace {

int refusals[2];  // a pipe: the numbers of the system calls

// What a confined process could not do, "nothing", or how it ended otherwise.
std::string refusedTo(void (*action)()) {
    EXPECT_EQ(::pipe(refusals), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        confineWorker([](int systemCall) {
            (void)!::write(refusals[1], &systemCall, sizeof systemCall);
            ::_exit(1);
        });
        action();
        ::_exit(0);
    }
    ::close(refusals[1]);
    int systemCall = 0;
    const bool refused = ::read(refusals[0], &systemCall, sizeof systemCall) == sizeof systemCall;
    ::close(refusals[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (refused) return systemCallName(systemCall);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? "nothing" : "ended with " + std::to_string(status);
}

TEST(Confine, LeavesMemoryAndDescriptorsOnly) {
    if (underAddressSanitizer) GTEST_SKIP() << "the sanitizer needs more";
    std::thread([] {}).join();  // the first asks for more than the next
    EXPECT_EQ(refusedTo([] {
                  std::vector<int> numbers(5'000'000);
                  numbers.resize(10'000'000);
                  (void)!::write(refusals[1], "", 0);
              }),
              "nothing");
    EXPECT_EQ(refusedTo([] { std::raise(SIGABRT); }), "ended with " + std::to_string(SIGABRT));
    EXPECT_EQ(refusedTo([] { ::open("/dev/null", O_RDONLY); }), "openat");
    EXPECT_EQ(refusedTo([] { ::unlink("/nowhere"); }), "unlink");
    EXPECT_EQ(refusedTo([] { ::socket(AF_INET, SOCK_STREAM, 0); }), "socket");
    EXPECT_EQ(refusedTo([] { ::kill(::getppid(), 0); }), "getppid");
    EXPECT_EQ(refusedTo([] { ::execl("/bin/true", "true", nullptr); }), "execve");
    EXPECT_EQ(refusedTo([] { ::fork(); }), "clone");
    // Signals are held back there.
    EXPECT_EQ(refusedTo([] { std::thread([] {}).join(); }), "ended with " + std::to_string(SIGSYS));
    EXPECT_EQ(refusedTo([] { ::mmap(nullptr, 4096, PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0); }), "mmap");
}

}  // namespace
}  // namespace headless::render
