#include "ui/PreparedAnswers.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace headless::ui {
namespace {

using nlohmann::json;

// Splits at a character that no backslash takes the meaning from; backslashes stay.
std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == separator) {
            parts.emplace_back();
            continue;
        }
        parts.back() += text[i];
        if (text[i] == '\\' && i + 1 < text.size()) parts.back() += text[++i];
    }
    return parts;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) ++i;
        result += text[i];
    }
    return result;
}

[[noreturn]] void fail(const std::string& place, const std::string& what) {
    throw std::runtime_error(place + ": " + what);
}

std::string text(const json& value, const std::string& place) {
    if (!value.is_string()) fail(place, "expected a text");
    return value.get<std::string>();
}

// A control's label, or its place from 1 as a number.
std::string controlName(const json& value, const std::string& place) {
    return value.is_number_unsigned() ? value.dump() : text(value, place);
}

void onlyMembers(const json& object, std::initializer_list<const char*> known, const std::string& place) {
    for (const auto& member : object.items()) {
        const auto isIt = [&](const char* name) { return member.key() == name; };
        if (std::none_of(known.begin(), known.end(), isIt))
            fail(place, "does not take \"" + member.key() + "\"");
    }
}

Step stepFrom(const json& action, const std::string& place) {
    if (!action.is_object()) fail(place, "expected an object");
    if (action.contains("press")) {
        onlyMembers(action, {"press"}, place);
        return {Step::Kind::Press, text(action["press"], place + ".press"), {}};
    }
    if (action.contains("check")) {
        onlyMembers(action, {"check", "value"}, place);
        const json value = action.value("value", json(true));
        if (!value.is_boolean()) fail(place + ".value", "expected true or false");
        return {value.get<bool>() ? Step::Kind::Check : Step::Kind::Uncheck,
                text(action["check"], place + ".check"),
                {}};
    }
    if (action.contains("type")) {
        onlyMembers(action, {"type", "into"}, place);
        return {Step::Kind::Type, controlName(action.value("into", json()), place + ".into"),
                text(action["type"], place + ".type")};
    }
    if (action.contains("select")) {
        onlyMembers(action, {"select", "in"}, place);
        return {Step::Kind::Select, controlName(action.value("in", json("")), place + ".in"),
                text(action["select"], place + ".select")};
    }
    if (action == json{{"key", "enter"}}) return {Step::Kind::Enter, {}, {}};
    if (action == json{{"key", "escape"}}) return {Step::Kind::Escape, {}, {}};
    if (action == json{{"close", true}}) return {Step::Kind::CloseBox, {}, {}};
    fail(place, R"(expected press, check, type, select, "key": "enter" or "escape", or "close": true)");
}

const json& listMember(const json& object, const char* name, const std::string& place) {
    if (!object.is_object() || !object.contains(name) || !object[name].is_array()) {
        fail(place, std::string("expected an object with a list \"") + name + "\"");
    }
    return object[name];
}

}  // namespace

void PreparedAnswers::add(std::string_view answer) {
    const std::vector<std::string> sides = split(answer, '=');
    if (sides.size() < 2 || sides.front().empty()) {
        throw std::runtime_error("an answer is written \"Dialog title=Button,Check box\", not \"" +
                                 std::string(answer) + "\"");
    }
    Answer result;
    result.isOneLine = true;
    for (const std::string& name : split(answer.substr(sides.front().size() + 1), ',')) {
        if (!name.empty()) result.names.push_back(unescaped(name));
    }
    titles_[unescaped(sides.front())].answers.push_back(std::move(result));
}

void PreparedAnswers::addFile(const std::filesystem::path& file) {
    std::ifstream in(file);
    if (!in) fail(file.string(), "cannot be read");
    json document;
    try {
        document = json::parse(in);
    } catch (const json::parse_error& error) {
        fail(file.string(), error.what());
    }
    const std::string name = file.string();
    int number = 0;
    for (const json& dialog : listMember(document, "dialogs", name)) {
        const std::string place = name + ": dialogs[" + std::to_string(number++) + "]";
        Answer answer;
        for (const json& action : listMember(dialog, "actions", place)) {
            answer.steps.push_back(
                stepFrom(action, place + ".actions[" + std::to_string(answer.steps.size()) + "]"));
        }
        onlyMembers(dialog, {"title", "actions"}, place);
        const std::string title = text(dialog.value("title", json()), place + ".title");
        titles_[title].answers.push_back(std::move(answer));
    }
}

std::vector<Step> PreparedAnswers::stepsFor(const Answer& answer, const Dialog& dialog) {
    if (!answer.isOneLine) return answer.steps;
    std::vector<Step> steps;
    for (const std::string& name : answer.names) steps.push_back(stepNamed(name, dialog));
    const auto closes = [](const Step& step) {
        return step.kind == Step::Kind::Press || step.kind == Step::Kind::Escape ||
               step.kind == Step::Kind::CloseBox;
    };
    if (std::none_of(steps.begin(), steps.end(), closes)) steps.push_back({Step::Kind::Enter, {}, {}});
    std::stable_partition(steps.begin(), steps.end(), [&](const Step& step) { return !closes(step); });
    return steps;
}

Action PreparedAnswers::play(const Dialog& dialog) {
    auto open = open_.find(dialog.showing);
    if (open == open_.end()) {
        Title& title = titles_.at(dialog.title);
        const std::size_t turn = std::min(title.used++, title.answers.size() - 1);
        open = open_.emplace(dialog.showing, Open{stepsFor(title.answers[turn], dialog), 0}).first;
    }
    while (open->second.done < open->second.steps.size()) {
        const Step& step = open->second.steps[open->second.done++];
        if (const std::optional<Action> action = actionFor(step, dialog)) return *action;
    }
    throw std::runtime_error("dialog \"" + dialog.title + "\" is still open after its prepared answer (" +
                             buttonsOf(dialog) + ")");
}

Action PreparedAnswers::next(const Dialog& dialog) {
    std::string problem;
    if (titles_.contains(dialog.title)) {
        try {
            return play(dialog);
        } catch (const std::runtime_error& error) {
            problem = error.what();
        }
    } else if (otherwise_) {
        return otherwise_->next(dialog);
    } else {
        problem = "nobody answered the dialog \"" + dialog.title + "\" (" + buttonsOf(dialog) + ")";
    }
    if (firstProblem_.empty()) firstProblem_ = problem;
    return {};
}

std::optional<std::string> PreparedAnswers::unanswered() const {
    return firstProblem_.empty() ? std::nullopt : std::optional(firstProblem_);
}

std::vector<std::string> PreparedAnswers::unused() const {
    std::vector<std::string> result;
    for (const auto& [title, state] : titles_) {
        if (state.used == 0) result.push_back(title);
    }
    return result;
}

}  // namespace headless::ui
