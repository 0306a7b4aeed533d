#include "render/Service.h"

#include <fcntl.h>
#include <malloc.h>
#include <rlottie.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string>

#include "render/Confine.h"
#include "render/Sanitizer.h"
#include "render/SharedMemory.h"

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
    const rlimit memory{memoryBytes, memoryBytes};
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
enum Descriptors { socketNumber = 3, memoryNumber, statmNumber };

void dropDescriptors(int socket, int memory) {
    const int silence = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    int statm = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    // Out of the way of the numbers that are taken below.
    socket = ::fcntl(socket, F_DUPFD, 10);
    memory = ::fcntl(memory, F_DUPFD, 10);
    statm = ::fcntl(statm, F_DUPFD, 10);
    if (silence < 0 || socket < 0 || memory < 0 || statm < 0) ::_exit(1);
    for (int standard = 0; standard <= 2; ++standard) ::dup2(silence, standard);
    ::dup2(socket, socketNumber);
    ::dup2(memory, memoryNumber);
    ::dup2(statm, statmNumber);
    ::close_range(statmNumber + 1, ~0u, 0);
}

void answer(const Answer& answer) {
    (void)::send(socketNumber, &answer, sizeof answer, MSG_NOSIGNAL);
}

[[noreturn]] void explainRefusal(int systemCall) {
    answer({Answer::Kind::Forbidden, systemCall});
    ::_exit(1);
}

// The renderer's own threads throw, too.
[[noreturn]] void explainEnd() {
    try {
        if (const auto reason = std::current_exception()) std::rethrow_exception(reason);
    } catch (const std::bad_alloc&) {
        answer({Answer::Kind::OutOfMemory});
    } catch (...) {
        // the parent sees that it ended
    }
    ::_exit(1);
}

std::uint64_t residentBytes() {
    char text[64] = {};
    (void)!::pread(statmNumber, text, sizeof text - 1, 0);
    char* second = text;
    std::strtoull(text, &second, 10);
    return std::strtoull(second, nullptr, 10) * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

class Service {
 public:
    explicit Service(std::uint64_t memoryBytes) : memoryBytes_(memoryBytes) {}

    void run() {
        ::mallopt(M_ARENA_MAX, 1);  // with more, freeing memory reads a file of the system's
        rlottie::configureModelCacheSize(0);
        warmUp();
        confineWorker(explainRefusal);
        Request request;
        while (receive(socketNumber, &request, sizeof request)) {
            Answer::Kind kind = Answer::Kind::OutOfMemory;
            try {
                kind = request.kind == Request::Kind::Prepare ? prepare(request) : draw(request);
            } catch (const std::bad_alloc&) {
                // answered as such
            }
            answer({kind});
        }
    }

 private:
    // With its first picture the renderer starts its threads and loads a library for images.
    static void warmUp() {
        const std::string document =
            R"({"v":"5.5.0","fr":1,"ip":0,"op":1,"w":1,"h":1,"assets":[{"id":"i","w":1,"h":1,"u":"","e":1,"p":)"
            R"("data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAAAAAA6fptVAAAACklEQVR42mP4)"
            R"(DwABAQEAHLCMmQAAAABJRU5ErkJggg=="}],)"
            R"("layers":[{"ddd":0,"ty":2,"refId":"i","ip":0,"op":1,"st":0,"ks":{}}]})";
        std::uint32_t pixel = 0;
        if (const auto animation = rlottie::Animation::loadFromData(document, "", "", false)) {
            animation->renderSync(0, rlottie::Surface(&pixel, 1, 1, sizeof pixel), false);
        }
    }

    Answer::Kind prepare(const Request& request) {
        text_.assign(request.textLength, '\0');
        if (!receive(socketNumber, text_.data(), text_.size())) ::_exit(0);
        load();
        return animation_ ? Answer::Kind::Done : Answer::Kind::Refused;
    }

    void load() {
        animation_.reset();
        ::malloc_trim(0);
        animation_ = rlottie::Animation::loadFromData(text_, "", "", false);
    }

    Answer::Kind draw(const Request& request) {
        if (!animation_) return Answer::Kind::Refused;
        // The renderer keeps a buffer for each matte that it has ever drawn.
        if (residentBytes() > memoryBytes_ / 2) load();
        const FrameRequest& wanted = request.frame;
        const auto width = static_cast<std::size_t>(wanted.width);
        const auto height = static_cast<std::size_t>(wanted.height);
        std::byte* memory = mapped(request.offset, wanted.bytes());
        const Canvas canvas = wanted.depth ? canvasOf(wanted.world(), memory)
                                           : Canvas{reinterpret_cast<std::uint32_t*>(memory), width * 4};
        animation_->renderSync(static_cast<std::size_t>(wanted.frame),
                               rlottie::Surface(canvas.pixels, width, height, canvas.rowBytes), false);
        if (wanted.depth) layOut(wanted.world(), memory);
        return Answer::Kind::Done;
    }

    std::byte* mapped(std::uint64_t offset, std::size_t size) {
        if (!part_ || part_->offset != offset || part_->bytes.size() < size) {
            part_.reset();
            part_.emplace(memoryNumber, offset, size);
        }
        return part_->bytes.data();
    }

    std::optional<SharedMemory::Part> part_;
    std::uint64_t memoryBytes_;
    std::string text_;
    std::unique_ptr<rlottie::Animation> animation_;
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
    std::set_terminate(explainEnd);
    [&]() noexcept { Service(memoryBytes).run(); }();
    ::_exit(0);
}

}  // namespace headless::render
