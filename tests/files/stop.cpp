// Loaded into the program ahead of the system's library: one of the calls by which files change fails, or is
// the last thing that the program does.
//
// KESTRIN_STOP holds "CALL ERROR FILE": which call, counted from 1; the error it gives, 0 to end the program
// there; and a file that is made when it comes to that.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

struct Order {
    int call = 0, error = 0;
    char file[4096] = "";
};

const Order& order() {
    static const Order read = [] {
        Order result;
        const char* text = std::getenv("KESTRIN_STOP");
        if (text == nullptr ||
            std::sscanf(text, "%d %d %4095s", &result.call, &result.error, result.file) != 3) {
            std::abort();
        }
        return result;
    }();
    return read;
}

// Whether this is the call; then it has to fail with errno as it is.
bool stopsHere() {
    static int calls = 0;
    if (++calls != order().call) {
        return false;
    }
    ::syscall(SYS_open, order().file, O_WRONLY | O_CREAT, 0600);
    if (order().error == 0) {
        ::_exit(99);
    }
    errno = order().error;
    return true;
}

template <class Function>
Function* real(const char* name, Function*) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

#pragma GCC visibility push(default)

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    const auto next = real("write", &write);
    struct stat about {};
    if (descriptor <= STDERR_FILENO || ::fstat(descriptor, &about) != 0 || !S_ISREG(about.st_mode)) {
        return next(descriptor, bytes, size);
    }
    const ssize_t half = next(descriptor, bytes, size / 2);  // what gets through before
    if (half < 0 || stopsHere()) {
        return -1;
    }
    const ssize_t rest = next(descriptor, static_cast<const char*>(bytes) + half, size - size / 2);
    return rest < 0 ? rest : half + rest;
}

// New files alone; nothing is changed by opening one that is there.
int openat(int folder, const char* name, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list more;
        va_start(more, flags);
        mode = va_arg(more, mode_t);
        va_end(more);
        if (stopsHere()) return -1;
    }
    return real("openat", &openat)(folder, name, flags, mode);
}

int fchmod(int descriptor, mode_t mode) noexcept {
    return stopsHere() ? -1 : real("fchmod", &fchmod)(descriptor, mode);
}

int fsync(int descriptor) {
    return stopsHere() ? -1 : real("fsync", &fsync)(descriptor);
}

int renameat(int folder, const char* from, int toFolder, const char* to) noexcept {
    return stopsHere() ? -1 : real("renameat", &renameat)(folder, from, toFolder, to);
}

#pragma GCC visibility pop
}
