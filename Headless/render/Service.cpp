#include "render/Service.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <new>
#include <optional>
#include <string>

#include "render/Confine.h"
#include "render/Sanitizer.h"
#include "render/SharedMemory.h"
#include "render/thorvg/ThorVG.h"

namespace headless::render {
namespace {

bool receive(int socket, void* data, std::size_t length) {
    auto* next = static_cast<char*>(data);
    while (length > 0) {
        const ssize_t count = ::recv(socket, next, length, 0);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        next += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

void limitWorker(std::uint64_t memoryBytes, pid_t parent) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(0);  // it died before the line above
    ::prctl(PR_SET_DUMPABLE, 0);
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    const std::uint64_t addresses = memoryBytes + ThorVG::reservedBytes;
    const rlimit memory{addresses, addresses};
    if (!underAddressSanitizer) ::setrlimit(RLIMIT_AS, &memory);
    for (int number = 1; number < NSIG; ++number) std::signal(number, SIG_DFL);
    std::signal(SIGINT, SIG_IGN);  // the parent decides what an interrupt ends
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Every second one of those that the process has, where it has two.
void keepTo(Processors processors) {
    cpu_set_t all, some;
    if (processors == Processors::All || ::sched_getaffinity(0, sizeof all, &all) != 0) return;
    CPU_ZERO(&some);
    bool take = processors == Processors::Even;
    for (int number = 0; number < CPU_SETSIZE; ++number) {
        if (!CPU_ISSET(number, &all)) continue;
        if (take) CPU_SET(number, &some);
        take = !take;
    }
    if (CPU_COUNT(&some) > 0) (void)::sched_setaffinity(0, sizeof some, &some);
}

// The only descriptors of the worker, but for standard input and output, which lead nowhere.
enum Descriptors { socketNumber = 3, memoryNumber };

void dropDescriptors(int socket, int memory) {
    const int silence = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    // Out of the way of the numbers that are taken below.
    socket = ::fcntl(socket, F_DUPFD, 10);
    memory = ::fcntl(memory, F_DUPFD, 10);
    if (silence < 0 || socket < 0 || memory < 0) ::_exit(1);
    for (int standard = 0; standard <= 2; ++standard) ::dup2(silence, standard);
    ::dup2(socket, socketNumber);
    ::dup2(memory, memoryNumber);
    ::close_range(memoryNumber + 1, ~0u, 0);
}

void answer(const Answer& answer) {
    (void)::send(socketNumber, &answer, sizeof answer, MSG_NOSIGNAL);
}

[[noreturn]] void explainRefusal(int systemCall) {
    answer({Answer::Kind::Forbidden, systemCall});
    ::_exit(1);
}

class Service {
 public:
    explicit Service(std::uint64_t memoryBytes) : renderer_(memoryBytes) {}

    void run() {
        confineWorker(explainRefusal);
        Request request;
        while (receive(socketNumber, &request, sizeof request)) {
            try {
                answer({done(request) ? Answer::Kind::Done : Answer::Kind::Refused});
            } catch (const std::bad_alloc&) {
                answer({Answer::Kind::OutOfMemory});
                return;
            } catch (const ModuleFault& fault) {
                Answer faulty{Answer::Kind::Faulty};
                std::snprintf(faulty.reason, sizeof faulty.reason, "%s", fault.what());
                answer(faulty);
                return;
            }
        }
    }

 private:
    bool done(const Request& request) {
        switch (request.kind) {
            case Request::Kind::Font: {
                const std::string name = received(request.nameLength);
                return renderer_.addFont(name, received(request.textLength));
            }
            case Request::Kind::Prepare:
                return loaded_ = renderer_.load(received(request.textLength));
            case Request::Kind::Frame:
                return draw(request);
        }
        return false;
    }

    static std::string received(std::uint64_t length) {
        std::string text(length, '\0');
        if (!receive(socketNumber, text.data(), text.size())) ::_exit(0);
        return text;
    }

    bool draw(const Request& request) {
        if (!loaded_) return false;
        FrameRequest wanted{request.frame, request.width, request.height, {}};
        if (request.depth != 0) wanted.depth = static_cast<Depth>(request.depth);
        std::byte* memory = mapped(request.offset, wanted.bytes());
        const Canvas canvas = wanted.depth
                                  ? canvasOf(wanted.world(), memory)
                                  : Canvas{reinterpret_cast<std::uint32_t*>(memory),
                                           static_cast<std::size_t>(wanted.width) * sizeof(std::uint32_t)};
        const auto inside = reinterpret_cast<std::byte*>(canvas.pixels) - memory;
        renderer_.draw(static_cast<float>(wanted.frame),
                       {memoryNumber, request.offset + static_cast<std::uint64_t>(inside), canvas.rowBytes,
                        wanted.width, wanted.height});
        if (wanted.depth) layOut(wanted.world(), memory);
        return true;
    }

    std::byte* mapped(std::uint64_t offset, std::size_t size) {
        if (!part_ || part_->offset != offset || part_->bytes.size() < size) {
            part_.reset();
            part_.emplace(memoryNumber, offset, size);
        }
        return part_->bytes.data();
    }

    std::optional<SharedMemory::Part> part_;
    ThorVG renderer_;
    bool loaded_ = false;
};

}  // namespace

std::size_t FrameRequest::bytes() const {
    if (depth) return world().bytes();
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * sizeof(std::uint32_t);
}

void serve(int socket, int memory, std::uint64_t memoryBytes, Processors processors, pid_t parent) {
    limitWorker(memoryBytes, parent);
    keepTo(processors);
    dropDescriptors(socket, memory);
    [&]() noexcept { Service(memoryBytes).run(); }();
    ::_exit(0);
}

}  // namespace headless::render
