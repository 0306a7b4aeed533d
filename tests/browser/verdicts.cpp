// Prints the codes of what is not drawn in each file, one line for each.

#include <cstdio>
#include <exception>

#include "sight/Sight.h"

int main(int count, char** files) try {
    for (int i = 1; i < count; ++i) {
        const auto project = headless::model::Project::open(files[i]);
        for (const headless::model::ItemPtr& item : project->items) {
            if (item->comp) {
                for (const auto& unseen : headless::sight::unseenIn(*project, *item->comp)) {
                    std::printf("%s ", unseen.code.c_str());
                }
            }
        }
        std::printf("\n");
    }
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
