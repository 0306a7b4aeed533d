#include "files/WholeFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

namespace headless {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds longestWait{10};  // for another program's lock

[[noreturn]] void fail(const fs::path& file, int reason) {
    throw std::runtime_error("cannot write " + file.string() + ": " + std::generic_category().message(reason));
}

// Closed at the end of its life, or before by close(), which says whether all went well.
class Descriptor {
 public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number_; }
    bool close() {
        const int number = number_;
        number_ = -1;
        return number < 0 || ::close(number) == 0;
    }

 private:
    int number_;
};

// Where a chain of links leads to, whether there is a file or not.
fs::path linkedTo(fs::path file) {
    constexpr int longestChain = 40;
    std::error_code error;
    for (int i = 0; i < longestChain && fs::is_symlink(file, error); ++i) {
        file = file.parent_path() / fs::read_symlink(file, error);
    }
    return file;
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// What the file has that is replaced, or what open() would give a new one.
mode_t modeFor(const fs::path& file) {
    struct stat old {};
    if (::stat(file.c_str(), &old) == 0) {
        return old.st_mode & 0777;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        content.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

// The new name in the folder lasts from here on. Some file systems cannot be asked for that.
bool syncFolder(const fs::path& folder) {
    const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor.get() < 0 || ::fsync(descriptor.get()) == 0 || errno == EINVAL;
}

}  // namespace

void writeWhole(const fs::path& file, std::string_view content) {
    const fs::path target = linkedTo(file);
    std::string unfinished = target.string() + ".XXXXXX";
    Descriptor descriptor(::mkostemp(unfinished.data(), O_CLOEXEC));
    if (descriptor.get() < 0) {
        fail(file, errno);
    }
    if (!writeAll(descriptor.get(), content) || ::fchmod(descriptor.get(), modeFor(target)) != 0 ||
        ::fsync(descriptor.get()) != 0 || !descriptor.close() ||
        ::rename(unfinished.c_str(), target.c_str()) != 0) {
        const int reason = errno;
        ::unlink(unfinished.c_str());
        fail(file, reason);
    }
    if (!syncFolder(folderOf(target))) {
        fail(file, errno);
    }
}

FileLock::FileLock(const fs::path& file)
    : folder_(::open(folderOf(linkedTo(file)).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (folder_ < 0) {
        fail(file, errno);
    }
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while (::flock(folder_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        if (std::chrono::steady_clock::now() > end) {
            ::close(folder_);
            throw std::runtime_error("cannot write " + file.string() + ": another program holds its folder");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

FileLock::~FileLock() {
    ::close(folder_);
}

}  // namespace headless
