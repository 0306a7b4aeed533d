// The program around a target: the fuzzer's, or one that plays the files again that it is given.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/Fuzz.h"

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

#ifdef KESTRIN_FUZZ
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    tryInput({bytes, bytes + size});
    return 0;
}
#else
int main(int count, char** arguments) {
    int played = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::printf("%s\n", entry.path().c_str());
            std::fflush(stdout);
            std::ifstream in(entry.path(), std::ios::binary);
            tryInput({std::istreambuf_iterator<char>(in), {}});
            ++played;
        }
    }
    return played > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
#endif
