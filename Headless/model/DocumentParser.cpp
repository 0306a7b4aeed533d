#include "model/DocumentParser.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <unordered_map>

namespace headless::model {

namespace {

constexpr double largestNumber = 1e30;  // what a 32-bit float can still multiply
constexpr std::size_t deepestJson = 256;
constexpr std::size_t mostValues = 10'000'000;  // in memory at once, each taking many times its text
constexpr std::size_t fewMembers = 16;  // of an object: looking through them all takes no longer than a table

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

// Builds values from the events of the JSON library. Members wait until their object or list is complete, which
// then is made as large as it has to be: an object that grows copies all it holds.
class Parser final : public nlohmann::json_sax<Json> {
 public:
    // Without `takeLayer`, layers are values like others.
    Parser(std::string_view text, const TakeLayer* takeLayer)
        : text_(text), place_(text.data()), takeLayer_(takeLayer) {}

    Json parse() {
        Json::sax_parse(PlaceIterator{text_.data(), &place_},
                        PlaceIterator{text_.data() + text_.size(), &place_}, this);
        return std::move(values_.front());
    }

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return addNumber(value); }
    bool number_unsigned(number_unsigned_t value) override { return addNumber(value); }
    bool number_float(number_float_t value, const string_t&) override { return addNumber(value); }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t&) override { return false; }  // JSON text has none

    bool start_object(std::size_t) override {
        if (takeLayer_ != nullptr && layerList() != notInList) {
            layerDepth_ = levels_.size();
            layerBegin_ = place_ - 1;
            valuesAround_ = valueCount_;
        }
        begin(true);
        return true;
    }
    bool start_array(std::size_t) override {
        begin(false);
        return true;
    }
    bool key(string_t& name) override {
        if (takeLayer_ != nullptr) {
            refuseSecondList(name);
        }
        names_.push_back(std::move(name));
        return true;
    }
    bool end_object() override {
        const Level level = levels_.back();
        Json::object_t object = membersFrom(level);
        end();
        if (levels_.size() != layerDepth_) {
            return add(std::move(object));
        }
        layerDepth_ = noLayer;
        valueCount_ = valuesAround_;
        (*takeLayer_)(layerList(), std::move(object),
                      {layerBegin_, static_cast<std::size_t>(place_ - layerBegin_)});
        return true;
    }
    bool end_array() override {
        const auto first = values_.begin() + static_cast<std::ptrdiff_t>(levels_.back().firstValue);
        Json::array_t array(std::make_move_iterator(first), std::make_move_iterator(values_.end()));
        end();
        return add(std::move(array));
    }
    bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
        std::string what = error.what();
        if (const auto bracket = what.find("] "); bracket != std::string::npos) {
            what.erase(0, bracket + 2);
        }
        throw ProjectError("this is not JSON: " + what);
    }

 private:
    // An object or a list that is being read, and where its members begin.
    struct Level {
        bool isObject = false;
        std::size_t firstValue = 0;
        std::size_t firstName = 0;
    };
    static constexpr std::size_t noLayer = ~std::size_t{0};
    static constexpr int notInList = -2;

    // The object itself would compare each name with all before it.
    Json::object_t membersFrom(const Level& level) {
        using Members = Json::object_t::Container;
        const std::size_t count = values_.size() - level.firstValue;
        Json::object_t object;
        object.reserve(count);
        std::unordered_map<std::string_view, std::size_t> places;
        places.reserve(count > fewMembers ? count : 0);
        for (std::size_t i = 0; i < count; ++i) {
            Json& value = values_[level.firstValue + i];
            const std::string& name = names_[level.firstName + i];
            if (count <= fewMembers) {
                if (!object.emplace(name, std::move(value)).second) {
                    object[name] = std::move(value);  // the last of several counts
                }
            } else if (const auto [place, isNew] = places.emplace(name, object.size()); isNew) {
                static_cast<Members&>(object).emplace_back(name, std::move(value));
            } else {
                static_cast<Members&>(object)[place->second].second = std::move(value);
            }
        }
        return object;
    }

    // The list that an element of the innermost value would be a layer of: -1 the root's, else the asset's
    // place.
    int layerList() const {
        const auto isList = [&](std::size_t i, const char* name) {
            return levels_[i].isObject && !levels_[i + 1].isObject &&
                   names_[levels_[i + 1].firstName - 1] == name;
        };
        if (levels_.size() == 2 && isList(0, "layers")) {
            return -1;
        }
        if (levels_.size() == 4 && isList(0, "assets") && isList(2, "layers")) {
            return static_cast<int>(levels_[2].firstValue - levels_[1].firstValue);
        }
        return notInList;
    }

    // Layers are handed over one by one, so that of two lists neither could be dropped later.
    void refuseSecondList(const std::string& name) const {
        const bool ofRoot = levels_.size() == 1 && (name == "layers" || name == "assets");
        const bool ofAsset = levels_.size() == 3 && levels_[0].isObject &&
                             names_[levels_[1].firstName - 1] == "assets" && name == "layers";
        const auto first = names_.begin() + static_cast<std::ptrdiff_t>(levels_.back().firstName);
        if ((ofRoot || ofAsset) && std::find(first, names_.end(), name) != names_.end()) {
            throw ProjectError("line " + std::to_string(line()) + ": a second list of " + name);
        }
    }

    std::ptrdiff_t line() const { return 1 + std::count(text_.data(), place_, '\n'); }

    bool add(Json value) {
        if (++valueCount_ > mostValues) {
            throw ProjectError("line " + std::to_string(line()) + ": " +
                               (layerDepth_ != noLayer ? "a layer" : "the file beside its layers") +
                               " has more than " + std::to_string(mostValues) + " values");
        }
        values_.push_back(std::move(value));
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

    void begin(bool isObject) {
        if (levels_.size() >= deepestJson) {
            throw ProjectError("the file is nested more than " + std::to_string(deepestJson) + " levels deep");
        }
        levels_.push_back({isObject, values_.size(), names_.size()});
    }

    void end() {
        values_.resize(levels_.back().firstValue);
        names_.resize(levels_.back().firstName);
        levels_.pop_back();
    }

    std::string_view text_;
    const char* place_;
    const TakeLayer* takeLayer_;
    std::vector<Level> levels_;
    std::vector<Json> values_;        // of all levels
    std::vector<std::string> names_;  // of those that stand in objects
    std::size_t valueCount_ = 0;      // those inside of others too
    const char* layerBegin_ = nullptr;
    std::size_t valuesAround_ = 0;
    std::size_t layerDepth_ = noLayer;  // of the layer that is being read
};

}  // namespace

Json parseDocument(const std::string& text, const TakeLayer& takeLayer) {
    return Parser(text, &takeLayer).parse();
}

Json parseValue(std::string_view text) {
    return Parser(text, nullptr).parse();
}

}  // namespace headless::model
