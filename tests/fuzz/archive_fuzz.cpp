// A dotLottie archive: each of its animations read, put back and found again.

#include "archive/DotLottie.h"
#include "fuzz/Fuzz.h"

void tryInput(const std::string& bytes) {
    using namespace headless;
    std::shared_ptr<const archive::DotLottie> opened;
    try {
        opened = archive::readArchive(bytes, "archive");
    } catch (const model::ProjectError&) {
        return;
    }
    for (const archive::DotLottie::Animation& animation : opened->animations()) {
        try {
            const auto project = archive::openAnimation(opened, animation.id);
            const std::string packed = opened->with(animation, project->write());
            const auto again = archive::readArchive(packed, "again");
            require(again->textOf(again->animation(animation.id)) == project->write(),
                    "what is packed is found again");
            project->documentOf(project->root(), project->root().item->size);
            archive::readArchive(archive::newArchive(*project), "new");
        } catch (const std::runtime_error&) {  // another entry may turn out to be damaged
        }
    }
}
