#include "cli/Batch.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "cli/ComparisonJson.h"
#include "cli/Output.h"
#include "cli/Print.h"
#include "cli/Text.h"
#include "ui/Interrupt.h"

namespace headless::cli {

namespace {

namespace fs = std::filesystem;
using model::Json;

struct Place {
    fs::path input, output;
};

// Of a file, or of one animation of an archive that holds several.
struct Entry {
    Place place;
    std::string animation;  // empty: the file's only one, or the one that was asked for
    ExitCode code = ExitCode::Done;
    std::string message;  // why there is no result
    std::optional<CropAllResult> result;
    bool written = false;

    bool cropped() const { return result && result->count(Outcome::Cropped) > 0; }
};

template <class Test>
bool any(const std::vector<Entry>& entries, Test&& test) {
    return std::any_of(entries.begin(), entries.end(), test);
}

// ---- Where the results go ------------------------------------------------------------------------------

std::vector<Place> planned(const BatchRequest& request) {
    std::error_code error;
    const bool folder = fs::is_directory(request.output, error);
    if (request.projects.size() > 1 && !folder && !request.inPlace) {
        throw Stop(ExitCode::BadInput,
                   "several projects need a folder for their results, and there is no folder " +
                       request.output + "; create it first");
    }
    std::vector<Place> places;
    std::set<fs::path> taken;
    for (const std::string& project : request.projects) {
        const fs::path input = project;
        const fs::path output = folder ? request.output / input.filename() : fs::path(request.output);
        places.push_back({input, outputFile(output, input, request.inPlace, request.readOnly)});
        if (!taken.insert(places.back().output.lexically_normal()).second) {
            throw Stop(ExitCode::BadInput, "two results would be written to " + places.back().output.string() +
                                               "; crop one of them into another folder");
        }
    }
    return places;
}

// ---- Lines ---------------------------------------------------------------------------------------------

void print(const TriedComp& comp) {
    Line line;
    line << "  " << inQuotes(comp.name) << ": ";
    switch (comp.outcome) {
        case Outcome::Cropped: {
            line << cropText(comp.before, comp.after, comp.uses);
            if (comp.paddingGivenUp) {
                line << ", without padding: it would have shown what its frame cuts off";
            }
            break;
        }
        case Outcome::Left:
            line << "left at " << sizeText(comp.before) << ", " << comp.reason;
            break;
        case Outcome::PutBack:
            line << "put back to " << sizeText(comp.before) << ": " << comp.reason;
            break;
    }
}

void printTotal(const CropAllResult& result) {
    const Area area = areaOf(result.comps);
    Line line;
    line << "  " << result.count(Outcome::Cropped) << " of "
         << counted(static_cast<std::int64_t>(result.comps.size()), "composition") << " cropped";
    if (const int putBack = result.count(Outcome::PutBack)) {
        line << ", " << putBack << " put back";
    }
    line << "; " << grouped(area.before) << " -> " << grouped(area.after) << " pixels (" << area.wholePercent()
         << " % saved)";
}

// Of what is not drawn and not `chosen` to be cropped all the same: "effects,text".
std::string kindsInTheWay(const CropAllResult& result, const std::set<std::string>& chosen) {
    std::set<std::string> kinds;
    for (const TriedComp& comp : result.comps) {
        for (const Concern& concern : comp.notDrawn) {
            kinds.insert(concern.kind);
        }
    }
    std::string text;
    for (const std::string& kind : kinds) {
        text += chosen.contains(kind) ? "" : (text.empty() ? "" : ",") + kind;
    }
    return text;
}

void print(const Entry& entry, const std::set<std::string>& unseen) {
    const std::string animation = entry.animation.empty() ? "" : "animation " + inQuotes(entry.animation);
    if (!entry.result) {
        say((animation.empty() ? "" : animation + ": ") + entry.message);
        return;
    }
    const CropAllResult& result = *entry.result;
    Line() << entry.place.input.string() << (animation.empty() ? "" : ", " + animation) << ":";
    for (const TriedComp& comp : result.comps) {
        print(comp);
        for (const std::string& line : comp.settled) {
            Line() << "    " << line;
        }
    }
    printTotal(result);
    printWarnings(result.warnings);
    if (const std::string kinds = kindsInTheWay(result, unseen); !kinds.empty()) {
        say("note: --crop-unseen " + kinds + " crops also what is left because it cannot be looked at");
    }
}

// The last one was cancelled.
void sayCancelled(const std::vector<Entry>& entries) {
    std::set<std::string> written;
    for (const Entry& entry : entries) {
        if (entry.written) {
            written.insert(entry.place.output.string());
        }
    }
    std::string files;
    for (const std::string& file : written) {
        files += (files.empty() ? "written before: " : ", ") + file;
    }
    say(entries.back().message + " at " + entries.back().place.input.string() + "; " +
        (files.empty() ? "nothing was written" : files));
}

// ---- JSON ----------------------------------------------------------------------------------------------

const char* word(ExitCode code) {
    switch (code) {
        case ExitCode::Done:
            return "done";
        case ExitCode::BadInput:
            return "bad input";
        case ExitCode::NothingToDo:
            return "nothing to do";
        case ExitCode::SomePutBack:
            return "some put back";
        case ExitCode::Cancelled:
            return "cancelled";
        default:
            return "failed";
    }
}

const char* word(Outcome outcome) {
    return outcome == Outcome::Cropped ? "cropped" : outcome == Outcome::Left ? "left" : "put back";
}

Json textOrNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json compJson(const TriedComp& comp) {
    const bool cropped = comp.outcome == Outcome::Cropped;
    Json notDrawn = Json::array();
    for (const Concern& concern : comp.notDrawn) {
        notDrawn.push_back(namedJson(concern));
    }
    return {{"name", comp.name},
            {"id", comp.assetId},
            {"outcome", word(comp.outcome)},
            {"reason", textOrNull(comp.reason)},
            {"before", sizeJson(comp.before)},
            {"after", sizeJson(comp.after)},
            {"corner", cropped ? Json{{"x", comp.corner.x}, {"y", comp.corner.y}} : Json()},
            {"padding", cropped ? Json(comp.padding) : Json()},
            {"uses", comp.uses},
            {"settled", comp.settled},
            {"notDrawn", std::move(notDrawn)},
            {"difference", comp.worst ? comparedJson(*comp.worst) : Json()}};
}

Json entryJson(const Entry& entry) {
    Json json = {{"input", entry.place.input.string()},
                 {"animation", textOrNull(entry.animation)},
                 {"output", entry.written ? Json(entry.place.output.string()) : Json()},
                 {"result", word(entry.code)},
                 {"message", textOrNull(entry.message)}};
    if (!entry.result) {
        return json;
    }
    const CropAllResult& result = *entry.result;
    json["area"] = areaJson(areaOf(result.comps));
    json["counts"] = {{"cropped", result.count(Outcome::Cropped)},
                      {"left", result.count(Outcome::Left)},
                      {"putBack", result.count(Outcome::PutBack)}};
    json["warnings"] = Json::array();
    for (const Concern& warning : result.warnings) {
        json["warnings"].push_back(namedJson(warning));
    }
    json["compositions"] = Json::array();
    for (const TriedComp& comp : result.comps) {
        json["compositions"].push_back(compJson(comp));
    }
    json["comparison"] = comparisonJson(result.comparison);
    return json;
}

// ---- The work ------------------------------------------------------------------------------------------

void cropAnimation(const BatchRequest& request, Entry& entry, ResultFile& file) {
    WorkplaceOptions options = request.workplace;
    options.project = entry.place.input.string();
    if (!entry.animation.empty()) {
        options.reading.animation = entry.animation;
    }
    Workplace workplace(options);
    CropAllResult result = cropAll(workplace, request.crop);
    file.put(workplace.session().project(), options.reading.animation);
    workplace.write([] {});  // the result waits for the file's other animations
    entry.code = result.count(Outcome::PutBack) > 0   ? ExitCode::SomePutBack
                 : result.count(Outcome::Cropped) > 0 ? ExitCode::Done
                                                      : ExitCode::NothingToDo;
    entry.result = std::move(result);
}

// Whether it went through; else the entry tells why not.
bool attempt(Entry& entry, const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (...) {
        const Stop stop = caught();
        entry.code = stop.code;
        entry.message = stop.what();
        return false;
    }
}

// Each animation in turn, then the file is written. One that fails stays as it was in its archive; where the
// person cancels, or the file cannot be written, that is all there is to tell.
std::vector<Entry> cropFile(const BatchRequest& request, const Place& place) {
    ResultFile file(place.input, place.output, request.readOnly);
    Entry whole{place, "", ExitCode::Done, "", {}, false};
    std::vector<std::string> animations;
    if (request.workplace.reading.animation.empty() &&
        !attempt(whole, [&] { animations = file.severalAnimations(); })) {
        return {whole};
    }
    if (animations.empty()) {
        animations.emplace_back();
    }
    std::vector<Entry> entries;
    for (const std::string& animation : animations) {
        Entry& entry = entries.emplace_back(whole);
        entry.animation = animation;
        attempt(entry, [&] { cropAnimation(request, entry, file); });
        if (entry.code == ExitCode::Cancelled) {
            return {entry};
        }
    }
    if (any(entries, [&](const Entry& entry) { return request.inPlace ? entry.cropped() : !!entry.result; })) {
        const ui::NoInterrupt untilDone;
        if (!attempt(whole, [&] {
                if (ui::interrupted()) {
                    throw Stop(ExitCode::Cancelled, "cancelled");
                }
                file.write();
            })) {
            return {whole};
        }
        for (Entry& entry : entries) {
            entry.written = entry.result.has_value();
        }
    }
    return entries;
}

// The gravest; nothing to do only where all have nothing.
ExitCode overall(const std::vector<Entry>& entries) {
    for (const ExitCode code :
         {ExitCode::Cancelled, ExitCode::Failed, ExitCode::BadInput, ExitCode::SomePutBack, ExitCode::Done}) {
        if (any(entries, [&](const Entry& entry) { return entry.code == code; })) {
            return code;
        }
    }
    return ExitCode::NothingToDo;
}

}  // namespace

ExitCode cropFiles(const BatchRequest& request) {
    std::vector<Entry> entries;
    for (const Place& place : planned(request)) {
        const std::vector<Entry> done = cropFile(request, place);
        for (const Entry& entry : done) {
            if (entry.code != ExitCode::Cancelled && (!entry.result || !request.json)) {
                print(entry, request.crop.unseen);
            }
        }
        if (!request.json && any(done, [](const Entry& entry) { return entry.written; })) {
            const bool changed = any(done, [](const Entry& entry) { return entry.cropped(); });
            Line() << "wrote " << place.output.string() << (changed ? "" : ", unchanged");
        }
        entries.insert(entries.end(), done.begin(), done.end());
        if (done.back().code == ExitCode::Cancelled) {
            sayCancelled(entries);
            break;
        }
    }
    const ExitCode code = overall(entries);
    if (request.json) {
        Json json = {{"kestrin", "crop --all"}, {"version", 1}, {"exitCode", static_cast<int>(code)}};
        json["files"] = Json::array();
        for (const Entry& entry : entries) {
            json["files"].push_back(entryJson(entry));
        }
        printJson(json);
    }
    return code;
}

}  // namespace headless::cli
