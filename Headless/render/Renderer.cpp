#include "render/Renderer.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <new>
#include <string_view>
#include <utility>

#include "render/Confine.h"

namespace headless::render {
namespace {

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

std::string secondsText(std::chrono::milliseconds time) {
    std::string text = std::to_string(static_cast<double>(time.count()) / 1000);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text + " s";
}

}  // namespace

// The parent's end. Once anything has failed it is of no more use.
struct Renderer::Worker {
    Worker(const Limits& given, Processors processors) : limits(given) {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) failedCall("socketpair");
        socket = Descriptor(ends[0]);
        const Descriptor other(ends[1]);
        const pid_t self = ::getpid();
        process = ::fork();
        if (process == 0) serve(other.get(), memory.descriptor(), limits.memoryBytes, processors, self);
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
        if (unanswered++ == 0) began = processorTime();
        send({reinterpret_cast<const char*>(&request), sizeof request});
        send(text);
    }

    void addFont(const std::string& name, const std::string& file) {
        Request request;
        request.kind = Request::Kind::Font;
        request.nameLength = static_cast<std::uint32_t>(name.size());
        request.textLength = file.size();
        send(request, name + file);
        if (answer() != Answer::Kind::Done) throw RenderError("\"" + name + "\" is no font that can be read");
    }

    // To the oldest request without one.
    Answer::Kind answer() {
        await(POLLIN);
        Answer answer;
        ssize_t count = 0;
        do count = ::recv(socket.get(), &answer, sizeof answer, 0);
        while (count < 0 && errno == EINTR);
        if (count != sizeof answer) explainDeath();
        if (answer.kind == Answer::Kind::Forbidden) {
            throw RenderError("the renderer tried something that it may not do (" +
                              systemCallName(answer.systemCall) + ")");
        }
        if (answer.kind == Answer::Kind::Faulty) {
            answer.reason[sizeof answer.reason - 1] = '\0';
            throw RenderError("the renderer stopped (" + std::string(answer.reason) + ")");
        }
        began = processorTime();
        --unanswered;
        return answer.kind;
    }

    Limits limits;
    SharedMemory memory;
    Descriptor socket;
    pid_t process = -1;
    int unanswered = 0;                // requests
    std::chrono::nanoseconds began{};  // the worker's processor time when the oldest of them did

 private:
    void send(std::string_view data) {
        while (!data.empty()) {
            await(POLLOUT);
            const ssize_t count = ::send(socket.get(), data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
            if (count <= 0) return;  // it has died, and there will be no reply
            data.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    std::chrono::nanoseconds processorTime() const {
        clockid_t clock{};
        timespec time{};
        if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) return {};
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    void await(short event) {
        constexpr int aLook = 100;  // milliseconds
        while (processorTime() - began < limits.frameTime) {
            pollfd watched{socket.get(), event, 0};
            if (::poll(&watched, 1, aLook) > 0) return;
        }
        throw RenderError("the renderer takes longer than " + secondsText(limits.frameTime));
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

Limits& usualLimits() {
    static Limits limits;
    return limits;
}

Renderer::Renderer(Limits limits, Processors processors) : limits_(limits), processors_(processors) {}
Renderer::~Renderer() = default;

void Renderer::prepare(const std::string& document) {
    if (worker_ && worker_->unanswered > 0) worker_.reset();
    guarded([&] {
        if (!worker_) {
            worker_ = std::make_unique<Worker>(limits_, processors_);
            for (const auto& [name, file] : limits_.fonts) worker_->addFont(name, file);
        }
        Request request;
        request.textLength = document.size();
        worker_->send(request, document);
    });
}

void Renderer::start(const FrameRequest& wanted) {
    // The renderer's coordinates are 16 bits wide.
    constexpr int largestSide = 32'767;
    const auto [frame, width, height, depth] = wanted;
    if (width <= 0 || height <= 0 || width > largestSide || height > largestSide ||
        static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) > limits_.picturePixels) {
        throw RenderError("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                          " pixels is outside the limits");
    }
    if (!worker_) throw RenderError("no document is prepared");
    guarded([&] {
        started_ = worker_->memory.part(wanted.bytes());
        Request request;
        request.kind = Request::Kind::Frame;
        request.offset = started_->offset;
        request.frame = frame;
        request.width = width;
        request.height = height;
        request.depth = depth ? static_cast<std::int32_t>(*depth) : 0;
        worker_->send(request);
    });
}

std::shared_ptr<std::byte> Renderer::finish() {
    guarded([&] {
        while (worker_->unanswered > 1) {
            const Answer::Kind answer = worker_->answer();
            if (answer == Answer::Kind::OutOfMemory) {
                throw RenderError("the document needs more memory than is allowed");
            }
            if (answer == Answer::Kind::Refused) throw RenderError("the renderer cannot read the document");
        }
        if (worker_->answer() != Answer::Kind::Done) {
            throw RenderError("the frame needs more memory than is allowed");
        }
    });
    std::byte* bytes = started_->bytes.data();
    return {std::move(started_), bytes};
}

template <class Do>
void Renderer::guarded(Do&& action) {
    try {
        try {
            action();
        } catch (const std::bad_alloc&) {
            throw RenderError("there is not enough memory for the frame");
        }
    } catch (const RenderError&) {
        worker_.reset();
        started_.reset();  // or the next worker is born with it
        throw;
    }
}

}  // namespace headless::render
