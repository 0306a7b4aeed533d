// A Lottie document: read, made ready for the renderer, edited, written, read again, taken back.

#include <cstdlib>

#include "fuzz/Fuzz.h"
#include "model/DocumentParser.h"
#include "model/Edit.h"

namespace {

using namespace headless;
using model::Layer;

void drawEach(const model::Project& project) {
    for (const model::ItemPtr& item : project.items) {
        if (item->comp) {
            model::parseValue(project.documentOf(*item->comp, item->size));
        }
    }
}

template <class Point>
void shift(model::Project& project, Layer& layer, Point point) {
    model::PointStream moved = point(layer);
    moved.add({-3, 0.5, 0});
    model::setLayerField(project, layer, point, moved);
}

void editLayers(model::Project& project, model::Comp& comp) {
    for (std::size_t i = 0; i < comp.layers.size(); ++i) {
        Layer& layer = *comp.layers[i];
        shift(project, layer, [](Layer& l) -> model::PointStream& { return l.position; });
        shift(project, layer, [](Layer& l) -> model::PointStream& { return l.anchor; });
        for (std::size_t mask = layer.masks.size(); mask-- > 1;) {
            model::deleteMask(project, layer, mask);
        }
        try {
            model::setParentInPlace(project, layer, i % 2 == 0 ? nullptr : comp.layers[0].get());
        } catch (const model::EditError&) {  // a circle
        }
    }
    if (comp.layers.size() > 2) {
        model::deleteLayer(project, *comp.layers[1]);
        try {
            model::moveLayer(project, *comp.layers[0], comp.layers.size() - 1);
        } catch (const model::EditError&) {  // others have its index
        }
    }
}

void edit(model::Project& project) {
    project.history.begin("Edit");
    for (std::size_t i = 0, count = project.items.size(); i < count; ++i) {
        model::Item& item = *project.items[i];
        if (item.comp) {
            model::setCompSize(project, *item.comp, {(item.size.width + 1) / 2, 30'000});
            editLayers(project, *item.comp);
            model::addNull(project, *item.comp, "Null", 10);
        }
    }
    model::duplicateComp(project, project.root());
    model::setItemName(project, *project.root().item, "Other");
    project.history.end();
}

}  // namespace

void tryInput(const std::string& text) {
    std::unique_ptr<model::Project> project;
    try {
        project = model::Project::read(text);
    } catch (const model::ProjectError&) {
        return;
    }
    require(project->write() == text, "written as it was read");
    drawEach(*project);
    edit(*project);
    std::string edited;
    try {
        edited = project->write();
    } catch (const model::ProjectError&) {  // a number grew too large
        return;
    }
    drawEach(*model::Project::read(edited));
    require(project->history.undo() && project->write() == text, "undo gives the file again");
    require(project->history.redo() && project->write() == edited, "redo gives the result again");
}
