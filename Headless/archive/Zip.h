// A zip archive in memory, checked before anything is read from it.
//
// Failures are thrown as model::ProjectError and name the archive and, where there is one, the entry. One
// thread at a time.

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct zip;

namespace headless::archive {

// Whether these are the first bytes of an archive.
bool isZip(std::string_view bytes);

class Zip {
 public:
    // `name` stands in messages. Throws where the archive is damaged or beyond a limit.
    Zip(std::string bytes, std::string name);
    ~Zip();
    Zip(const Zip&) = delete;
    Zip& operator=(const Zip&) = delete;

    const std::string& name() const { return name_; }
    const std::vector<std::string>& entries() const { return entries_; }  // in the archive's order
    bool has(const std::string& entry) const { return places_.contains(entry); }
    std::uint64_t sizeOf(const std::string& entry) const;  // unpacked
    std::string contentOf(const std::string& entry) const;
    // The archive with other content in one entry; order, compression and all other entries stay.
    std::string with(const std::string& entry, std::string_view content) const;

    [[noreturn]] void fail(const std::string& entry, const std::string& what) const;

 private:
    struct Place {
        std::uint64_t index = 0, size = 0;
    };

    void checkEntries();
    const Place& placeOf(const std::string& entry) const;

    std::string bytes_, name_;
    zip* zip_ = nullptr;
    std::vector<std::string> entries_;
    std::map<std::string, Place> places_;
};

// A new archive of these entries, the same for the same content.
std::string newZip(const std::vector<std::pair<std::string, std::string>>& entries);

}  // namespace headless::archive
