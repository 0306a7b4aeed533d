// The preference store and its text form:
//
//     # comment lines
//     ["Section"]
//     	"Key" = "12.500000"
//     	"Flag" = 01
//
// A value is a chain of pieces: quoted runs of printable ASCII, in which \ and " are escaped by \, and bare
// bytes in hexadecimal. Names are written the same way. A backslash at the end of a line continues the value.

#include "model/Preferences.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <fstream>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "files/WholeFile.h"

namespace headless::model {
namespace {

constexpr std::size_t lineWidth = 100;
constexpr std::size_t longestRun = 64;  // characters or bytes in one piece

bool isPrintable(char c) {
    return c >= 0x20 && c < 0x7f;
}

// `bytes` as pieces, none much longer than longestRun.
std::vector<std::string> pieces(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::vector<std::string> result;
    while (!bytes.empty()) {
        const bool quoted = isPrintable(bytes.front());
        const std::string_view within = bytes.substr(0, longestRun);
        const auto end =
            std::find_if(within.begin(), within.end(), [&](char c) { return isPrintable(c) != quoted; });
        std::string piece;
        for (auto at = within.begin(); at != end; ++at) {
            const auto byte = static_cast<unsigned char>(*at);
            if (!quoted) {
                piece += {digits[byte >> 4], digits[byte & 15]};
            } else {
                if (*at == '"' || *at == '\\') piece += '\\';
                piece += *at;
            }
        }
        result.push_back(quoted ? '"' + piece + '"' : piece);
        bytes.remove_prefix(static_cast<std::size_t>(end - within.begin()));
    }
    if (result.empty()) result.emplace_back("\"\"");
    return result;
}

std::string onOneLine(const std::string& bytes) {
    std::string result;
    for (const std::string& piece : pieces(bytes)) result += piece;
    return result;
}

std::string entryLine(const std::string& key, const std::string& value) {
    std::string result = '\t' + onOneLine(key) + " = ";
    std::size_t used = 0;
    for (const std::string& piece : pieces(value)) {
        if (used > 0 && used + piece.size() > lineWidth) {
            result += "\\\n\t\t";
            used = 2;
        }
        result += piece;
        used += piece.size();
    }
    return result + '\n';
}

// Reads the text form from front to back.
class Reader {
 public:
    Reader(std::string text, std::string file) : text_(std::move(text)), file_(std::move(file)) {}

    bool atEnd() const { return at_ == text_.size(); }
    char peek() const { return atEnd() ? '\0' : text_[at_]; }
    void skipBlanks() {
        while (peek() == ' ' || peek() == '\t' || peek() == '\r') ++at_;
    }
    bool take(char c) {
        if (atEnd() || text_[at_] != c) return false;
        if (c == '\n') ++line_;
        ++at_;
        return true;
    }
    void expect(char c, const char* what) {
        if (!take(c)) fail(std::string("expected ") + what);
    }
    void endLine() {
        skipBlanks();
        if (!atEnd()) expect('\n', "the end of the line");
    }
    std::string restOfLine() {
        const std::size_t end = std::min(text_.find('\n', at_), text_.size());
        std::string rest = text_.substr(at_, end - at_);
        at_ = end;
        return rest;
    }

    std::string chain() {
        if (peek() != '"' && !std::isxdigit(static_cast<unsigned char>(peek()))) {
            fail("expected a quoted text or hexadecimal bytes");
        }
        std::string bytes;
        for (;;) {
            if (take('"')) {
                quoted(bytes);
            } else if (std::isxdigit(static_cast<unsigned char>(peek()))) {
                const int high = hexDigit();
                bytes += static_cast<char>(high * 16 + hexDigit());
            } else if (take('\\')) {
                skipBlanks();
                expect('\n', "the end of the line after the backslash");
                skipBlanks();
            } else {
                return bytes;
            }
        }
    }

    [[noreturn]] void fail(const std::string& message) const {
        throw std::runtime_error(file_ + ":" + std::to_string(line_) + ": " + message);
    }

 private:
    void quoted(std::string& bytes) {
        while (!take('"')) {
            if (atEnd() || peek() == '\n') fail("a quoted text does not end on its line");
            if (take('\\') && peek() != '"' && peek() != '\\')
                fail("only \\\" and \\\\ may follow a backslash");
            bytes += text_[at_++];
        }
    }
    int hexDigit() {
        const char c = peek();
        if (!std::isxdigit(static_cast<unsigned char>(c))) fail("a hexadecimal byte has two digits");
        ++at_;
        return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
    }

    std::string text_;
    std::string file_;
    std::size_t at_ = 0;
    int line_ = 1;
};

// The number that `text` begins with. Never depends on the locale.
std::optional<double> leadingNumber(const std::string& text) {
    const auto digit = [&](std::size_t i) {
        return i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]));
    };
    const auto sign = [&](std::size_t i) { return i < text.size() && (text[i] == '-' || text[i] == '+'); };
    const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
    std::size_t end = begin + (sign(begin) ? 1 : 0);
    if (!digit(end) && !(end < text.size() && text[end] == '.' && digit(end + 1))) return std::nullopt;
    while (digit(end)) ++end;
    if (end < text.size() && text[end] == '.') ++end;
    while (digit(end)) ++end;
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        const std::size_t exponent = end + (sign(end + 1) ? 2 : 1);
        if (digit(exponent)) {
            end = exponent;
            while (digit(end)) ++end;
        }
    }
    std::istringstream in(text.substr(begin, end - begin));
    in.imbue(std::locale::classic());
    double value = 0;
    in >> value;  // beyond the range of a double: the largest one
    return value;
}

std::int32_t toLong(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp(std::trunc(value), double{Limits::min()}, double{Limits::max()}));
}

}  // namespace

Preferences Preferences::load(const std::filesystem::path& file) {
    if (!std::filesystem::exists(file)) return {};
    if (!std::filesystem::is_regular_file(file)) {
        throw std::runtime_error("cannot read preferences from " + file.string() +
                                 ": this is no ordinary file");
    }
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    if (!in || (in.peek() != std::ifstream::traits_type::eof() && !(text << in.rdbuf()))) {
        throw std::runtime_error("cannot read preferences from " + file.string());
    }

    return parse(std::move(text).str(), file.string());
}

Preferences Preferences::parse(std::string text, const std::string& file) {
    Preferences result;
    Reader reader(std::move(text), file);
    result.header_.clear();
    std::map<std::string, std::string>* section = nullptr;
    while (!reader.atEnd()) {
        reader.skipBlanks();
        if (reader.peek() == '#') {
            const std::string comment = reader.restOfLine();
            if (!section) result.header_ += comment + '\n';
        } else if (reader.take('[')) {
            section = &result.sections_[reader.chain()];
            reader.expect(']', "] after the section's name");
        } else if (reader.peek() != '\n' && !reader.atEnd()) {
            if (!section) reader.fail("an entry stands above the first section");
            const std::string key = reader.chain();
            reader.skipBlanks();
            reader.expect('=', "= after the key");
            reader.skipBlanks();
            (*section)[key] = reader.chain();
        }
        reader.endLine();
    }
    return result;
}

std::string Preferences::text() const {
    std::string text = header_;
    for (const auto& [name, entries] : sections_) {
        text += "\n[" + onOneLine(name) + "]\n";
        for (const auto& [key, value] : entries) text += entryLine(key, value);
    }
    return text;
}

void Preferences::save(const std::filesystem::path& file) {
    const FileLock lock(file);
    Preferences stored = load(file);
    for (const auto& [section, key] : changed_) {
        if (const std::string* value = find(section, key)) {
            stored.setString(section, key, *value);
        } else {
            stored.remove(section, key);
        }
    }
    writeWhole(file, stored.text());
    changed_.clear();
}

const std::string* Preferences::find(const std::string& section, const std::string& key) const {
    const auto entries = sections_.find(section);
    if (entries == sections_.end()) return nullptr;
    const auto entry = entries->second.find(key);
    return entry == entries->second.end() ? nullptr : &entry->second;
}

bool Preferences::has(const std::string& section, const std::string& key) const {
    return find(section, key) != nullptr;
}

void Preferences::remove(const std::string& section, const std::string& key) {
    changed_.emplace(section, key);
    const auto entries = sections_.find(section);
    if (entries == sections_.end()) return;
    entries->second.erase(key);
    if (entries->second.empty()) sections_.erase(entries);
}

std::optional<std::int32_t> Preferences::getLong(const std::string& section, const std::string& key) const {
    if (!has(section, key)) return std::nullopt;
    return getLongIfNumber(section, key).value_or(0);
}

std::optional<std::int32_t> Preferences::getLongIfNumber(const std::string& section,
                                                         const std::string& key) const {
    const std::string* value = find(section, key);
    const std::optional<double> number = value ? leadingNumber(*value) : std::nullopt;
    return number ? std::optional(toLong(*number)) : std::nullopt;
}

std::optional<double> Preferences::getFloat(const std::string& section, const std::string& key) const {
    const std::string* value = find(section, key);
    return value ? std::optional(leadingNumber(*value).value_or(0)) : std::nullopt;
}

std::optional<bool> Preferences::getBool(const std::string& section, const std::string& key) const {
    const std::string* value = find(section, key);
    if (!value) return std::nullopt;
    if (const std::optional<double> number = leadingNumber(*value)) return *number != 0;
    return !value->empty() && value->front() != '\0';
}

std::optional<std::string> Preferences::getString(const std::string& section, const std::string& key) const {
    const std::string* value = find(section, key);
    return value ? std::optional(*value) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> Preferences::getData(const std::string& section,
                                                              const std::string& key) const {
    const std::string* value = find(section, key);
    return value ? std::optional(std::vector<std::uint8_t>(value->begin(), value->end())) : std::nullopt;
}

void Preferences::setLong(const std::string& section, const std::string& key, std::int32_t value) {
    setString(section, key, std::to_string(value));
}

void Preferences::setFloat(const std::string& section, const std::string& key, double value) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(6);
    text << std::fixed << value;
    setString(section, key, std::move(text).str());
}

void Preferences::setBool(const std::string& section, const std::string& key, bool value) {
    setString(section, key, std::string(1, value ? '\1' : '\0'));
}

void Preferences::setString(const std::string& section, const std::string& key, const std::string& value) {
    sections_[section][key] = value;
    changed_.emplace(section, key);
}

void Preferences::setData(const std::string& section, const std::string& key,
                          std::span<const std::uint8_t> bytes) {
    setString(section, key, std::string(bytes.begin(), bytes.end()));
}

}  // namespace headless::model
