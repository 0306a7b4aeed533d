// Pages that cannot be read, as tests ask other systems for them.

#pragma once

#include <sys/types.h>

#include <cstddef>

enum { PROT_NONE = 0, PROT_READ = 1, PROT_WRITE = 2, MAP_PRIVATE = 2, MAP_ANONYMOUS = 32, _SC_PAGESIZE = 30 };

void* mmap(void*, std::size_t size, int, int, int, off_t);
int mprotect(void* memory, std::size_t size, int);  // takes all access away
int munmap(void* memory, std::size_t);
long sysconf(int);
