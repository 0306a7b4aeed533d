#include "sight/Expression.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

namespace headless::sight {

namespace {

// Each stands in a test that is drawn as by players. What reaches another composition is not here.
const std::set<std::string_view> known{
    "var",     "let",  "const",  "if",    "else",    "for",     "while",   "return",  "true",
    "false",   "null", "$bm_rt", "value", "time",    "Math",    "sin",     "cos",     "abs",
    "min",     "max",  "floor",  "PI",    "$bm_sum", "$bm_sub", "$bm_mul", "$bm_div", "$bm_mod",
    "$bm_neg", "sum",  "sub",    "mul",   "div",     "mod",
};

bool startsWord(char letter) {
    return std::isalpha(static_cast<unsigned char>(letter)) != 0 || letter == '_' || letter == '$';
}

bool isInWord(char letter) {
    return startsWord(letter) || std::isdigit(static_cast<unsigned char>(letter)) != 0;
}

}  // namespace

bool isDrawn(std::string_view expression) {
    std::set<std::string, std::less<>> own;  // variables
    bool declares = false;
    std::size_t at = 0;
    while (at < expression.size()) {
        const char letter = expression[at];
        if (letter == '"' || letter == '\'') {
            const std::size_t end = expression.find(letter, at + 1);
            if (end == std::string_view::npos ||
                expression.substr(at, end - at).find('\\') != std::string_view::npos) {
                return false;
            }
            at = end + 1;
        } else if (startsWord(letter)) {
            std::size_t end = at;
            while (end < expression.size() && isInWord(expression[end])) {
                ++end;
            }
            const std::string_view word = expression.substr(at, end - at);
            if (declares) {
                own.emplace(word);
            } else if (!known.contains(word) && own.find(word) == own.end()) {
                return false;
            }
            declares = word == "var" || word == "let" || word == "const";
            at = end;
        } else if (letter == '/' && at + 1 < expression.size() &&
                   (expression[at + 1] == '/' || expression[at + 1] == '*')) {
            return false;  // comments hide
        } else if (letter == '`' || letter == '\\') {
            return false;
        } else {
            if (std::isdigit(static_cast<unsigned char>(letter)) != 0) {
                while (at < expression.size() && (isInWord(expression[at]) || expression[at] == '.')) {
                    ++at;  // 1e3
                }
                continue;
            }
            declares = declares && std::isspace(static_cast<unsigned char>(letter)) != 0;
            ++at;
        }
    }
    return true;
}

}  // namespace headless::sight
