#include "cli/Batch.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>

#include "cli/ComparisonJson.h"
#include "cli/Output.h"
#include "cli/Text.h"
#include "files/WholeFile.h"

namespace headless::cli {

namespace {

namespace fs = std::filesystem;
using model::Json;

struct FileOutcome {
    fs::path input, output;
    ExitCode code = ExitCode::Done;
    std::string message;  // why there is no result
    std::optional<CropAllResult> result;
    bool written = false;
};

// ---- Where the results go ------------------------------------------------------------------------------

std::vector<FileOutcome> planned(const BatchRequest& request) {
    std::error_code error;
    const bool folder = fs::is_directory(request.output, error);
    if (request.projects.size() > 1 && !folder && !request.inPlace) {
        throw Stop(ExitCode::BadInput,
                   "several projects need a folder for their results, and there is no folder " +
                       printable(request.output) + "; create it first");
    }
    std::vector<FileOutcome> files;
    std::set<fs::path> taken;
    for (const std::string& project : request.projects) {
        const fs::path input = project;
        const fs::path output = folder ? request.output / input.filename() : fs::path(request.output);
        files.push_back({input, outputFile(output, input, request.inPlace), ExitCode::Done, "", {}, false});
        if (!taken.insert(files.back().output.lexically_normal()).second) {
            throw Stop(ExitCode::BadInput, "two results would be written to " +
                                               printable(files.back().output.string()) +
                                               "; crop one of them into another folder");
        }
    }
    return files;
}

// ---- Lines ---------------------------------------------------------------------------------------------

void print(const TriedComp& comp) {
    std::cout << "  " << inQuotes(comp.name) << ": ";
    switch (comp.outcome) {
        case Outcome::Cropped: {
            std::cout << cropText(comp.before, comp.after, comp.uses);
            if (comp.paddingGivenUp) {
                std::cout << ", without padding: it would have shown what its frame cuts off";
            }
            break;
        }
        case Outcome::Left:
            std::cout << "left at " << sizeText(comp.before) << ", " << comp.reason;
            break;
        case Outcome::PutBack:
            std::cout << "put back to " << sizeText(comp.before) << ": " << comp.reason;
            break;
    }
    std::cout << '\n';
    for (const std::string& line : comp.settled) {
        std::cout << "    " << line << '\n';
    }
}

void print(const FileOutcome& file) {
    const CropAllResult& result = *file.result;
    std::cout << printable(file.input.string()) << ":\n";
    for (const TriedComp& comp : result.comps) {
        print(comp);
    }
    const Area area = areaOf(result.comps);
    std::cout << "  " << result.count(Outcome::Cropped) << " of "
              << counted(static_cast<std::int64_t>(result.comps.size()), "composition") << " cropped";
    if (const int putBack = result.count(Outcome::PutBack)) {
        std::cout << ", " << putBack << " put back";
    }
    std::cout << "; " << grouped(area.before) << " -> " << grouped(area.after) << " pixels ("
              << area.wholePercent() << " % saved)\n";
    if (file.written) {
        std::cout << "wrote " << printable(file.output.string())
                  << (result.count(Outcome::Cropped) == 0 ? ", unchanged" : "") << '\n';
    }
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
            {"difference", comp.worst ? comparedJson(*comp.worst) : Json()}};
}

Json fileJson(const FileOutcome& file) {
    Json json = {{"input", file.input.string()},
                 {"output", file.written ? Json(file.output.string()) : Json()},
                 {"result", word(file.code)},
                 {"message", textOrNull(file.message)}};
    if (!file.result) {
        return json;
    }
    const CropAllResult& result = *file.result;
    json["area"] = areaJson(areaOf(result.comps));
    json["counts"] = {{"cropped", result.count(Outcome::Cropped)},
                      {"left", result.count(Outcome::Left)},
                      {"putBack", result.count(Outcome::PutBack)}};
    json["warnings"] = Json::array();
    for (const Warning& warning : result.warnings) {
        json["warnings"].push_back({{"kind", word(warning.kind)},
                                    {"composition", warning.comp},
                                    {"layer", warning.layer},
                                    {"text", warning.text}});
    }
    json["compositions"] = Json::array();
    for (const TriedComp& comp : result.comps) {
        json["compositions"].push_back(compJson(comp));
    }
    json["comparison"] = comparisonJson(result.comparison);
    return json;
}

// ---- The work ------------------------------------------------------------------------------------------

void cropFile(const BatchRequest& request, FileOutcome& file) {
    try {
        WorkplaceOptions options = request.workplace;
        options.project = file.input.string();
        Workplace workplace(options);
        file.result = cropAll(workplace, request.crop, [&](const std::vector<Warning>& warnings) {
            if (!request.json) {
                print(warnings);
                if (!warnings.empty() && !request.crop.leaveWarned) {
                    say("note: --leave-warned leaves the compositions that warnings are about");
                }
            }
        });
        const bool changed = file.result->count(Outcome::Cropped) > 0;
        if (changed || !request.inPlace) {
            writeWhole(file.output, fileContent(workplace.session().project(), options.project,
                                                options.animation, file.output));
            file.written = true;
        }
        file.code = file.result->count(Outcome::PutBack) > 0 ? ExitCode::SomePutBack
                    : changed                                ? ExitCode::Done
                                                             : ExitCode::NothingToDo;
        return;
    } catch (const Stop& stop) {
        file.code = stop.code;
        file.message = stop.what();
    } catch (const model::ProjectError& error) {
        file.code = ExitCode::BadInput;
        file.message = printable(error.what());
    } catch (const std::exception& error) {
        file.code = ExitCode::Failed;
        file.message = printable(error.what());
    }
    file.result.reset();
}

// The gravest; nothing to do only where all have nothing.
ExitCode overall(const std::vector<FileOutcome>& files) {
    for (const ExitCode code :
         {ExitCode::Cancelled, ExitCode::Failed, ExitCode::BadInput, ExitCode::SomePutBack, ExitCode::Done}) {
        if (std::any_of(files.begin(), files.end(),
                        [&](const FileOutcome& file) { return file.code == code; })) {
            return code;
        }
    }
    return ExitCode::NothingToDo;
}

}  // namespace

ExitCode cropFiles(const BatchRequest& request) {
    std::vector<FileOutcome> files = planned(request);
    for (std::size_t i = 0; i < files.size(); ++i) {
        cropFile(request, files[i]);
        if (!files[i].result) {
            say(files[i].message);
        } else if (!request.json) {
            print(files[i]);
        }
        if (files[i].code == ExitCode::Cancelled) {
            files.resize(i + 1);
        }
    }
    const ExitCode code = overall(files);
    if (request.json) {
        Json json = {{"kestrin", "crop --all"}, {"version", 1}, {"exitCode", static_cast<int>(code)}};
        json["files"] = Json::array();
        for (const FileOutcome& file : files) {
            json["files"].push_back(fileJson(file));
        }
        std::cout << jsonText(json) << '\n';
    }
    return code;
}

}  // namespace headless::cli
