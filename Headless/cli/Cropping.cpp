#include "cli/Cropping.h"

#include <algorithm>
#include <map>

#include "cli/ExitCode.h"
#include "cli/Find.h"
#include "cli/Text.h"

namespace headless::cli {

namespace {

constexpr char section[] = "Kestrin";

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
}

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

// What went wrong, a line each.
std::string problems(const Session& session) {
    std::string text;
    for (const Message& message : session.messages()) {
        if (message.kind != Message::Kind::Alert) {
            text += "\n    " + printable(message.title) + ": " + indented(message.text);
        }
    }
    return text;
}

[[noreturn]] void stopForNothing(const std::string& why, const Session& session) {
    std::string text = "nothing was cropped: " + why;
    for (const Message& message : session.messages()) {
        if (message.kind == Message::Kind::Alert) {
            text += "\n    " + printable(message.title) + ": " + indented(message.text);
        }
    }
    throw Stop(ExitCode::NothingToDo, text);
}

void requireEnabledEntry(Session& session, const model::Comp& comp, const CropRequest& request) {
    const AEGP_Command command = session.pluginCommand();
    const auto menu = session.openMenu();
    if (std::any_of(menu.begin(), menu.end(), [&](const MenuEntry& entry) {
            return entry.command == command && command != 0 && entry.enabled;
        })) {
        return;
    }
    if (const std::string text = problems(session); !text.empty()) {
        throw Stop(ExitCode::Failed, "the plug-in could not tell what can be cropped:" + text);
    }
    stopForNothing(request.layers.empty()
                       ? "the composition " + inQuotes(comp.item->name) + " has no layers"
                       : "none of the selected layers of " + inQuotes(comp.item->name) +
                             " is a pre-composition; select layers that kestrin info lists as precomp",
                   session);
}

}  // namespace

CropResult crop(Session& session, const ui::Answerer& answerer, const CropRequest& request) {
    model::Project& project = session.project();
    model::Comp& comp = findComp(project, request.comp);
    std::vector<const model::Item*> targets;
    std::vector<model::SelectedThing> selection;
    for (const std::string& name : request.layers) {
        const model::Layer& layer = findLayer(project, comp, name);
        selection.push_back({layer.id});
        if (layer.source != nullptr && layer.source->comp &&
            std::find(targets.begin(), targets.end(), layer.source) == targets.end()) {
            targets.push_back(layer.source);
        }
    }
    if (selection.empty()) {
        targets.push_back(comp.item);
    }
    if (request.frame) {
        comp.currentFrame = findFrame(comp, *request.frame);
    } else if (request.seconds) {
        comp.currentFrame = frameAt(project, comp, *request.seconds);
    }
    std::map<model::ItemId, model::Size> before;
    forEachComp(project, [&](model::Comp& each) {
        each.downsampleX = each.downsampleY = request.resolution;
        before[each.item->id] = each.item->size;
    });
    setPreferences(session.preferences(), request);

    session.openComp(comp);
    session.select(comp, std::move(selection));
    requireEnabledEntry(session, comp, request);
    const A_Err idleError = session.tick();
    const A_Err error = idleError != A_Err_NONE ? idleError : session.runCommand(session.pluginCommand());
    if (const auto unanswered = answerer.unanswered()) {
        throw Stop(ExitCode::BadInput, printable(*unanswered));
    }
    if (error != A_Err_NONE) {
        throw Stop(ExitCode::Failed, "the plug-in failed:" + problems(session));
    }

    CropResult result;
    forEachComp(project, [&](const model::Comp& each) {
        const model::Item& item = *each.item;
        const auto old = before.find(item.id);
        CroppedComp entry{item.name, old == before.end() ? item.size : old->second, item.size,
                          usesOf(project, item)};
        if (old == before.end()) {
            result.added.push_back(std::move(entry));
        } else if (entry.before != entry.after) {
            result.resized.push_back(std::move(entry));
        } else if (std::find(targets.begin(), targets.end(), each.item) != targets.end()) {
            result.unchanged.push_back(std::move(entry));
        }
    });
    const bool alerted =
        std::any_of(session.messages().begin(), session.messages().end(),
                    [](const Message& message) { return message.kind == Message::Kind::Alert; });
    if (result.resized.empty() && result.added.empty() && alerted) {
        stopForNothing("the plug-in said", session);
    }
    return result;
}

}  // namespace headless::cli
