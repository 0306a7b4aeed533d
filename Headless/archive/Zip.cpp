#include "archive/Zip.h"

#include <sys/stat.h>
#include <zip.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "model/Project.h"

namespace headless::archive {

namespace {

// What an honest animation stays far below. A size is checked as the archive states it, and again while
// unpacking, since it may lie.
constexpr zip_int64_t mostEntries = 10'000;
constexpr std::uint64_t mebibyte = 1 << 20;
constexpr std::uint64_t largestEntry = 64 * mebibyte;
constexpr std::uint64_t largestTotal = 128 * mebibyte;

struct Error {
    Error() { zip_error_init(&error); }
    ~Error() { zip_error_fini(&error); }
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;
    std::string text() { return zip_error_strerror(&error); }
    zip_error_t error{};
};

using Source = std::unique_ptr<zip_source_t, decltype(&zip_source_free)>;
using Writer = std::unique_ptr<zip_t, decltype(&zip_discard)>;

Source sourceOf(std::string_view bytes) {
    return {zip_source_buffer_create(bytes.data(), bytes.size(), 0, nullptr), zip_source_free};
}

// To be written over. What is kept of the beginning the library takes for memory of its own and frees, so that
// it needs a copy that is.
Source writableSourceOf(std::string_view bytes) {
    void* const copy = std::malloc(bytes.size());
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(copy, bytes.data(), bytes.size());
    Source source{zip_source_buffer_create(copy, bytes.size(), 1, nullptr), zip_source_free};
    if (!source) {
        std::free(copy);
    }
    return source;
}

zip_t* open(const Source& source, int flags, Error& error) {
    if (!source) {
        throw std::bad_alloc();
    }
    zip_t* opened = zip_open_from_source(source.get(), flags, &error.error);
    if (opened != nullptr) {
        zip_source_keep(source.get());  // the archive has taken one
    }
    return opened;
}

void require(bool done, zip_t* writer) {
    if (!done) {
        throw std::runtime_error(std::string("the archive cannot be written: ") + zip_strerror(writer));
    }
}

std::string closed(Writer writer, const Source& source) {
    require(zip_close(writer.get()) == 0, writer.get());
    static_cast<void>(writer.release());
    zip_stat_t stat;
    zip_stat_init(&stat);
    std::string bytes;
    if (zip_source_open(source.get()) == 0 && zip_source_stat(source.get(), &stat) == 0) {
        bytes.resize(stat.size);
        if (zip_source_read(source.get(), bytes.data(), bytes.size()) ==
            static_cast<zip_int64_t>(bytes.size())) {
            zip_source_close(source.get());
            return bytes;
        }
    }
    throw std::runtime_error("the archive cannot be written");
}

// Empty where the name stays inside the archive.
std::string whatIsWrongWith(const std::string& name) {
    if (name.empty()) {
        return "the entry has no name";
    }
    if (name.find('\\') != std::string::npos) {
        return "the name has a backslash";
    }
    if (name[0] == '/' || (name.size() > 1 && name[1] == ':')) {
        return "the name is absolute";
    }
    for (std::size_t begin = 0; begin <= name.size();) {
        const std::size_t end = std::min(name.find('/', begin), name.size());
        if (name.compare(begin, end - begin, "..") == 0) {
            return "the name leads out of the archive";
        }
        begin = end + 1;
    }
    return "";
}

bool isLink(zip_t* archive, zip_uint64_t index) {
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    return zip_file_get_external_attributes(archive, index, 0, &system, &attributes) == 0 &&
           system == ZIP_OPSYS_UNIX && S_ISLNK(attributes >> 16);
}

}  // namespace

bool isZip(std::string_view bytes) {
    return bytes.starts_with(std::string_view("PK\3\4", 4)) || bytes.starts_with(std::string_view("PK\5\6", 4));
}

void Zip::fail(const std::string& entry, const std::string& what) const {
    throw model::ProjectError(name_ + ": " + (entry.empty() ? "" : entry + ": ") + what);
}

Zip::Zip(std::string bytes, std::string name) : bytes_(std::move(bytes)), name_(std::move(name)) {
    Error error;
    zip_ = open(sourceOf(bytes_), ZIP_RDONLY, error);
    if (zip_ == nullptr) {
        fail("", "the archive is damaged or cut short (" + error.text() + ")");
    }
    try {
        checkEntries();
    } catch (...) {
        zip_discard(zip_);
        throw;
    }
}

Zip::~Zip() {
    zip_discard(zip_);
}

void Zip::checkEntries() {
    const zip_int64_t count = zip_get_num_entries(zip_, 0);
    if (count > mostEntries) {
        fail("", "the archive has " + std::to_string(count) + " entries; more than " +
                     std::to_string(mostEntries) + " are not read");
    }
    std::uint64_t total = 0;
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(count); ++index) {
        zip_stat_t stat;
        if (zip_stat_index(zip_, index, 0, &stat) != 0 || (stat.valid & ZIP_STAT_SIZE) == 0) {
            fail("entry " + std::to_string(index + 1), zip_strerror(zip_));
        }
        const char* const named = zip_get_name(zip_, index, 0);
        const std::string entry = named != nullptr ? named : "";
        if (const std::string problem = whatIsWrongWith(entry); !problem.empty()) {
            fail(entry.empty() ? "entry " + std::to_string(index + 1) : entry, problem);
        }
        if (!places_.emplace(entry, Place{index, stat.size}).second) {
            fail(entry, "the archive has two entries of this name");
        }
        if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE) {
            fail(entry, "the entry is encrypted; take the protection off first");
        }
        if (isLink(zip_, index)) {
            fail(entry, "the entry is a symbolic link");
        }
        if (stat.size > largestEntry) {
            fail(entry, "the entry unpacks to more than " + std::to_string(largestEntry / mebibyte) + " MiB");
        }
        total += stat.size;
        if (total > largestTotal) {
            fail(entry, "up to here the archive unpacks to more than " +
                            std::to_string(largestTotal / mebibyte) + " MiB");
        }
        entries_.push_back(entry);
    }
}

const Zip::Place& Zip::placeOf(const std::string& entry) const {
    const auto found = places_.find(entry);
    if (found == places_.end()) {
        fail(entry, "there is no such entry");
    }
    return found->second;
}

std::uint64_t Zip::sizeOf(const std::string& entry) const {
    return placeOf(entry).size;
}

std::string Zip::contentOf(const std::string& entry) const {
    const Place& place = placeOf(entry);
    const std::unique_ptr<zip_file_t, decltype(&zip_fclose)> file(zip_fopen_index(zip_, place.index, 0),
                                                                  zip_fclose);
    if (!file) {
        fail(entry, std::string("the entry cannot be unpacked (") + zip_strerror(zip_) + ")");
    }
    std::string content;
    std::string piece(std::min<std::uint64_t>(place.size + 1, mebibyte), '\0');
    while (true) {
        const zip_int64_t read = zip_fread(file.get(), piece.data(), piece.size());
        if (read < 0) {
            fail(entry, std::string("the entry is damaged (") + zip_file_strerror(file.get()) + ")");
        }
        if (read == 0) {
            break;
        }
        content.append(piece, 0, static_cast<std::size_t>(read));
        if (content.size() > place.size) {
            fail(entry, "the entry unpacks to more than the archive says");
        }
    }
    if (content.size() != place.size) {
        fail(entry, "the entry unpacks to less than the archive says");
    }
    return content;
}

std::string Zip::with(const std::string& entry, std::string_view content) const {
    const zip_uint64_t index = placeOf(entry).index;
    zip_stat_t stat;
    zip_stat_index(zip_, index, 0, &stat);
    Error error;
    const Source target = writableSourceOf(bytes_);
    Writer writer(open(target, 0, error), zip_discard);
    if (!writer) {
        fail("", error.text());
    }
    try {
        Source replacement = sourceOf(content);
        require(zip_file_replace(writer.get(), index, replacement.get(), 0) == 0, writer.get());
        static_cast<void>(replacement.release());
        require(zip_set_file_compression(writer.get(), index, stat.comp_method, 0) == 0 &&
                    zip_file_set_mtime(writer.get(), index, stat.mtime, 0) == 0,
                writer.get());
        return closed(std::move(writer), target);
    } catch (const std::runtime_error& damaged) {  // another entry
        fail("", damaged.what());
    }
}

std::string newZip(const std::vector<std::pair<std::string, std::string>>& entries) {
    constexpr zip_uint16_t firstOfJanuary1980 = 0x21;
    Error error;
    const Source target = sourceOf({});
    Writer writer(open(target, ZIP_CREATE | ZIP_TRUNCATE, error), zip_discard);
    if (!writer) {
        throw std::runtime_error("the archive cannot be written: " + error.text());
    }
    for (const auto& [name, content] : entries) {
        Source source = sourceOf(content);
        const zip_int64_t index = zip_file_add(writer.get(), name.c_str(), source.get(), ZIP_FL_ENC_UTF_8);
        require(index >= 0, writer.get());
        static_cast<void>(source.release());
        require(
            zip_set_file_compression(writer.get(), static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE, 0) == 0 &&
                zip_file_set_dostime(writer.get(), static_cast<zip_uint64_t>(index), 0, firstOfJanuary1980,
                                     0) == 0,
            writer.get());
    }
    return closed(std::move(writer), target);
}

}  // namespace headless::archive
