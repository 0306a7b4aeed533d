#include "model/DocumentParser.h"

#include <algorithm>
#include <cmath>

namespace headless::model {

namespace {

constexpr double largestNumber = 1e30;  // what a 32-bit float can still multiply
constexpr std::size_t deepestJson = 256;

// Walks over the text and leaves its place where the parser can see it.
struct PlaceIterator {
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    const char* at = nullptr;
    const char** place = nullptr;

    reference operator*() const { return *at; }
    PlaceIterator& operator++() {
        *place = ++at;
        return *this;
    }
    PlaceIterator operator++(int) {
        PlaceIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const PlaceIterator& other) const { return at == other.at; }
    bool operator!=(const PlaceIterator& other) const { return at != other.at; }
};

// Builds values from the events of the JSON library.
class DocumentParser final : public nlohmann::json_sax<Json> {
 public:
    DocumentParser(const std::string& text, const TakeLayer& takeLayer)
        : text_(text), place_(text.data()), takeLayer_(takeLayer) {}

    Json parse() {
        Json::sax_parse(PlaceIterator{text_.data(), &place_},
                        PlaceIterator{text_.data() + text_.size(), &place_}, this);
        return std::move(document_);
    }

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return addNumber(value); }
    bool number_unsigned(number_unsigned_t value) override { return addNumber(value); }
    bool number_float(number_float_t value, const string_t&) override { return addNumber(value); }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t&) override { return false; }  // JSON text has none

    bool start_object(std::size_t) override {
        begin(Json::object());
        return true;
    }
    bool start_array(std::size_t) override {
        begin(Json::array());
        return true;
    }
    bool key(string_t& name) override {
        refuseSecondList(name);
        levels_.back().key = std::move(name);
        return true;
    }
    bool end_object() override {
        levels_.pop_back();
        if (levels_.size() == layerDepth_) {
            layerDepth_ = noLayer;
            takeLayer_(layerList(), layer_, {layerBegin_, static_cast<std::size_t>(place_ - layerBegin_)});
            layer_ = nullptr;
        }
        return true;
    }
    bool end_array() override {
        levels_.pop_back();
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
        std::string what = error.what();
        if (const auto bracket = what.find("] "); bracket != std::string::npos) {
            what.erase(0, bracket + 2);
        }
        throw ProjectError("this is not JSON: " + what);
    }

 private:
    struct Level {
        Json* value;
        std::string key;  // of an object: the member that is being read
    };
    static constexpr std::size_t noLayer = ~std::size_t{0};
    static constexpr int notInList = -2;

    // The list that an element of the innermost value would be a layer of: -1 the root's, else the asset's
    // place.
    int layerList() const {
        const auto isList = [&](std::size_t i, const char* key) {
            return levels_[i].value->is_object() && levels_[i].key == key && levels_[i + 1].value->is_array();
        };
        if (levels_.size() == 2 && isList(0, "layers")) {
            return -1;
        }
        if (levels_.size() == 4 && isList(0, "assets") && isList(2, "layers")) {
            return static_cast<int>(levels_[1].value->size()) - 1;
        }
        return notInList;
    }

    // Layers are handed over one by one, so that of two lists neither could be dropped later.
    void refuseSecondList(const std::string& name) const {
        const bool ofRoot = levels_.size() == 1 && (name == "layers" || name == "assets");
        const bool ofAsset = levels_.size() == 3 && levels_[0].key == "assets" && name == "layers";
        if ((ofRoot || ofAsset) && levels_.back().value->contains(name)) {
            throw ProjectError("line " + std::to_string(line()) + ": a second list of " + name);
        }
    }

    std::ptrdiff_t line() const { return 1 + std::count(text_.data(), place_, '\n'); }

    Json& place(Json value) {
        if (levels_.empty()) {
            return document_ = std::move(value);
        }
        Level& parent = levels_.back();
        if (parent.value->is_object()) {
            return (*parent.value)[parent.key] = std::move(value);
        }
        parent.value->push_back(std::move(value));
        return parent.value->back();
    }

    bool add(Json value) {
        place(std::move(value));
        return true;
    }

    template <class Number>
    bool addNumber(Number value) {
        if (!(std::abs(static_cast<double>(value)) <= largestNumber)) {
            throw ProjectError("line " + std::to_string(line()) + ": the number " + Json(value).dump() +
                               " is out of range");
        }
        return add(value);
    }

    void begin(Json value) {
        if (levels_.size() >= deepestJson) {
            throw ProjectError("the file is nested more than " + std::to_string(deepestJson) + " levels deep");
        }
        if (value.is_object() && layerList() != notInList) {
            layerDepth_ = levels_.size();
            layerBegin_ = place_ - 1;
            layer_ = std::move(value);
            levels_.push_back({&layer_, {}});
        } else {
            levels_.push_back({&place(std::move(value)), {}});
        }
    }

    const std::string& text_;
    const char* place_;
    const TakeLayer& takeLayer_;
    Json document_;
    std::vector<Level> levels_;
    Json layer_;  // that is being read
    const char* layerBegin_ = nullptr;
    std::size_t layerDepth_ = noLayer;
};

}  // namespace

Json parseDocument(const std::string& text, const TakeLayer& takeLayer) {
    return DocumentParser(text, takeLayer).parse();
}

}  // namespace headless::model
