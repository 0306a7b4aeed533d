#include "render/Confine.h"

#include <seccomp.h>
#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "render/Sanitizer.h"

namespace headless::render {
namespace {

void (*whenRefused)(int systemCall) = nullptr;

void onRefusal(int, siginfo_t* info, void*) {
    whenRefused(info->si_syscall);
}

bool allowAll(scmp_filter_ctx filter) {
    const auto allow = [&](int systemCall) {
        return seccomp_rule_add(filter, SCMP_ACT_ALLOW, systemCall, 0) == 0;
    };
    const auto allowIf = [&](int systemCall, const scmp_arg_cmp& condition) {
        return seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, systemCall, 1, &condition) == 0;
    };
    for (const int systemCall :
         {// its descriptors: the socket, the pixels, and /dev/null for what it prints
          SCMP_SYS(read), SCMP_SYS(write), SCMP_SYS(recvfrom), SCMP_SYS(sendto),
          // memory
          SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise),
          // locks that nobody else holds, signals, and the time where the system has no quicker way to tell it
          SCMP_SYS(futex), SCMP_SYS(restart_syscall), SCMP_SYS(clock_gettime), SCMP_SYS(gettid),
          SCMP_SYS(getpid), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn),
          // its end
          SCMP_SYS(exit), SCMP_SYS(exit_group)}) {
        if (!allow(systemCall)) return false;
    }
    const scmp_arg_cmp notExecutable{2, SCMP_CMP_MASKED_EQ, PROT_EXEC, 0};
    const scmp_arg_cmp itself{0, SCMP_CMP_EQ, static_cast<scmp_datum_t>(::getpid()), 0};
    return allowIf(SCMP_SYS(mmap), notExecutable) && allowIf(SCMP_SYS(mprotect), notExecutable) &&
           allowIf(SCMP_SYS(tgkill), itself);
}

}  // namespace

void confineWorker(void (*refused)(int systemCall)) {
    if (underAddressSanitizer) return;
    whenRefused = refused;
    struct sigaction action {};
    action.sa_sigaction = onRefusal;
    action.sa_flags = SA_SIGINFO;
    ::sigaction(SIGSYS, &action, nullptr);
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_TRAP);
    if (filter == nullptr) return;
    // For the threads that are there already, too.
    if (seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1) == 0 && allowAll(filter)) seccomp_load(filter);
    seccomp_release(filter);
}

std::string systemCallName(int systemCall) {
    char* name = seccomp_syscall_resolve_num_arch(SCMP_ARCH_NATIVE, static_cast<int>(systemCall));
    const std::string result = name == nullptr ? std::to_string(systemCall) : name;
    std::free(name);
    return result;
}

}  // namespace headless::render
