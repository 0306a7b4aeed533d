#include "cli/Cropping.h"

#include <algorithm>

#include "cli/Area.h"
#include "cli/Comps.h"
#include "cli/Find.h"
#include "cli/Print.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

constexpr char section[] = "Kestrin";

// What the host shows from now on.
class Shown {
 public:
    explicit Shown(const Session& session) : session_(session), first_(session.messages().size()) {}

    std::string alerts() const { return texts(true); }
    std::string problems() const { return texts(false); }

 private:
    std::string texts(bool alerts) const {
        std::string text;
        for (std::size_t i = first_; i < session_.messages().size(); ++i) {
            const Message& message = session_.messages()[i];
            if ((message.kind == Message::Kind::Alert) == alerts) {
                text += (text.empty() ? "" : "; ") + message.title + ": " + inOneLine(message.text);
            }
        }
        return text;
    }

    const Session& session_;
    std::size_t first_;
};

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
    if (request.neverPrecompose) {
        preferences.setLong(section, "ThreeD", 2);
    }
    preferences.keepFromFile();  // they were asked for this once
}

// In words; empty where no negative padding takes away from what is visible.
std::string takenOff(const model::Preferences& preferences) {
    const std::int64_t padding = preferences.getLong(section, "PaddingAmount").value_or(0);
    return preferences.getBool(section, "Padding").value_or(false) && padding < 0
               ? counted(-padding, "pixel") + " taken off each side by the padding"
               : "";
}

void requireEnabled(Session& session, const model::Comp& comp, Command command) {
    const Shown shown(session);
    if (!holdKeysFor(session, command).enabled) {
        const std::string alerts = shown.alerts();
        throw NothingCropped(whyDisabled(comp, command) + (alerts.empty() ? "" : "; it said " + alerts));
    }
}

}  // namespace

Runs runsOf(const model::Preferences& preferences, Command command) {
    if (command != Command::Standard || !preferences.getBool(section, "Expand").value_or(false)) {
        return Runs::Once;
    }
    const std::int32_t amount = preferences.getLong(section, "ExpandAmount").value_or(0);
    // The plug-in crops once more for any amount, and expands by what 16 bits hold of it.
    return amount == 0 ? Runs::Once : static_cast<std::int16_t>(amount) == 0 ? Runs::Twice : Runs::Expanded;
}

MenuEntry holdKeysFor(Session& session, Command command) {
    const Shown shown(session);
    // The first tick takes back what an earlier command left; the second one sees the keys.
    session.openMenu();
    A_Err error = session.tick();
    session.openMenu();
    session.holdKeys(command == Command::MaskCrop || command == Command::Preferences,
                     command == Command::MaskCrop || command == Command::Duration);
    error = error != A_Err_NONE ? error : session.tick();
    session.holdKeys(false, false);
    const bool known = error == A_Err_NONE && session.pluginCommand() != 0;
    const MenuEntry entry = known ? session.menuEntry(session.pluginCommand()) : MenuEntry{};
    const std::string problems = shown.problems();
    if (!known || (!entry.enabled && !problems.empty())) {
        throw Stop(ExitCode::Failed, "the plug-in could not tell what can be cropped: " + problems);
    }
    return entry;
}

ProjectBefore::ProjectBefore(model::Project& project, std::vector<const model::Item*> targets)
    : project_(project),
      targets_(std::move(targets)),
      settling_(project),
      steps_(project.history.done().size()) {
    forEachComp(project, [&](const model::Comp& comp) { sizes_[comp.item->id] = comp.item->size; });
}

bool ProjectBefore::unchanged() const {
    return project_.history.done().size() == steps_;
}

CropResult ProjectBefore::result() const {
    CropResult result;
    Uses uses = usesIn(project_);
    forEachComp(project_, [&](const model::Comp& comp) {
        const model::Item& item = *comp.item;
        const auto old = sizes_.find(item.id);
        const bool isNew = old == sizes_.end();
        const model::Size before = isNew ? item.size : old->second;
        const bool wanted = std::find(targets_.begin(), targets_.end(), &item) != targets_.end();
        if (isNew || wanted || before != item.size) {
            auto& list = isNew ? result.added : before != item.size ? result.resized : result.unchanged;
            list.push_back({item.id, item.name, before, item.size, static_cast<int>(uses[&item].size()),
                            settling_.cornerOf(project_, item)});
        }
    });
    return result;
}

CropResult ProjectBefore::settledResult(Runs runs) const {
    std::vector<std::string> settled;
    if (!unchanged()) {
        settled = settling_.settle(project_, runs);
    }
    CropResult cropped = result();
    cropped.settled = std::move(settled);
    return cropped;
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

std::int64_t framesOf(const std::vector<const model::Item*>& targets) {
    std::int64_t frames = 0;
    for (const model::Item* target : targets) {
        frames += frameCount(*target->comp);
    }
    return frames;
}

bool CroppedComp::reachesOut() const {
    return corner && (corner->x < 0 || corner->y < 0 || corner->x + after.width > before.width ||
                      corner->y + after.height > before.height);
}

CropResult crop(Workplace& workplace, model::Comp& comp, const CropRequest& request) {
    Session& session = workplace.session();
    model::Project& project = session.project();
    forEachComp(project, [&](model::Comp& each) { each.downsampleX = each.downsampleY = request.resolution; });
    setPreferences(session.preferences(), request);
    if (!request.mask.empty()) {
        selectMask(session, comp, request.mask);
    }
    const std::vector<const model::Item*> targets = cropTargets(project, comp);
    const ProjectBefore before(project, targets);
    requireEnabled(session, comp, request.command);

    const Shown shown(session);
    const A_Err error = workplace.run([&] { return session.runCommand(session.pluginCommand()); });
    if (error == A_Err_ALLOC) {
        throw std::bad_alloc();
    }
    if (error != A_Err_NONE) {
        throw Stop(ExitCode::Failed, "the plug-in failed: " + shown.problems());
    }
    CropResult result = request.plugInOnly
                            ? before.result()
                            : before.settledResult(runsOf(session.preferences(), request.command));
    if (result.resized.empty() && result.added.empty()) {
        const std::string less = takenOff(session.preferences());
        if (const std::string alerts = shown.alerts(); !alerts.empty()) {
            throw NothingCropped("the plug-in said" + (less.empty() ? " " : ", with " + less + ": ") + alerts);
        }
        if (before.unchanged()) {
            throw NothingCropped("nothing is visible at any frame" + (less.empty() ? "" : " with " + less));
        }
    }
    return result;
}

void print(const CropResult& result, bool alerted) {
    for (const CroppedComp& comp : result.resized) {
        Line() << inQuotes(comp.name) << ": " << cropText(comp.before, comp.after, comp.uses);
        if (comp.reachesOut()) {
            say("warning: the new frame of " + inQuotes(comp.name) +
                " reaches over the old one; what that cut off there shows now");
        }
    }
    for (const CroppedComp& comp : result.added) {
        Area area;
        area.add({}, comp.after);
        Line() << inQuotes(comp.name) << ": added, " << sizeText(comp.after) << ", " << grouped(-area.saved())
               << " pixels more";
    }
    for (const std::string& line : result.settled) {
        Line() << line;
    }
    for (const CroppedComp& comp : result.unchanged) {
        Line() << inQuotes(comp.name) << ": "
               << (comp.moved() ? "its content moved, still"
                   : alerted    ? "left at"
                                : "already tight at")
               << " " << sizeText(comp.after);
    }
}

}  // namespace headless::cli
