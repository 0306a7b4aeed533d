// Archives for tests, put together entry by entry.

#pragma once

#include <sys/stat.h>
#include <zip.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin_test {

struct PackedEntry {
    std::string name, content;
    int compression = ZIP_CM_DEFLATE;
    bool link = false;
    bool encrypted = false;
};

inline std::string packed(const std::vector<PackedEntry>& entries) {
    zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    zip_source_keep(target);
    zip_t* archive = zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const PackedEntry& entry : entries) {
        zip_source_t* content = zip_source_buffer(archive, entry.content.data(), entry.content.size(), 0);
        const auto index =
            static_cast<zip_uint64_t>(zip_file_add(archive, entry.name.c_str(), content, ZIP_FL_ENC_UTF_8));
        zip_set_file_compression(archive, index, entry.compression, 0);
        zip_file_set_dostime(archive, index, 0x6000, 0x5555, 0);
        if (entry.link) {
            zip_file_set_external_attributes(archive, index, 0, ZIP_OPSYS_UNIX, (S_IFLNK | 0777u) << 16);
        }
        if (entry.encrypted) {
            zip_file_set_encryption(archive, index, ZIP_EM_AES_256, "secret");
        }
    }
    if (zip_close(archive) != 0) {
        throw std::runtime_error(zip_strerror(archive));
    }
    zip_stat_t stat;
    zip_source_open(target);
    zip_source_stat(target, &stat);
    std::string bytes(stat.size, '\0');
    zip_source_read(target, bytes.data(), bytes.size());
    zip_source_close(target);
    zip_source_free(target);
    return bytes;
}

// Every `from` as `to`, which is as long: in names, they stand in two places.
inline std::string patched(std::string bytes, std::string_view from, std::string_view to) {
    for (std::size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + to.size())) {
        bytes.replace(at, from.size(), to);
    }
    return bytes;
}

}  // namespace kestrin_test
