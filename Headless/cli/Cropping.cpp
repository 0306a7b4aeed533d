#include "cli/Cropping.h"

#include <algorithm>
#include <iostream>

#include "cli/Text.h"
#include "cli/Verbs.h"

namespace headless::cli {

namespace {

constexpr char section[] = "Kestrin";

template <class Do>
void forEachComp(const model::Project& project, Do&& action) {
    for (const model::ItemPtr& item : project.items) {
        if (item->comp) {
            action(*item->comp);
        }
    }
}

int usesOf(const model::Project& project, const model::Item& item) {
    int uses = 0;
    forEachComp(project, [&](const model::Comp& comp) {
        uses += static_cast<int>(
            std::count_if(comp.layers.begin(), comp.layers.end(),
                          [&](const model::LayerPtr& layer) { return layer->source == &item; }));
    });
    return uses;
}

// What the host showed since the `first` message.
std::string texts(const Session& session, bool alerts, std::size_t first) {
    std::string text;
    for (std::size_t i = first; i < session.messages().size(); ++i) {
        const Message& message = session.messages()[i];
        if ((message.kind == Message::Kind::Alert) == alerts) {
            text += "\n    " + printable(message.title) + ": " + indented(message.text);
        }
    }
    return text;
}

std::string whyDisabled(const model::Comp& comp, Command command) {
    const std::string name = inQuotes(comp.item->name);
    if (command == Command::MaskCrop) {
        return "the mask crop needs one selected pre-composition layer of " + name + " that has a mask";
    }
    if (comp.selection.empty()) {
        return "the composition " + name + " has no layers";
    }
    if (command == Command::Duration && comp.selection.size() > 1) {
        return "the duration crop takes one layer, or none for the whole composition";
    }
    return "none of the selected layers of " + name +
           " is a pre-composition; select layers that kestrin info lists as precomp";
}

// Adds a mask of the one selected layer to the selection.
void selectMask(Session& session, model::Comp& comp, const std::string& name) {
    if (comp.selection.size() != 1) {
        throw Stop(ExitCode::BadInput, "--mask NAME needs one --layer, whose mask it is");
    }
    const model::Layer& layer = *session.project().layer(comp.selection.front().layer);
    std::vector<int> found, numbered;
    std::string names;
    for (std::size_t i = 0; i < layer.masks.size(); ++i) {
        names += (names.empty() ? "" : ", ") + inQuotes(layer.masks[i]->name);
        if (layer.masks[i]->name == name) {
            found.push_back(static_cast<int>(i));
        } else if ("#" + std::to_string(i + 1) == name) {
            numbered.push_back(static_cast<int>(i));
        }
    }
    if (found.empty()) {
        found = numbered;
    }
    if (found.size() != 1) {
        throw Stop(ExitCode::BadInput,
                   "the layer " + inQuotes(session.project().nameOf(layer)) +
                       (found.empty() ? " has no mask " : " has several masks ") + inQuotes(name) +
                       (names.empty() ? "" : "; its masks are " + names + ", or #1 for the first"));
    }
    session.select(comp, {{layer.id, -1}, {layer.id, found.front()}});
}

}  // namespace

bool expands(const model::Preferences& preferences, Command command) {
    return command == Command::Standard && preferences.getBool(section, "Expand").value_or(false) &&
           preferences.getLong(section, "ExpandAmount").value_or(0) != 0;
}

MenuEntry holdKeysFor(Session& session, Command command) {
    const std::size_t firstMessage = session.messages().size();
    // The first tick takes back what an earlier command left; the second one sees the keys.
    session.openMenu();
    A_Err error = session.tick();
    session.openMenu();
    session.holdKeys(command == Command::MaskCrop || command == Command::Preferences,
                     command == Command::MaskCrop || command == Command::Duration);
    error = error != A_Err_NONE ? error : session.tick();
    session.holdKeys(false, false);
    if (error != A_Err_NONE || session.pluginCommand() == 0) {
        throw Stop(ExitCode::Failed,
                   "the plug-in could not tell what can be cropped:" + texts(session, false, firstMessage));
    }
    return session.menuEntry(session.pluginCommand());
}

SizesBefore::SizesBefore(const model::Project& project) {
    forEachComp(project, [&](const model::Comp& comp) { sizes_.emplace_back(comp.item->id, comp.item->size); });
}

CropResult SizesBefore::compareWith(const model::Project& project,
                                    const std::vector<const model::Item*>& targets,
                                    const Settling& settling) const {
    CropResult result;
    forEachComp(project, [&](const model::Comp& comp) {
        const model::Item& item = *comp.item;
        const auto old = std::lower_bound(sizes_.begin(), sizes_.end(), std::pair(item.id, model::Size{}),
                                          [](const auto& a, const auto& b) { return a.first < b.first; });
        const bool isNew = old == sizes_.end() || old->first != item.id;
        const model::Size before = isNew ? item.size : old->second;
        const bool wanted = std::find(targets.begin(), targets.end(), comp.item) != targets.end();
        if (!isNew && !wanted && before == item.size) {
            return;
        }
        const CroppedComp entry{item.name, before, item.size, usesOf(project, item),
                                settling.cornerOf(project, item)};
        if (isNew) {
            result.added.push_back(entry);
        } else if (entry.before != entry.after) {
            result.resized.push_back(entry);
        } else {
            result.unchanged.push_back(entry);
        }
    });
    return result;
}

std::vector<const model::Item*> cropTargets(const model::Project& project, const model::Comp& comp) {
    if (comp.selection.empty()) {
        return {comp.item};
    }
    std::vector<const model::Item*> targets;
    for (const model::SelectedThing& thing : comp.selection) {
        const model::Item* source = project.layer(thing.layer)->source;
        if (source != nullptr && source->comp &&
            std::find(targets.begin(), targets.end(), source) == targets.end()) {
            targets.push_back(source);
        }
    }
    return targets;
}

void setPreferences(model::Preferences& preferences, const CropRequest& request) {
    const auto setAmount = [&](const char* flag, const char* amount, const std::optional<int>& value) {
        if (value) {
            preferences.setBool(section, flag, *value != 0);
            preferences.setFloat(section, amount, *value);
        }
    };
    setAmount("Padding", "PaddingAmount", request.padding);
    setAmount("Expand", "ExpandAmount", request.expand);
    if (request.includeMasks) {
        preferences.setBool(section, "IncludeMasks", true);
    }
    if (request.deleteMask) {
        preferences.setBool(section, "DeleteMask", true);
    }
    preferences.keepFromFile();  // they were asked for this once
}

bool CroppedComp::reachesOut() const {
    return corner && (corner->x < 0 || corner->y < 0 || corner->x + after.width > before.width ||
                      corner->y + after.height > before.height);
}

CropResult crop(Workplace& workplace, model::Comp& comp, const CropRequest& request) {
    return crop(workplace, comp, request, Progress(workplace.session()));
}

CropResult crop(Workplace& workplace, model::Comp& comp, const CropRequest& request, const Progress& progress) {
    Session& session = workplace.session();
    model::Project& project = session.project();
    forEachComp(project, [&](model::Comp& each) { each.downsampleX = each.downsampleY = request.resolution; });
    setPreferences(session.preferences(), request);
    if (!request.mask.empty()) {
        selectMask(session, comp, request.mask);
    }
    const auto targets = cropTargets(project, comp);
    const SizesBefore before(project);
    const Settling settling(project);
    const std::size_t firstMessage = session.messages().size();
    const auto failWith = [&](const std::string& what) {
        throw Stop(ExitCode::Failed, what + texts(session, false, firstMessage));
    };
    const auto stopForNothing = [&](const std::string& why) {
        throw NothingCropped(why + texts(session, true, firstMessage));
    };
    if (!holdKeysFor(session, request.command).enabled) {
        if (!texts(session, false, firstMessage).empty()) {
            failWith("the plug-in could not tell what can be cropped:");
        }
        stopForNothing(whyDisabled(comp, request.command));
    }

    const std::size_t stepsBefore = project.history.done().size();
    const A_Err error = session.runCommand(session.pluginCommand());
    workplace.requireAnswered();
    if (error != A_Err_NONE) {
        failWith("the plug-in failed:");
    }
    std::vector<std::string> settled;
    if (!request.plugInOnly && project.history.done().size() != stepsBefore) {
        settled = settling.settle(project, expands(session.preferences(), request.command));
    }
    CropResult result = before.compareWith(project, targets, settling);
    result.settled = std::move(settled);
    if (result.resized.empty() && result.added.empty()) {
        // A closed mask chooser leaves its undo group to the host, and that is all it does.
        const bool chooserClosed = request.command == Command::MaskCrop && session.undoMismatches() > 0;
        if (progress.interrupted() || chooserClosed) {
            throw Stop(ExitCode::Cancelled, "cancelled; the project is as it was");
        }
        if (!texts(session, true, firstMessage).empty()) {
            stopForNothing("the plug-in said");
        }
        if (project.history.done().size() == stepsBefore) {
            stopForNothing("nothing is visible at any frame");
        }
    }
    return result;
}

void print(const CropResult& result, bool alerted) {
    const auto area = [](model::Size size) { return std::int64_t{size.width} * size.height; };
    for (const CroppedComp& comp : result.resized) {
        const std::int64_t saved = area(comp.before) - area(comp.after);
        std::cout << inQuotes(comp.name) << ": " << sizeText(comp.before) << " -> " << sizeText(comp.after)
                  << ", "
                  << (saved >= 0 ? grouped(saved) + " pixels saved (" +
                                       std::to_string(saved * 100 / area(comp.before)) + " %)"
                                 : grouped(-saved) + " pixels more")
                  << ", " << counted(comp.uses, "use") << " corrected\n";
        if (comp.reachesOut()) {
            say("warning: the new frame of " + inQuotes(comp.name) +
                " reaches over the old one; what that cut off there shows now");
        }
    }
    for (const CroppedComp& comp : result.added) {
        std::cout << inQuotes(comp.name) << ": added, " << sizeText(comp.after) << '\n';
    }
    for (const std::string& line : result.settled) {
        std::cout << line << '\n';
    }
    for (const CroppedComp& comp : result.unchanged) {
        std::cout << inQuotes(comp.name) << ": "
                  << (comp.moved() ? "its content moved, still"
                      : alerted    ? "left at"
                                   : "already tight at")
                  << " " << sizeText(comp.after) << '\n';
    }
}

}  // namespace headless::cli
