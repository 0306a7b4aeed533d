#include "files/PictureFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "files/Descriptor.h"

namespace headless {

namespace fs = std::filesystem;

namespace {

// Whether it is an SVG: what may stand above the first element is skipped.
bool isSvg(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    if (text.starts_with("\xEF\xBB\xBF")) {
        text.remove_prefix(3);
    }
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        const std::string_view end = text.starts_with("<?")     ? "?>"
                                     : text.starts_with("<!--") ? "-->"
                                     : text.starts_with("<!DOCTYPE")
                                         ? (text.find('[') < text.find('>') ? "]>" : ">")
                                         : "";
        if (end.empty()) {
            return text.starts_with("<svg") && text.size() > 4 &&
                   (blanks.find(text[4]) != blanks.npos || text[4] == '>');
        }
        text.remove_prefix(std::min(text.find(end), text.size() - end.size()) + end.size());
    }
}

// Where an open file lies, whatever led there.
fs::path placeOf(const Descriptor& descriptor) {
    std::error_code error;
    return fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor.get()), error);
}

}  // namespace

std::string_view pictureType(std::string_view content) {
    if (content.starts_with("\x89PNG\r\n\x1A\n")) return "png";
    if (content.starts_with("\xFF\xD8\xFF")) return "jpeg";
    if (content.starts_with("GIF87a") || content.starts_with("GIF89a")) return "gif";
    if (content.starts_with("RIFF") &&
        content.substr(std::min<std::size_t>(content.size(), 8)).starts_with("WEBP")) {
        return "webp";
    }
    return isSvg(content) ? "svg+xml" : "";
}

std::string readPicture(const fs::path& folder, const std::string& name) {
    const fs::path file = folder / name;
    const auto fail = [&](const std::string& why) {
        throw std::runtime_error(file.string() + ": the picture cannot be read: " + why);
    };
    // With O_PATH nothing is opened yet that would wait, as a pipe, or do something, as a device.
    const Descriptor top(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    const Descriptor found(::open(file.c_str(), O_PATH | O_CLOEXEC));
    struct stat about {};
    if (!top || !found || ::fstat(found.get(), &about) != 0) {
        fail(std::generic_category().message(errno));
    }
    if (!S_ISREG(about.st_mode)) {
        fail("it is no ordinary file");
    }
    const auto inside = placeOf(found).lexically_relative(placeOf(top));
    if (inside.empty() || *inside.begin() == "..") {
        fail("it lies outside the folder that pictures may be read from");
    }
    const Descriptor descriptor(::open(("/proc/self/fd/" + std::to_string(found.get())).c_str(),
                                       O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!descriptor) {
        fail(std::generic_category().message(errno));
    }
    std::string content;
    ssize_t count = 0;
    do {
        constexpr std::size_t piece = 1 << 16;
        const std::size_t size = content.size();
        content.resize(size + piece);
        count = ::read(descriptor.get(), content.data() + size, piece);
        content.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    } while (count > 0 && content.size() <= largestPicture);
    if (count < 0) {
        fail(std::generic_category().message(errno));
    }
    if (content.size() > largestPicture) {
        fail("it is larger than " + std::to_string(largestPicture >> 20) + " MiB");
    }
    if (pictureType(content).empty()) {
        fail("it is no PNG, JPEG, WebP, GIF or SVG");
    }
    return content;
}

}  // namespace headless
