// Files that are written: whole or not at all.

#pragma once

#include <filesystem>
#include <string_view>

namespace headless {

// Writes beside the file first and puts that in its place, so that whatever happens, and whenever, the old file
// is there or the new one. A link stays, and what it leads to is replaced; a file keeps its permissions.
// Throws std::runtime_error naming the file; what was written beside it is then gone. Only a program that is
// killed may leave that behind, named like the file with a dot and six characters.
void writeWhole(const std::filesystem::path& file, std::string_view content);

// Held by one program at a time, for a file that is read, changed and written. Waits for the others, but not
// for ever: throws std::runtime_error. The lock is that of the file's folder and leaves nothing there.
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
