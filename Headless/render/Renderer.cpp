#include "render/Renderer.h"

#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <rlottie.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "render/Confine.h"
#include "render/Sanitizer.h"

namespace headless::render {
namespace {

using Time = std::chrono::steady_clock;

struct Request {
    enum class Kind : std::uint32_t { Prepare, Frame };
    Kind kind = Kind::Prepare;
    std::int32_t frame = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint64_t textLength = 0;  // of the document, which follows
};

enum class Reply : std::int32_t { Done, Refused, OutOfMemory, Forbidden };

struct Answer {
    Reply reply = Reply::Done;
    std::int32_t systemCall = 0;  // the forbidden one
};

[[noreturn]] void failedCall(const char* what) {
    throw RenderError(std::string("no worker: ") + what + ": " + std::strerror(errno));
}

class Descriptor {
 public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    int get() const { return number_; }

 private:
    int number_;
};

// The pixels, a file in memory that both processes map.
class Pixels {
 public:
    explicit Pixels(int descriptor) : descriptor_(descriptor) {}
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;
    ~Pixels() { unmap(); }

    std::span<std::uint32_t> map(std::size_t count) {
        if (count > mapped_.size()) {
            unmap();
            void* start = ::mmap(nullptr, count * sizeof(std::uint32_t), PROT_READ | PROT_WRITE, MAP_SHARED,
                                 descriptor_, 0);
            if (start == MAP_FAILED) throw std::bad_alloc();
            mapped_ = {static_cast<std::uint32_t*>(start), count};
        }
        return mapped_.first(count);
    }

 private:
    void unmap() {
        if (!mapped_.empty()) ::munmap(mapped_.data(), mapped_.size_bytes());
        mapped_ = {};
    }

    int descriptor_;
    std::span<std::uint32_t> mapped_;
};

// In the worker: everything below runs there only.

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

// The only descriptors of the worker, but for standard input and output, which lead nowhere.
enum Descriptors { socketNumber = 3, pixelsNumber, statmNumber };

void dropDescriptors(int socket, int pixels) {
    const int silence = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    int statm = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    // Out of the way of the numbers that are taken below.
    socket = ::fcntl(socket, F_DUPFD, 10);
    pixels = ::fcntl(pixels, F_DUPFD, 10);
    statm = ::fcntl(statm, F_DUPFD, 10);
    if (silence < 0 || socket < 0 || pixels < 0 || statm < 0) ::_exit(1);
    for (int standard = 0; standard <= 2; ++standard) ::dup2(silence, standard);
    ::dup2(socket, socketNumber);
    ::dup2(pixels, pixelsNumber);
    ::dup2(statm, statmNumber);
    ::close_range(statmNumber + 1, ~0u, 0);
}

void answer(const Answer& answer) {
    (void)::send(socketNumber, &answer, sizeof answer, MSG_NOSIGNAL);
}

[[noreturn]] void explainRefusal(int systemCall) {
    answer({Reply::Forbidden, systemCall});
    ::_exit(1);
}

// The renderer's own threads throw, too.
[[noreturn]] void explainEnd() {
    try {
        if (const auto reason = std::current_exception()) std::rethrow_exception(reason);
    } catch (const std::bad_alloc&) {
        answer({Reply::OutOfMemory});
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
            Reply reply = Reply::OutOfMemory;
            try {
                reply = request.kind == Request::Kind::Prepare ? prepare(request) : draw(request);
            } catch (const std::bad_alloc&) {
                // answered as such
            }
            answer({reply});
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

    Reply prepare(const Request& request) {
        text_.assign(request.textLength, '\0');
        if (!receive(socketNumber, text_.data(), text_.size())) ::_exit(0);
        load();
        return animation_ ? Reply::Done : Reply::Refused;
    }

    void load() {
        animation_.reset();
        ::malloc_trim(0);
        animation_ = rlottie::Animation::loadFromData(text_, "", "", false);
    }

    Reply draw(const Request& request) {
        if (!animation_) return Reply::Refused;
        const auto width = static_cast<std::size_t>(request.width);
        const auto height = static_cast<std::size_t>(request.height);
        rlottie::Surface surface(pixels_.map(width * height).data(), width, height, width * 4);
        // The renderer keeps a buffer for each matte that it has ever drawn.
        if (residentBytes() > memoryBytes_ / 2) load();
        animation_->renderSync(static_cast<std::size_t>(request.frame), surface, false);
        return Reply::Done;
    }

    Pixels pixels_{pixelsNumber};
    std::uint64_t memoryBytes_;
    std::string text_;
    std::unique_ptr<rlottie::Animation> animation_;
};

[[noreturn]] void serve(int socket, int pixels, std::uint64_t memoryBytes, pid_t parent) {
    limitWorker(memoryBytes, parent);
    dropDescriptors(socket, pixels);
    std::set_terminate(explainEnd);
    [&]() noexcept { Service(memoryBytes).run(); }();
    ::_exit(0);
}

std::string secondsText(std::chrono::milliseconds time) {
    std::string text = std::to_string(static_cast<double>(time.count()) / 1000);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text + " s";
}

}  // namespace

// The parent's end. Once anything has failed it is of no more use.
struct Renderer::Worker {
    explicit Worker(const Limits& given)
        : limits(given), memory(::memfd_create("kestrin-frame", MFD_CLOEXEC)), pixels(memory.get()) {
        if (memory.get() < 0) failedCall("memfd_create");
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) failedCall("socketpair");
        socket = Descriptor(ends[0]);
        const Descriptor other(ends[1]);
        const pid_t self = ::getpid();
        process = ::fork();
        if (process == 0) serve(other.get(), memory.get(), limits.memoryBytes, self);
        if (process < 0) failedCall("fork");
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker() {
        if (process <= 0) return;
        ::kill(process, SIGKILL);
        while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) continue;
    }

    void send(const Request& request, std::string_view text = {}) {
        const Time::time_point deadline = Time::now() + limits.frameTime;
        if (unanswered++ == 0) busySince = Time::now();
        send({reinterpret_cast<const char*>(&request), sizeof request}, deadline);
        send(text, deadline);
    }

    // To the oldest request without one.
    Reply reply() {
        await(POLLIN, busySince + limits.frameTime);
        Answer answer;
        ssize_t count = 0;
        do count = ::recv(socket.get(), &answer, sizeof answer, 0);
        while (count < 0 && errno == EINTR);
        if (count != sizeof answer) explainDeath();
        if (answer.reply == Reply::Forbidden) {
            throw RenderError("the renderer tried something that it may not do (" +
                              systemCallName(answer.systemCall) + ")");
        }
        busySince = Time::now();
        --unanswered;
        return answer.reply;
    }

    std::span<std::uint32_t> room(std::size_t count) {
        const std::size_t bytes = count * sizeof(std::uint32_t);
        if (bytes > size) {
            if (::ftruncate(memory.get(), static_cast<off_t>(bytes)) != 0) failedCall("ftruncate");
            size = bytes;
        }
        return pixels.map(count);
    }

    Limits limits;
    Descriptor memory;
    Pixels pixels;
    std::size_t size = 0;  // of `memory`, which only grows
    Descriptor socket;
    pid_t process = -1;
    int unanswered = 0;  // requests
    Time::time_point busySince;

 private:
    void send(std::string_view data, Time::time_point deadline) {
        while (!data.empty()) {
            await(POLLOUT, deadline);
            const ssize_t count = ::send(socket.get(), data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
            if (count <= 0) return;  // it has died, and there will be no reply
            data.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    void await(short event, Time::time_point deadline) {
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Time::now());
            pollfd watched{socket.get(), event, 0};
            const int wait = static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1'000'000));
            if (::poll(&watched, 1, wait) > 0) return;
            if (left.count() <= 0) {
                throw RenderError("the renderer takes longer than " + secondsText(limits.frameTime));
            }
        }
    }

    [[noreturn]] void explainDeath() {
        int status = 0;
        // It closed its socket, so it is as good as gone.
        while (::waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
        process = -1;
        if (!WIFSIGNALED(status)) throw RenderError("the renderer gave up");
        throw RenderError("the renderer crashed (" + std::string(::strsignal(WTERMSIG(status))) + ")");
    }
};

Renderer::Renderer(Limits limits) : limits_(limits) {}
Renderer::~Renderer() = default;

void Renderer::prepare(const std::string& document) {
    if (worker_ && worker_->unanswered > 0) worker_.reset();
    guarded([&] {
        if (!worker_) worker_ = std::make_unique<Worker>(limits_);
        worker_->send({.kind = Request::Kind::Prepare, .textLength = document.size()}, document);
    });
}

void Renderer::start(int frame, int width, int height) {
    // The renderer's coordinates are 16 bits wide.
    constexpr int largestSide = 32'767;
    if (width <= 0 || height <= 0 || width > largestSide || height > largestSide ||
        static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) > limits_.picturePixels) {
        throw RenderError("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                          " pixels is outside the limits");
    }
    if (!worker_) throw RenderError("no document is prepared");
    guarded([&] {
        started_ = {width, height,
                    worker_->room(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
        worker_->send(
            {.kind = Request::Kind::Frame, .frame = std::max(frame, 0), .width = width, .height = height});
    });
}

PictureView Renderer::finish() {
    guarded([&] {
        while (worker_->unanswered > 1) {
            const Reply reply = worker_->reply();
            if (reply == Reply::OutOfMemory) {
                throw RenderError("the document needs more memory than is allowed");
            }
            if (reply == Reply::Refused) throw RenderError("the renderer cannot read the document");
        }
        if (worker_->reply() != Reply::Done) throw RenderError("the frame needs more memory than is allowed");
    });
    return started_;
}

template <class Do>
void Renderer::guarded(Do&& action) {
    try {
        action();
    } catch (const RenderError&) {
        worker_.reset();
        throw;
    }
}

}  // namespace headless::render
