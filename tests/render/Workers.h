// The workers that this process has now, the oldest first.

#pragma once

#include <sys/types.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace headless::render {

inline std::vector<pid_t> workers() {
    std::vector<pid_t> found;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream children(task.path() / "children");
        for (pid_t child = 0; children >> child;) found.push_back(child);
    }
    return found;
}

}  // namespace headless::render
