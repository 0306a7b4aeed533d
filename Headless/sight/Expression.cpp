#include "sight/Expression.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <regex>
#include <set>

namespace headless::sight {

namespace {

using model::Json;

constexpr std::size_t longest = 2000;  // what follows the text goes deeper with its length

const Json& member(const Json& json, const char* name) {
    static const Json nothing;
    const auto found = json.is_object() ? json.find(name) : json.end();
    return json.is_object() && found != json.end() ? *found : nothing;
}

// The only one of that name: which of several is meant differs.
const Json* named(std::span<const Json> list, const std::string& name) {
    const auto has = [&](const Json& each) { return member(each, "nm") == Json(name); };
    return std::count_if(list.begin(), list.end(), has) == 1 ? &*std::find_if(list.begin(), list.end(), has)
                                                             : nullptr;
}

const Json* named(const Json& list, const std::string& name) {
    return list.is_array() ? named(std::span<const Json>(list.get_ref<const Json::array_t&>()), name) : nullptr;
}

// The value of an effect's control.
const Json* control(const Json& layer, const std::string& effect, const std::string& control) {
    const Json* group = named(member(layer, "ef"), effect);
    const Json* found = group == nullptr ? nullptr : named(member(*group, "ef"), control);
    const Json* value = found == nullptr ? nullptr : &member(*found, "v");
    return value != nullptr && value->is_object() && !value->contains("x") ? value : nullptr;
}

// ---- Arithmetic that comes to the property's own value --------------------------------------------------

// factor * value + offset
struct Line {
    double factor = 0, offset = 0;
};

class Arithmetic {
 public:
    Arithmetic(std::string_view text, const Reach& reach) : text_(text), reach_(reach) {}

    std::optional<Line> result() {
        const std::optional<Line> line = term();
        return takes("") && text_.empty() ? line : std::nullopt;
    }

 private:
    bool takes(std::string_view word) {
        while (!text_.empty() && std::isspace(static_cast<unsigned char>(text_.front())) != 0) {
            text_.remove_prefix(1);
        }
        if (!text_.starts_with(word)) {
            return false;
        }
        text_.remove_prefix(word.size());
        return true;
    }

    // ('name')
    std::optional<std::string> name() {
        if (!takes("(") || text_.empty() || (text_.front() != '\'' && text_.front() != '"')) {
            return std::nullopt;
        }
        const std::size_t end = text_.find(text_.front(), 1);
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        std::string found(text_.substr(1, end - 1));
        text_.remove_prefix(end + 1);
        return takes(")") && found.find('\\') == std::string::npos ? std::optional(found) : std::nullopt;
    }

    std::optional<Line> term() {
        if (takes("value")) {
            return Line{1, 0};
        }
        if (takes("$bm_mul") || takes("mul")) {
            return joined([](Line a, Line b) -> std::optional<Line> {
                if (a.factor != 0 && b.factor != 0) {
                    return std::nullopt;
                }
                return Line{a.factor * b.offset + b.factor * a.offset, a.offset * b.offset};
            });
        }
        if (takes("$bm_div") || takes("div")) {
            return joined([](Line a, Line b) -> std::optional<Line> {
                if (b.factor != 0 || b.offset == 0) {
                    return std::nullopt;
                }
                return Line{a.factor / b.offset, a.offset / b.offset};
            });
        }
        if (takes("$bm_sum") || takes("sum")) {
            return joined([](Line a, Line b) -> std::optional<Line> {
                return Line{a.factor + b.factor, a.offset + b.offset};
            });
        }
        if (takes("$bm_sub") || takes("sub")) {
            return joined([](Line a, Line b) -> std::optional<Line> {
                return Line{a.factor - b.factor, a.offset - b.offset};
            });
        }
        if (takes("thisComp.layer")) {
            return controlOf(reach_.layers);
        }
        if (takes("comp")) {
            const std::optional<std::string> comp = name();
            return comp == reach_.root && takes(".layer") ? controlOf(reach_.ofRoot) : std::nullopt;
        }
        const std::string rest(text_.substr(0, 40));
        char* end = nullptr;
        const double number = std::strtod(rest.c_str(), &end);
        if (rest.empty() || (std::isdigit(static_cast<unsigned char>(rest[0])) == 0) || end == rest.c_str()) {
            return std::nullopt;
        }
        text_.remove_prefix(static_cast<std::size_t>(end - rest.c_str()));
        return Line{0, number};
    }

    template <class Join>
    std::optional<Line> joined(Join&& join) {
        if (!takes("(")) {
            return std::nullopt;
        }
        const std::optional<Line> first = term();
        if (!first || !takes(",")) {
            return std::nullopt;
        }
        takes("");
        const std::optional<Line> second = term();
        return second && takes(")") ? join(*first, *second) : std::nullopt;
    }

    std::optional<Line> controlOf(std::span<const Json> layers) {
        const std::optional<std::string> layer = name();
        const Json* found = layer ? named(layers, *layer) : nullptr;
        const std::optional<std::string> effect = takes(".effect") ? name() : std::nullopt;
        const std::optional<std::string> what = effect ? name() : std::nullopt;
        const Json* value = found != nullptr && what ? control(*found, *effect, *what) : nullptr;
        if (value == nullptr || !member(*value, "k").is_number()) {
            return std::nullopt;
        }
        return Line{0, member(*value, "k").get<double>()};
    }

    std::string_view text_;
    const Reach& reach_;
};

// ---- What is answered as players do ---------------------------------------------------------------------

// Each stands in a test that holds it against a player.
const std::set<std::string, std::less<>> known{
    "var",     "value",   "time", "index", "if",  "else",    "Math",    "sin",
    "cos",     "abs",     "min",  "max",   "PI",  "$bm_sum", "$bm_sub", "$bm_mul",
    "$bm_div", "$bm_mod", "sum",  "sub",   "mul", "div",     "linear",  "clamp",
};

// Takes what is read from other layers out of the text, where the renderer reads it as players do.
bool withoutReads(std::string& text, const Reach& reach) {
    static const std::regex read(
        R"re((thisComp\.layer\((?:'([^'\\]*)'|"([^"\\]*)")\)\.)?(?:transform\.(position|rotation|scale|anchorPoint)|effect\((?:'([^'\\]*)'|"([^"\\]*)")\)\((?:'([^'\\]*)'|"([^"\\]*)")\)))re");
    std::string rest;
    auto at = text.cbegin();
    for (std::smatch match; std::regex_search(at, text.cend(), match, read); at = match[0].second) {
        const std::string layerName = match[2].str() + match[3].str();
        const Json* layer = match[1].matched ? named(reach.layers, layerName) : &reach.layer;
        if (layer == nullptr) {
            return false;
        }
        const std::string effect = match[5].str() + match[6].str();
        if (match[4].matched) {
            const Json& property = member(member(*layer, "ks"), match[4] == "position"   ? "p"
                                                                : match[4] == "rotation" ? "r"
                                                                : match[4] == "scale"    ? "s"
                                                                                         : "a");
            if (!property.is_object() || !property.contains("k") || property.contains("x")) {
                return false;
            }
        } else if (control(*layer, effect, match[7].str() + match[8].str()) == nullptr) {
            return false;
        }
        rest.append(at, match[0].first);
        rest += " value ";
    }
    rest.append(at, text.cend());
    text = rest;
    return true;
}

bool startsWord(char letter) {
    return std::isalpha(static_cast<unsigned char>(letter)) != 0 || letter == '_' || letter == '$';
}

bool isDigit(char letter) {
    return std::isdigit(static_cast<unsigned char>(letter)) != 0;
}

bool usesOnlyKnown(const std::string& text, bool hasOwnTime) {
    std::set<std::string, std::less<>> own;  // variables
    bool declares = false;
    for (std::size_t at = 0; at < text.size();) {
        const char letter = text[at];
        const bool comments =
            letter == '/' && at + 1 < text.size() && (text[at + 1] == '/' || text[at + 1] == '*');
        if (comments || static_cast<unsigned char>(letter) > 126 ||
            std::string_view("'\"`\\#@").find(letter) != std::string_view::npos) {
            return false;
        }
        std::size_t end = at + 1;
        if (startsWord(letter) || isDigit(letter)) {
            while (end < text.size() &&
                   (startsWord(text[end]) || isDigit(text[end]) || (isDigit(letter) && text[end] == '.'))) {
                ++end;
            }
        }
        if (startsWord(letter)) {
            const std::string word = text.substr(at, end - at);
            if (declares) {
                own.insert(word);
            } else if ((!known.contains(word) && !own.contains(word)) || (word == "time" && hasOwnTime)) {
                return false;
            }
            declares = word == "var";
        } else if (std::isspace(static_cast<unsigned char>(letter)) == 0) {
            declares = false;
        }
        at = end;
    }
    return own.contains("$bm_rt");
}

}  // namespace

bool keepsValue(const std::string& expression, std::optional<double> value, const Reach& reach) {
    if (expression.size() > longest) {
        return false;
    }
    static const std::regex assignment(R"(^\s*var \$bm_rt;\s*\$bm_rt = ([^;]*);\s*$)");
    std::smatch match;
    if (!std::regex_match(expression, match, assignment)) {
        return false;
    }
    const std::string right = match[1];
    const std::optional<Line> line = Arithmetic(right, reach).result();
    if (!line) {
        return false;
    }
    const auto same = [](double a, double b) { return std::abs(a - b) <= 1e-6 * std::max(1.0, std::abs(b)); };
    return (same(line->factor, 1) && same(line->offset, 0)) ||
           (value && same(line->factor * *value + line->offset, *value));
}

bool isDrawn(const std::string& expression, const Reach& reach) {
    std::string text = expression;
    return text.size() <= longest && withoutReads(text, reach) && usesOnlyKnown(text, reach.hasOwnTime);
}

}  // namespace headless::sight
