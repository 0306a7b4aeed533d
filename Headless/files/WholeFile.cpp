#include "files/WholeFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <random>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

#include "files/Descriptor.h"

namespace headless {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds longestWait{10};  // for another program's lock

WriteWatch watching;

[[noreturn]] void fail(const fs::path& file, const std::string& reason) {
    throw std::runtime_error("cannot write " + file.string() + ": " + reason);
}
[[noreturn]] void fail(const fs::path& file, int reason) {
    fail(file, std::generic_category().message(reason));
}

// A name in a folder that is held open, so that both stay what they are.
struct Place {
    Descriptor folder;
    std::string name;

    // What stands there; nothing where nothing does.
    std::optional<struct stat> status() const {
        struct stat about {};
        if (::fstatat(folder.get(), name.c_str(), &about, AT_SYMLINK_NOFOLLOW) != 0) {
            return std::nullopt;
        }
        return about;
    }
    Descriptor openFolder() const {
        return Descriptor(::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }
};

bool isSharedByAll(const struct stat& folder) {
    return (folder.st_mode & S_ISVTX) != 0 && (folder.st_mode & S_IWOTH) != 0;
}

// What somebody else has laid into a folder that everybody may write to. The system refuses to follow or to
// open that, where it is set up so; we do it by hand, and so have to look for ourselves.
bool isTrap(const Descriptor& folder, const struct stat& thing) {
    struct stat about {};
    return ::fstat(folder.get(), &about) == 0 && isSharedByAll(about) && thing.st_uid != ::geteuid() &&
           thing.st_uid != about.st_uid;
}

std::string textOf(const Descriptor& link, const struct stat& about) {
    std::vector<char> text(static_cast<std::size_t>(about.st_size) + 1);
    const ssize_t length = ::readlinkat(link.get(), "", text.data(), text.size());
    return {text.data(), static_cast<std::size_t>(length > 0 ? length : 0)};
}

// Where the file is, or is to be, with all links followed.
Place placeOf(const fs::path& file) {
    constexpr int longestChain = 40;
    const auto folderOf = [](const fs::path& path) {
        return path.has_parent_path() ? path.parent_path() : fs::path(".");
    };
    Place place{Descriptor(AT_FDCWD), ""};
    fs::path next = file;
    for (int i = 0; i < longestChain; ++i) {
        place.folder =
            Descriptor(::openat(place.folder.get(), folderOf(next).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!place.folder) {
            fail(file, errno);
        }
        place.name = next.filename().string();
        const Descriptor there(
            ::openat(place.folder.get(), place.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat about {};
        if (!there || ::fstat(there.get(), &about) != 0) {
            return place;  // nothing yet
        }
        if (isTrap(place.folder, about)) {
            fail(file, std::string(S_ISLNK(about.st_mode) ? "a link" : "the file") +
                           " there belongs to somebody else, in a folder that everybody may write to");
        }
        if (!S_ISLNK(about.st_mode)) {
            return place;
        }
        next = textOf(there, about);
    }
    fail(file, ELOOP);
}

void requireReplaceable(const fs::path& file, const Place& place, ReadOnly how) {
    const auto old = place.status();
    if (old && how == ReadOnly::Stays &&
        ((old->st_mode & 0222) == 0 || ::faccessat(place.folder.get(), place.name.c_str(), W_OK, 0) != 0)) {
        fail(file, "the file is read-only; make it writable first");
    }
}

struct Unfinished {
    std::string name;
    Descriptor descriptor;
};

Unfinished newBeside(const Place& place) {
    constexpr std::string_view characters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    Unfinished result;
    do {
        result.name = ".kestrin-";
        for (int i = 0; i < 6; ++i) {
            result.name += characters[random() % characters.size()];
        }
        result.descriptor = Descriptor(
            ::openat(place.folder.get(), result.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    } while (!result.descriptor && errno == EEXIST);
    return result;
}

// Who may do what: as with the file that is replaced, or as open() would give a new one.
bool takeOver(const Descriptor& descriptor, const std::optional<struct stat>& old, Lost& lost) {
    if (!old) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        return ::fchmod(descriptor.get(), 0666 & ~mask) == 0;
    }
    struct stat now {};
    if (::fstat(descriptor.get(), &now) != 0) {
        return false;
    }
    constexpr auto unchanged = static_cast<uid_t>(-1);
    lost.group = now.st_gid != old->st_gid && ::fchown(descriptor.get(), unchanged, old->st_gid) != 0;
    lost.owner = now.st_uid != old->st_uid && ::fchown(descriptor.get(), old->st_uid, unchanged) != 0;
    mode_t mode = old->st_mode & 0777;
    if (lost.group) {  // another one gets no more than everybody
        mode = (mode & ~070u) | (mode & 07u) << 3;
    }
    return ::fchmod(descriptor.get(), mode) == 0;
}

bool writeAll(const Descriptor& descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor.get(), content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        content.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

// The new name in the folder lasts from here on. Some file systems cannot be asked for that.
bool syncFolder(const Place& place) {
    const Descriptor descriptor = place.openFolder();
    return !descriptor || ::fsync(descriptor.get()) == 0 || errno == EINVAL;
}

Lost replace(const fs::path& file, std::string_view content, ReadOnly how) {
    const Place place = placeOf(file);
    requireReplaceable(file, place, how);
    const auto old = place.status();
    Lost lost;
    Unfinished unfinished = newBeside(place);
    if (!unfinished.descriptor) {
        fail(file, errno);
    }
    if (!writeAll(unfinished.descriptor, content) || !takeOver(unfinished.descriptor, old, lost) ||
        ::fsync(unfinished.descriptor.get()) != 0 || !unfinished.descriptor.close() ||
        ::renameat(place.folder.get(), unfinished.name.c_str(), place.folder.get(), place.name.c_str()) != 0) {
        const int reason = errno;
        ::unlinkat(place.folder.get(), unfinished.name.c_str(), 0);
        fail(file, reason);
    }
    if (old && old->st_nlink > 1) {
        lost.otherNames = old->st_nlink - 1;
    }
    if (!syncFolder(place)) {
        fail(file, errno);
    }
    return lost;
}

}  // namespace

Lost writeWhole(const fs::path& file, std::string_view content, ReadOnly how) {
    if (watching.begins) {
        watching.begins(file);
    }
    bool written = false;
    const auto end = [&] {
        if (watching.ends) {
            watching.ends(file, written);
        }
    };
    try {
        const Lost lost = replace(file, content, how);
        written = true;
        end();
        return lost;
    } catch (...) {
        end();
        throw;
    }
}

void requireReplaceable(const fs::path& file, ReadOnly how) {
    requireReplaceable(file, placeOf(file), how);
}

void watchWrites(WriteWatch watch) {
    watching = std::move(watch);
}

Snapshot::Snapshot(const fs::path& file) {
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat about {};
    if (!descriptor || ::fstat(descriptor.get(), &about) != 0 || !S_ISREG(about.st_mode)) {
        return;
    }
    Content content;
    std::vector<char> piece(1 << 20);
    ssize_t count = 0;
    while ((count = ::read(descriptor.get(), piece.data(), piece.size())) > 0) {
        const std::string_view bytes(piece.data(), static_cast<std::size_t>(count));
        content.size += bytes.size();
        content.hash = content.hash * 0x9E3779B97F4A7C15u + std::hash<std::string_view>()(bytes);
    }
    if (count == 0) {
        content_ = content;
    }
}

FileLock::FileLock(const fs::path& file) : folder_(placeOf(file).openFolder().release()) {
    if (folder_ < 0) {
        fail(file, errno);
    }
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while (::flock(folder_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        if (std::chrono::steady_clock::now() > end) {
            ::close(folder_);
            fail(file, "another program holds its folder");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

FileLock::~FileLock() {
    ::close(folder_);
}

}  // namespace headless
