// Layers of a composition.

#include "suites/Gate.h"
#include "suites/Tables.h"
#include "suites/Text.h"

namespace headless {

namespace {

constexpr std::size_t shortName = 32;

A_Err getCompNumLayers(AEGP_CompH comp, A_long* count) noexcept {
    return gate("AEGP_GetCompNumLayers",
                [&](Session& session) { need(count) = static_cast<A_long>(session.comp(comp).layers.size()); });
}

A_Err getCompLayerByIndex(AEGP_CompH comp, A_long index, AEGP_LayerH* layer) noexcept {
    return gate("AEGP_GetCompLayerByIndex", [&](Session& session) {
        needHandle(layer);
        const auto& layers = session.comp(comp).layers;
        requireIndex(index, layers.size(), "layer");
        *layer = session.handleOf(layers[static_cast<std::size_t>(index)].get());
    });
}

A_Err getActiveLayer(AEGP_LayerH* layer) noexcept {
    return gate("AEGP_GetActiveLayer",
                [&](Session& session) { needHandle(layer) = session.handleOf(session.activeLayerNow()); });
}

A_Err getLayerIndex(AEGP_LayerH layer, A_long* index) noexcept {
    return gate("AEGP_GetLayerIndex", [&](Session& session) {
        need(index) = static_cast<A_long>(session.project().indexOf(session.layer(layer)));
    });
}

A_Err getLayerSourceItem(AEGP_LayerH layer, AEGP_ItemH* item) noexcept {
    return gate("AEGP_GetLayerSourceItem", [&](Session& session) {
        needHandle(item);
        *item = session.handleOf(session.layer(layer).source);
    });
}

A_Err getLayerParentComp(AEGP_LayerH layer, AEGP_CompH* comp) noexcept {
    return gate("AEGP_GetLayerParentComp", [&](Session& session) {
        needHandle(comp);
        *comp = session.handleOf(session.layer(layer).comp);
    });
}

A_Err getLayerName8(AEGP_LayerH layer, A_char* name, A_char* sourceName) noexcept {
    return gate("AEGP_GetLayerName", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        copyText(what.name, &need(name), shortName);
        copyText(what.source != nullptr ? what.source->name : "", &need(sourceName), shortName);
    });
}

A_Err getLayerName16(AEGP_PluginID, AEGP_LayerH layer, AEGP_MemHandle* name,
                     AEGP_MemHandle* sourceName) noexcept {
    return gate("AEGP_GetLayerName", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        const auto give = [&](AEGP_MemHandle* to, const std::string& text) {
            if (to != nullptr) {
                const std::u16string units = utf16Of(text);
                *to = session.newMemory(units.data(), units.size() * sizeof(units[0]), "AEGP_GetLayerName");
            }
        };
        give(name, what.name);
        give(sourceName, what.source != nullptr ? what.source->name : "");
    });
}

A_Err getLayerFlags(AEGP_LayerH layer, AEGP_LayerFlags* flags) noexcept {
    return gate("AEGP_GetLayerFlags", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        AEGP_LayerFlags set = AEGP_LayerFlag_EFFECTS_ACTIVE;
        const auto add = [&](bool condition, AEGP_LayerFlags flag) { set |= condition ? flag : 0; };
        add(!what.hidden, AEGP_LayerFlag_VIDEO_ACTIVE);
        add(what.collapsed, AEGP_LayerFlag_COLLAPSE);
        add(what.timeRemap.has_value(), AEGP_LayerFlag_TIME_REMAPPING);
        add(what.threeD, AEGP_LayerFlag_LAYER_IS_3D);
        add(what.type == model::LayerType::Null, AEGP_LayerFlag_NULL_LAYER);
        need(flags) = set;
    });
}

// A moment or a span, given in frames of the layer's composition.
A_Time inMode(Session& session, const model::Layer& layer, AEGP_LTimeMode mode, double fileFrame) {
    switch (mode) {
        case AEGP_LTimeMode_LayerTime:
            return session.timeOf(Session::layerFrames(layer, fileFrame));
        case AEGP_LTimeMode_CompTime:
            return session.timeOf(fileFrame - layer.comp->firstFrame);
        default:
            throw HostError{A_Err_PARAMETER, "there is no such time mode"};
    }
}

A_Err getLayerCurrentTime(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) noexcept {
    return gate("AEGP_GetLayerCurrentTime", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        need(time) = inMode(session, what, mode, what.comp->firstFrame + what.comp->currentFrame);
    });
}

A_Err getLayerInPoint(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) noexcept {
    return gate("AEGP_GetLayerInPoint", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        // In its own time a layer begins at 0.
        need(time) =
            mode == AEGP_LTimeMode_LayerTime ? session.timeOf(0) : inMode(session, what, mode, what.inFrame);
    });
}

A_Err getLayerDuration(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) noexcept {
    return gate("AEGP_GetLayerDuration", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        const double frames = what.outFrame - what.inFrame;
        need(time) = session.timeOf(mode == AEGP_LTimeMode_LayerTime ? frames / what.stretch : frames);
    });
}

A_Err getLayerOffset(AEGP_LayerH layer, A_Time* time) noexcept {
    return gate("AEGP_GetLayerOffset", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        need(time) = session.timeOf(Session::fileFrame(what, 0) - what.comp->firstFrame);
    });
}

A_Err addLayer(AEGP_ItemH item, AEGP_CompH comp, AEGP_LayerH* layer) noexcept {
    return gate("AEGP_AddLayer", [&](Session& session) {
        if (layer != nullptr) {
            *layer = nullptr;
        }
        const model::Layer& added = model::addLayer(session.project(), session.comp(comp), session.item(item));
        if (layer != nullptr) {
            *layer = session.handleOf(&added);
        }
    });
}

A_Err reorderLayer(AEGP_LayerH layer, A_long index) noexcept {
    return gate("AEGP_ReorderLayer", [&](Session& session) {
        model::Layer& what = session.layer(layer);
        const std::size_t count = what.comp->layers.size();
        if (index != -1) {
            requireIndex(index, count, "layer");
        }
        model::moveLayer(session.project(), what, index == -1 ? count - 1 : static_cast<std::size_t>(index));
    });
}

A_Err getLayerMaskedBounds(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* time,
                           A_FloatRect* bounds) noexcept {
    return gate("AEGP_GetLayerMaskedBounds", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        const Box box = session.pictures().maskedBounds(what, session.fileFrameOf(what, mode, need(time)));
        need(bounds) = {box.left, box.top, box.right, box.bottom};
    });
}

A_Err getLayerObjectType(AEGP_LayerH layer, AEGP_ObjectType* type) noexcept {
    return gate("AEGP_GetLayerObjectType", [&](Session& session) {
        const auto objectType = [](model::LayerType kind) -> AEGP_ObjectType {
            switch (kind) {
                case model::LayerType::Shape:
                    return AEGP_ObjectType_VECTOR;
                case model::LayerType::Text:
                    return AEGP_ObjectType_TEXT;
                case model::LayerType::Camera:
                    return AEGP_ObjectType_CAMERA;
                case model::LayerType::Light:
                    return AEGP_ObjectType_LIGHT;
                default:
                    return AEGP_ObjectType_AV;
            }
        };
        need(type) = objectType(session.layer(layer).type);
    });
}

A_Err isLayer3D(AEGP_LayerH layer, A_Boolean* is3D) noexcept {
    return gate("AEGP_IsLayer3D", [&](Session& session) {
        const model::Layer& what = session.layer(layer);
        const bool hasSwitch = what.type != model::LayerType::Camera && what.type != model::LayerType::Light;
        need(is3D) = hasSwitch && what.threeD ? 1 : 0;
    });
}

A_Err getLayerParent(AEGP_LayerH layer, AEGP_LayerH* parent) noexcept {
    return gate("AEGP_GetLayerParent", [&](Session& session) {
        const AEGP_LayerH child = layer;
        needHandle(parent);
        *parent = session.handleOf(session.layer(child).parent);
    });
}

A_Err setLayerParent(AEGP_LayerH layer, AEGP_LayerH parent) noexcept {
    return gate("AEGP_SetLayerParent", [&](Session& session) {
        model::setParent(session.project(), session.layer(layer),
                         parent == nullptr ? nullptr : &session.layer(parent));
    });
}

A_Err deleteLayer(AEGP_LayerH layer) noexcept {
    return gate("AEGP_DeleteLayer",
                [&](Session& session) { model::deleteLayer(session.project(), session.layer(layer)); });
}

template <class Table>
Table layerTable() {
    return makeTable<Table>([](auto& table) {
        table.AEGP_GetCompNumLayers = getCompNumLayers;
        table.AEGP_GetCompLayerByIndex = getCompLayerByIndex;
        table.AEGP_GetActiveLayer = getActiveLayer;
        table.AEGP_GetLayerIndex = getLayerIndex;
        table.AEGP_GetLayerSourceItem = getLayerSourceItem;
        table.AEGP_GetLayerParentComp = getLayerParentComp;
        if constexpr (std::is_same_v<Table, AEGP_LayerSuite5>) {
            table.AEGP_GetLayerName = getLayerName8;
        } else {
            table.AEGP_GetLayerName = getLayerName16;
        }
        table.AEGP_GetLayerFlags = getLayerFlags;
        table.AEGP_GetLayerCurrentTime = getLayerCurrentTime;
        table.AEGP_GetLayerInPoint = getLayerInPoint;
        table.AEGP_GetLayerDuration = getLayerDuration;
        table.AEGP_GetLayerOffset = getLayerOffset;
        table.AEGP_AddLayer = addLayer;
        table.AEGP_ReorderLayer = reorderLayer;
        table.AEGP_GetLayerMaskedBounds = getLayerMaskedBounds;
        table.AEGP_GetLayerObjectType = getLayerObjectType;
        table.AEGP_IsLayer3D = isLayer3D;
        table.AEGP_GetLayerParent = getLayerParent;
        table.AEGP_SetLayerParent = setLayerParent;
        table.AEGP_DeleteLayer = deleteLayer;
    });
}

}  // namespace

const AEGP_LayerSuite5 tableLayerSuite5 = layerTable<AEGP_LayerSuite5>();
const AEGP_LayerSuite7 tableLayerSuite7 = layerTable<AEGP_LayerSuite7>();

}  // namespace headless
