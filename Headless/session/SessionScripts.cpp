// What scripts see of a session.

#include <algorithm>

#include "model/Edit.h"
#include "session/Session.h"

namespace headless {

namespace {

script::ItemInfo infoOf(const model::Item& item) {
    return {item.id,         item.name,        item.comp != nullptr,
            item.size.width, item.size.height, item.comp ? static_cast<int>(item.comp->layers.size()) : 0};
}

model::Item& existing(model::Item* item) {
    if (item == nullptr) {
        throw script::ScriptRequestError("the item has been deleted");
    }
    return *item;
}

model::Comp& compOf(model::Item& item) {
    if (!item.comp) {
        throw script::ScriptRequestError("\"" + item.name + "\" is no composition");
    }
    return *item.comp;
}

model::Layer& existing(model::Layer* layer) {
    if (layer == nullptr) {
        throw script::ScriptRequestError("the layer has been deleted");
    }
    return *layer;
}

}  // namespace

std::optional<std::string> Session::runScript(const std::string& text) {
    scriptsRun_.push_back(text);
    const auto run = [&] { return engine_->run(text); };
    return answerScript ? answerScript(run) : run();
}

int Session::itemCount() {
    return static_cast<int>(project_->items.size());
}

script::ItemInfo Session::itemAt(int index) {
    if (index < 0 || index >= itemCount()) {
        throw script::ScriptRequestError("there is no item " + std::to_string(index + 1));
    }
    return infoOf(*project_->items[static_cast<std::size_t>(index)]);
}

script::ItemInfo Session::item(script::ItemId id) {
    return infoOf(existing(project_->item(id)));
}

std::optional<script::ItemId> Session::activeItem() {
    const model::Item* item = activeItemNow();
    return item == nullptr ? std::nullopt : std::optional(item->id);
}

script::LayerId Session::layerAt(script::ItemId comp, int index) {
    const auto& layers = compOf(existing(project_->item(comp))).layers;
    if (index < 0 || index >= static_cast<int>(layers.size())) {
        throw script::ScriptRequestError("there is no layer " + std::to_string(index + 1));
    }
    return layers[static_cast<std::size_t>(index)]->id;
}

std::vector<script::LayerId> Session::selectedLayers(script::ItemId comp) {
    std::vector<std::pair<std::size_t, script::LayerId>> places;
    for (const model::SelectedThing& thing : compOf(existing(project_->item(comp))).selection) {
        if (const model::Layer* layer = project_->layer(thing.layer); layer != nullptr && thing.mask < 0) {
            places.emplace_back(project_->indexOf(*layer), layer->id);
        }
    }
    std::sort(places.begin(), places.end());
    std::vector<script::LayerId> layers;
    for (const auto& [index, id] : places) {
        layers.push_back(id);
    }
    return layers;
}

script::LayerInfo Session::layer(script::LayerId id) {
    const model::Layer& layer = existing(project_->layer(static_cast<model::LayerId>(id)));
    script::LayerInfo info;
    info.name = project_->nameOf(layer);
    info.index = static_cast<int>(project_->indexOf(layer));
    info.hasSourceMember = layer.type != model::LayerType::Camera && layer.type != model::LayerType::Light;
    if (layer.source != nullptr) {
        info.source = layer.source->id;
        info.width = layer.source->size.width;
        info.height = layer.source->size.height;
    }
    if (layer.parent != nullptr) {
        info.parent = layer.parent->id;
    }
    for (const auto& mask : layer.masks) {
        info.maskNames.push_back(mask->name);
    }
    return info;
}

void Session::setParent(script::LayerId child, std::optional<script::LayerId> parent) {
    model::Layer& layer = existing(project_->layer(static_cast<model::LayerId>(child)));
    model::Layer* above = parent ? &existing(project_->layer(static_cast<model::LayerId>(*parent))) : nullptr;
    try {
        model::setParentInPlace(*project_, layer, above);
    } catch (const model::EditError& error) {
        throw script::ScriptRequestError(error.what());
    }
}

void Session::writePreferences() {
    for (model::Preferences& saved : saved_) {
        if (!options_.preferencesFile.empty()) {
            saved.save(options_.preferencesFile);
        }
    }
    saved_.clear();
}

void Session::reloadPreferences() {
    if (!saved_.empty()) {
        preferences_ = saved_.back();
    } else if (!options_.preferencesFile.empty()) {
        preferences_ = model::Preferences::load(options_.preferencesFile);
    }
}

void Session::alert(const std::string& message, const std::string& title, bool) {
    addMessage({Message::Kind::Alert, title, message});
}

void Session::executed(const std::string& path, const std::string& content) {
    executedFiles_.emplace_back(path, content);
}

}  // namespace headless
