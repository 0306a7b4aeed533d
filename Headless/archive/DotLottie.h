// dotLottie archives: animations and their pictures beside a manifest, in the layout of either version.
//
// Failures are thrown as model::ProjectError and name the archive and the entry.

#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "archive/Zip.h"
#include "model/Project.h"

namespace headless::archive {

class DotLottie : public model::PictureStore {
 public:
    struct Animation {
        std::string id, entry;
    };

    // Reads the manifest and finds the animations that it lists; without a list, those that are there, their
    // ids being their file names, or their whole paths where two have one name.
    DotLottie(std::string bytes, std::string name);

    const std::vector<Animation>& animations() const { return animations_; }
    // An empty id means the only one there is.
    const Animation& animation(const std::string& id) const;
    // The archive with `text` as that animation, all else as it was.
    std::string with(const Animation& animation, std::string_view text) const;

    std::string textOf(const Animation& animation) const { return zip_.contentOf(animation.entry); }
    std::optional<std::uint64_t> sizeOf(const std::string& picture) const override;
    std::string contentOf(const std::string& picture) const override;
    const std::string& name() const { return zip_.name(); }

 private:
    std::vector<std::string> listedIds();  // and finds the version
    std::optional<std::string> entryOf(const std::string& picture) const;

    Zip zip_;
    int version_ = 1;
    std::vector<Animation> animations_;
};

// From memory; `name` stands in messages.
std::shared_ptr<const DotLottie> readArchive(std::string_view bytes, const std::string& name);
std::shared_ptr<const DotLottie> openArchive(const std::filesystem::path& file);
// Whether the file begins as an archive does; false where it cannot be read.
bool isArchive(const std::filesystem::path& file);

// One animation as a project, which keeps the archive for its pictures.
std::unique_ptr<model::Project> openAnimation(const std::shared_ptr<const DotLottie>& archive,
                                              const std::string& id, model::ReadOptions options = {});
// A new archive with this one animation and the pictures that it takes from elsewhere.
std::string newArchive(const model::Project& project);

}  // namespace headless::archive
