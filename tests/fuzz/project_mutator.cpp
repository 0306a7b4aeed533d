// Changes a document as a document, not as bytes: a value becomes another one, is doubled, or goes.

#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t largest);

namespace {

using Json = nlohmann::ordered_json;

void collect(Json& json, std::vector<Json*>& all) {
    all.push_back(&json);
    for (Json& inner : json) {
        if (json.is_structured()) {
            collect(inner, all);
        }
    }
}

Json odd(std::minstd_rand& random, const std::vector<Json*>& all) {
    static const std::vector<Json> values = {
        nullptr,       true,          false, 0,      1,          -1,     2,    0.5, -0.25, 1e-300,
        1e12,          -1e12,         1e30,  29.97,  30'000,     30'001, 2e6,  "",  "a",   "7",
        Json::array(), {0, 0},        {1e9}, {-5.5}, {{"k", 0}}, 1e9,    -1e9, 13,  1e-7,  2147483647.0,
        -2147483648.0, Json::object()};
    const std::size_t choice = random() % (values.size() + 6);
    return choice < values.size() ? values[choice] : *all[random() % all.size()];
}

void change(Json& document, std::minstd_rand& random) {
    std::vector<Json*> all;
    collect(document, all);
    Json& target = *all[random() % all.size()];
    switch (random() % 4) {
        case 0:
            if (target.is_array() && !target.empty()) {
                target.insert(target.begin() + static_cast<std::ptrdiff_t>(random() % target.size()),
                              target[random() % target.size()]);
                break;
            }
            [[fallthrough]];
        case 1:
            if (target.is_structured() && !target.empty()) {
                auto place = target.begin();
                std::advance(place, random() % target.size());
                target.erase(place);
                break;
            }
            [[fallthrough]];
        case 2:
            if (target.is_number()) {
                constexpr double factors[] = {-1, 0.5, 2, 1000, 1e9, 1e-9};
                target = target.get<double>() * factors[random() % std::size(factors)];
                break;
            }
            [[fallthrough]];
        default:
            target = Json(odd(random, all));
    }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size, std::size_t largest,
                                               unsigned seed) {
    std::minstd_rand random(seed);
    Json document = Json::parse(bytes, bytes + size, nullptr, false);
    if (document.is_discarded() || random() % 8 == 0) {
        return LLVMFuzzerMutate(bytes, size, largest);
    }
    for (unsigned changes = 1 + random() % 3; changes > 0; --changes) {
        change(document, random);
    }
    const std::string text = document.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text.size() > largest) {
        return LLVMFuzzerMutate(bytes, size, largest);
    }
    std::memcpy(bytes, text.data(), text.size());
    return text.size();
}
