#include "archive/DotLottie.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

namespace headless::archive {

namespace {

using Json = nlohmann::json;  // sorted: a manifest with very many members takes no longer than its length

constexpr const char* manifestEntry = "manifest.json";
constexpr std::uint64_t largestManifest = 4 << 20;

struct Layout {
    const char* animations;
    const char* pictures;
};
constexpr Layout layouts[] = {{"animations/", "images/"}, {"a/", "i/"}};  // of versions 1 and 2

std::string fileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace

DotLottie::DotLottie(std::string bytes, std::string name) : zip_(std::move(bytes), std::move(name)) {
    for (const std::string& id : listedIds()) {
        const std::string own = layouts[version_ - 1].animations + id + ".json";
        const std::string other = layouts[2 - version_].animations + id + ".json";
        if (!zip_.has(own) && !zip_.has(other)) {
            zip_.fail(own, "the manifest lists this animation, but it is missing");
        }
        animations_.push_back({id, zip_.has(own) ? own : other});
    }
    if (!animations_.empty()) {
        return;
    }
    std::set<std::string> ids;
    for (const std::string& entry : zip_.entries()) {
        for (const Layout& layout : layouts) {
            const std::string_view folder = layout.animations;
            if (entry.starts_with(folder) && entry.ends_with(".json")) {
                animations_.push_back({entry.substr(folder.size(), entry.size() - folder.size() - 5), entry});
                ids.insert(animations_.back().id);
            }
        }
    }
    if (ids.size() < animations_.size()) {  // one name in both folders
        for (Animation& animation : animations_) {
            animation.id = animation.entry;
        }
    }
    if (animations_.empty()) {
        zip_.fail("", "this is an archive, but it holds no animation");
    }
}

// Empty where there is no manifest, or none with a list.
std::vector<std::string> DotLottie::listedIds() {
    if (!zip_.has(manifestEntry)) {
        return {};
    }
    if (zip_.sizeOf(manifestEntry) > largestManifest) {
        zip_.fail(manifestEntry,
                  "a manifest of more than " + std::to_string(largestManifest >> 20) + " MiB is not read");
    }
    const Json manifest = Json::parse(zip_.contentOf(manifestEntry), nullptr, false);
    if (!manifest.is_object()) {
        zip_.fail(manifestEntry, "this is not JSON with an object");
    }
    const Json version = manifest.value("version", Json());
    version_ = version == 2 || (version.is_string() && version.get<std::string>().starts_with("2")) ? 2 : 1;
    const auto list = manifest.find("animations");
    std::vector<std::string> ids;
    if (list == manifest.end() || !list->is_array()) {
        return ids;
    }
    std::set<std::string> taken;
    for (const Json& animation : *list) {
        const Json id = animation.is_object() ? animation.value("id", Json()) : Json();
        if (!id.is_string() || id.get<std::string>().empty()) {
            zip_.fail(manifestEntry,
                      "animations[" + std::to_string(ids.size()) + "].id: a text is needed here");
        }
        if (!taken.insert(id.get<std::string>()).second) {
            zip_.fail(manifestEntry, "two animations have the id \"" + id.get<std::string>() + "\"");
        }
        ids.push_back(id.get<std::string>());
    }
    return ids;
}

const DotLottie::Animation& DotLottie::animation(const std::string& id) const {
    if (id.empty() && animations_.size() == 1) {
        return animations_.front();
    }
    std::string ids;
    for (const Animation& animation : animations_) {
        if (!id.empty() && animation.id == id) {
            return animation;
        }
        ids += (ids.empty() ? "\"" : ", \"") + animation.id + "\"";
    }
    zip_.fail("", id.empty() ? "the archive holds several animations; say which with --animation: " + ids
                             : "there is no animation \"" + id + "\"; there " +
                                   (animations_.size() == 1 ? "is " : "are ") + ids);
}

std::string DotLottie::with(const Animation& animation, std::string_view text) const {
    return zip_.with(animation.entry, text);
}

// Pictures are stated in many ways: from the archive's top with or without a slash, or by the name alone.
std::optional<std::string> DotLottie::entryOf(const std::string& picture) const {
    const std::size_t begin = std::min(picture.find_first_not_of('/'), picture.size());
    for (const std::string& entry : {picture.substr(begin), layouts[version_ - 1].pictures + fileName(picture),
                                     layouts[2 - version_].pictures + fileName(picture)}) {
        if (zip_.has(entry)) {
            return entry;
        }
    }
    return std::nullopt;
}

std::optional<std::uint64_t> DotLottie::sizeOf(const std::string& picture) const {
    const auto entry = entryOf(picture);
    return entry ? std::optional(zip_.sizeOf(*entry)) : std::nullopt;
}

std::string DotLottie::contentOf(const std::string& picture) const {
    const auto entry = entryOf(picture);
    if (!entry) {
        zip_.fail(picture, "there is no such picture");
    }
    return zip_.contentOf(*entry);
}

std::shared_ptr<const DotLottie> readArchive(std::string_view bytes, const std::string& name) {
    return std::make_shared<const DotLottie>(std::string(bytes), name);
}

std::shared_ptr<const DotLottie> openArchive(const std::filesystem::path& file) {
    return std::make_shared<const DotLottie>(model::bytesOf(file), file.string());
}

bool isArchive(const std::filesystem::path& file) {
    char start[4] = {};
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return false;
    }
    std::ifstream in(file, std::ios::binary);
    return in.read(start, sizeof start) && isZip({start, sizeof start});
}

std::unique_ptr<model::Project> openAnimation(const std::shared_ptr<const DotLottie>& archive,
                                              const std::string& id, model::ReadOptions options) {
    const DotLottie::Animation& animation = archive->animation(id);
    if (options.name.empty()) {
        options.name = archive->animations().size() > 1
                           ? animation.id
                           : std::filesystem::path(archive->name()).stem().string();
    }
    options.pictures = archive;
    try {
        return model::Project::read(archive->textOf(animation), options);
    } catch (const model::ProjectError& problem) {
        const std::string what = problem.what();
        const bool named = what.starts_with(archive->name() + ": ");
        throw model::ProjectError(named ? what : archive->name() + ": " + animation.entry + ": " + what);
    }
}

std::string newArchive(const model::Project& project) {
    constexpr const char* id = "animation";
    const model::Json manifest = {{"version", "2"}, {"generator", "Kestrin"}, {"animations", {{{"id", id}}}}};
    std::vector<std::pair<std::string, std::string>> entries = {
        {manifestEntry, manifest.dump()},
        {std::string(layouts[1].animations) + id + ".json", project.write()},
    };
    std::map<std::string, std::string> packed;  // which picture has taken the name
    for (const std::string& picture : project.outerPictures()) {
        const auto [place, isNew] = packed.emplace(layouts[1].pictures + fileName(picture), picture);
        if (isNew) {
            entries.emplace_back(place->first, project.pictureContent(picture));
        } else if (place->second != picture) {
            throw model::ProjectError("the pictures \"" + place->second + "\" and \"" + picture +
                                      "\" have one file name, but an archive keeps all in one folder; "
                                      "rename one");
        }
    }
    return newZip(entries);
}

}  // namespace headless::archive
