#include <sys/mman.h>
#include <windows.h>

void* mmap(void*, std::size_t size, int, int, int, off_t) {
    return VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

int mprotect(void* memory, std::size_t size, int) {
    DWORD before = 0;
    return VirtualProtect(memory, size, PAGE_NOACCESS, &before) != 0 ? 0 : -1;
}

int munmap(void* memory, std::size_t) {
    return VirtualFree(memory, 0, MEM_RELEASE) != 0 ? 0 : -1;
}

long sysconf(int) {
    SYSTEM_INFO info{};
    GetSystemInfo(&info);
    return static_cast<long>(info.dwPageSize);
}
