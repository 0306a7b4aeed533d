// Files that are written: whole or not at all.

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace headless {

// What becomes of a file that nobody may write to.
enum class ReadOnly { Stays, IsReplaced };

// What could not be kept of a file that was replaced.
struct Lost {
    bool owner = false, group = false;
    std::uintmax_t otherNames = 0;  // hard links, which lead to the old content from now on
};

// Writes beside the file first and puts that in its place, so that whatever happens, and whenever, the old file
// is there or the new one. A link stays, and what it leads to is replaced; a file keeps its permissions, and
// its owner where the system lets us. In a folder that everybody may write to, as /tmp, a link or a file of
// somebody else's is refused. Throws std::runtime_error naming the file; what was written beside it is then
// gone. Only a program that is killed may leave that behind, named .kestrin- and six characters.
Lost writeWhole(const std::filesystem::path& file, std::string_view content, ReadOnly how = ReadOnly::Stays);

// Throws as writeWhole() would, as far as that can be told before.
void requireReplaceable(const std::filesystem::path& file, ReadOnly how);

// Called when writeWhole() begins and when it is done, for those who may have to end the program in between.
struct WriteWatch {
    std::function<void(const std::filesystem::path& file)> begins = {};
    std::function<void(const std::filesystem::path& file, bool written)> ends = {};
};
void watchWrites(WriteWatch watch);

// A file's content at one moment, to tell later whether it is still there.
class Snapshot {
 public:
    // Of a file that cannot be read, too.
    explicit Snapshot(const std::filesystem::path& file);
    bool operator==(const Snapshot&) const = default;

 private:
    struct Content {
        std::uintmax_t size = 0;
        std::uint64_t hash = 0;
        bool operator==(const Content&) const = default;
    };
    std::optional<Content> content_;
};

// Held by one program at a time, for a file that is read, changed and written. Waits for the others, but not
// for ever: throws std::runtime_error. The lock is that of the file's folder, as the file itself is replaced,
// and leaves nothing there. Where the file system has no locks there is none.
class FileLock {
 public:
    explicit FileLock(const std::filesystem::path& file);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

 private:
    int folder_;
};

}  // namespace headless
