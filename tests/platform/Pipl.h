// Reads the PiPL of either system, sharing nothing with what writes it. Throws where it is malformed.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

class Pipl {
 public:
    // All of the resource's bytes, and no others. Windows announces its byte order by the first two.
    explicit Pipl(std::string bytes) : bytes_(std::move(bytes)) {
        if (bytes_.substr(0, 2) == std::string("\1\0", 2)) {
            littleEndian_ = true;
            at_ = 2;
        }
        require(number() == 0, "version");
        for (std::uint32_t left = number(); left > 0; --left) {
            readProperty();
        }
        require(at_ == bytes_.size(), "end");
    }

    const std::string& keys() const { return keys_; }  // as they follow each other, a blank after each

    std::string code(const std::string& key) const { return inReadingOrder(raw(key)); }
    std::uint32_t value(const std::string& key) const { return numberIn(raw(key)); }
    std::string pascalString(const std::string& key) const {
        const std::string data = raw(key);
        const auto length = static_cast<std::size_t>(static_cast<unsigned char>(data.at(0)));
        require(1 + length <= data.size() && data.size() - length - 1 < 4, "string");
        return data.substr(1, length);
    }
    std::string cString(const std::string& key) const {
        const std::string data = raw(key);
        const std::size_t end = data.find('\0');
        require(end != std::string::npos && data.size() - end <= 4, "string");
        return data.substr(0, end);
    }

 private:
    static void require(bool holds, const char* what) {
        if (!holds) {
            throw std::runtime_error(std::string("wrong ") + what);
        }
    }

    std::string take(std::size_t count) {
        require(count <= bytes_.size() - at_, "length");
        at_ += count;
        return bytes_.substr(at_ - count, count);
    }
    std::string inReadingOrder(std::string text) const {
        require(text.size() == 4, "size");
        if (littleEndian_) {
            std::reverse(text.begin(), text.end());
        }
        return text;
    }
    std::uint32_t numberIn(const std::string& data) const {
        std::uint32_t value = 0;
        for (const char part : inReadingOrder(data)) {
            value = value << 8 | static_cast<unsigned char>(part);
        }
        return value;
    }
    std::uint32_t number() { return numberIn(take(4)); }

    void readProperty() {
        require(inReadingOrder(take(4)) == "8BIM", "vendor");
        const std::string key = inReadingOrder(take(4));
        require(number() == 0, "id");
        const std::uint32_t length = number();
        require(!littleEndian_ || length % 4 == 0, "padding");
        properties_[key] = take(length);
        require(take((4 - length % 4) % 4).find_first_not_of('\0') == std::string::npos, "padding");
        keys_ += key + " ";
    }

    const std::string& raw(const std::string& key) const { return properties_.at(key); }

    std::string bytes_;
    bool littleEndian_ = false;
    std::size_t at_ = 0;
    std::map<std::string, std::string> properties_;
    std::string keys_;
};
