// The host's preference store: sections of keys, every value kept as the text the host would write.
//
// The store knows no types. Scripts and the plug-in read the same entry through different calls, so a value is
// converted by whoever reads it: a float "12.500000" read as an integer is 12; a boolean is one raw byte.

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace headless::model {

class Preferences {
 public:
    Preferences() = default;

    // Reads the host's text form. A missing file is an empty store. Throws std::runtime_error naming the file
    // and line where the text is not of that form.
    static Preferences load(const std::filesystem::path& file);
    // The same from the text of a file of that name.
    static Preferences parse(std::string text, const std::string& file);
    std::string text() const;

    // Brings what has been set and removed here since then into the file, whose other entries stay as they are
    // now: of two programs with one file neither loses what it has saved. Throws std::runtime_error naming the
    // file, which is then as it was.
    void save(const std::filesystem::path& file);
    // What has been set so far holds here but is not for the file.
    void keepFromFile() { changed_.clear(); }

    bool has(const std::string& section, const std::string& key) const;
    void remove(const std::string& section, const std::string& key);  // absent: nothing happens

    // Nothing where the key is absent. Numbers by their leading text, truncated toward zero and held within 32
    // bits; no number gives 0.
    std::optional<std::int32_t> getLong(const std::string& section, const std::string& key) const;
    // Like getLong, but nothing where the text does not begin with a number.
    std::optional<std::int32_t> getLongIfNumber(const std::string& section, const std::string& key) const;
    std::optional<double> getFloat(const std::string& section, const std::string& key) const;
    // Of text that begins with a number, whether that is not 0; of anything else, whether its first byte is
    // not.
    std::optional<bool> getBool(const std::string& section, const std::string& key) const;
    std::optional<std::string> getString(const std::string& section, const std::string& key) const;
    // The raw bytes: of data as stored, of text and numbers their characters.
    std::optional<std::vector<std::uint8_t>> getData(const std::string& section, const std::string& key) const;

    void setLong(const std::string& section, const std::string& key, std::int32_t value);
    void setFloat(const std::string& section, const std::string& key, double value);  // kept with six places
    void setBool(const std::string& section, const std::string& key, bool value);     // one byte, 1 or 0
    void setString(const std::string& section, const std::string& key, const std::string& value);
    void setData(const std::string& section, const std::string& key, std::span<const std::uint8_t> bytes);

    bool operator==(const Preferences& other) const { return sections_ == other.sections_; }

 private:
    const std::string* find(const std::string& section, const std::string& key) const;

    std::string header_ = "# Kestrin headless host preferences\n";  // the comment lines above the first section
    std::map<std::string, std::map<std::string, std::string>> sections_;
    std::set<std::pair<std::string, std::string>>
        changed_;  // section and key, since the file was read or saved
};

}  // namespace headless::model
