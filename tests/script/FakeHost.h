// A project of a few items for scripts to look at, and a record of what they did.

#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <utility>

#include "script/Engine.h"

namespace kestrin_test {

using namespace headless;

// Plays the actions of each dialog's title in order, then the close box.
class Answers : public ui::Answerer {
 public:
    using Step = std::function<ui::Action(const ui::Dialog&)>;

    ui::Action next(const ui::Dialog& dialog) override {
        std::vector<Step>& steps = byTitle[dialog.title];
        if (steps.empty()) return {};
        const Step step = steps.front();
        steps.erase(steps.begin());
        return step(dialog);
    }

    std::map<std::string, std::vector<Step>> byTitle;
};

class FakeHost : public script::ScriptHost {
 public:
    int itemCount() override { return static_cast<int>(items.size()); }
    script::ItemInfo itemAt(int index) override { return items.at(static_cast<std::size_t>(index)); }
    script::ItemInfo item(script::ItemId id) override {
        for (const script::ItemInfo& one : items) {
            if (one.id == id) return one;
        }
        throw script::ScriptRequestError("no such item");
    }
    std::optional<script::ItemId> activeItem() override { return active; }
    script::LayerId layerAt(script::ItemId, int index) override {
        return firstLayer + static_cast<script::LayerId>(index);
    }
    std::vector<script::LayerId> selectedLayers(script::ItemId) override { return selected; }
    script::LayerInfo layer(script::LayerId id) override { return layers.at(id - firstLayer); }
    void setParent(script::LayerId child, std::optional<script::LayerId> parent) override {
        if (parent == child) throw script::ScriptRequestError("a layer cannot be its own parent");
        layers.at(child - firstLayer).parent = parent;
    }
    model::Preferences& preferences() override { return store; }
    void savePreferences() override {}
    void reloadPreferences() override { store = model::Preferences(); }
    void alert(const std::string& message, const std::string&, bool) override { alerts.push_back(message); }
    ui::Answerer& answerer() override { return *answersFrom; }
    void executed(const std::string& path, const std::string& content) override {
        executions.emplace_back(path, content);
    }
    std::string homeFolder() override { return home.string(); }

    static constexpr script::LayerId firstLayer =
        (1ull << 60) + 1;  // more than a script's number can tell apart

    std::vector<script::ItemInfo> items{{7, "Folder", false, 0, 0, 0}, {12, "Scene", true, 400, 300, 3}};
    std::vector<script::LayerInfo> layers{{"Card",
                                           0,
                                           12,
                                           true,
                                           400,
                                           300,
                                           std::nullopt,
                                           {"Mask 1", "Mask \"2\"", "ma\xC3\x9Fke \xF0\x9F\x8E\xAD"}},
                                          {"Null", 1, std::nullopt, true, 100, 100, std::nullopt, {}},
                                          {"Camera", 2, std::nullopt, false, 0, 0, firstLayer, {}}};
    std::optional<script::ItemId> active = 12;
    std::vector<script::LayerId> selected{firstLayer};
    model::Preferences store;
    std::vector<std::string> alerts;
    std::vector<std::pair<std::string, std::string>> executions;
    std::filesystem::path home;
    Answers answers;
    ui::Answerer* answersFrom = &answers;
};

}  // namespace kestrin_test
