// Masks and the outlines that their values hold.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

A_Err getLayerNumMasks(AEGP_LayerH layer, A_long* count) noexcept {
    return gate("AEGP_GetLayerNumMasks", [&](Session& session) {
        need(count) = static_cast<A_long>(session.layer(layer).masks.size());
    });
}

A_Err getLayerMaskByIndex(AEGP_LayerH layer, AEGP_MaskIndex index, AEGP_MaskRefH* mask) noexcept {
    return gate("AEGP_GetLayerMaskByIndex", [&](Session& session) {
        needHandle(mask);
        const model::Layer& what = session.layer(layer);
        requireIndex(index, what.masks.size(), "mask");
        *mask = reinterpret_cast<AEGP_MaskRefH>(session.masks.add(
            {what.id, what.masks[static_cast<std::size_t>(index)]}, "AEGP_GetLayerMaskByIndex"));
    });
}

A_Err disposeMask(AEGP_MaskRefH mask) noexcept {
    return gate("AEGP_DisposeMask", [&](Session& session) { session.masks.remove(bits(mask)); });
}

A_Err deleteMaskFromLayer(AEGP_MaskRefH mask) noexcept {
    return gate("AEGP_DeleteMaskFromLayer", [&](Session& session) {
        const auto owner = session.ownerOf(session.masks.at(bits(mask)));
        model::Layer& layer = owner.first;
        const std::size_t index = owner.second;
        auto& selection = layer.comp->selection;
        if (std::any_of(selection.begin(), selection.end(), [&](const model::SelectedThing& thing) {
                return thing.layer == layer.id && thing.mask == static_cast<int>(index);
            })) {
            selection.clear();
        }
        for (model::SelectedThing& thing : selection) {
            if (thing.layer == layer.id && thing.mask > static_cast<int>(index)) {
                --thing.mask;
            }
        }
        model::deleteMask(session.project(), layer, index);
    });
}

A_Err isMaskOutlineOpen(AEGP_MaskOutlineValH outline, A_Boolean* open) noexcept {
    return gate("AEGP_IsMaskOutlineOpen",
                [&](Session& session) { need(open) = session.outlines.at(bits(outline)).closed ? 0 : 1; });
}

// Of an outline with V vertices: V when it is closed, one less when it is open.
A_long segments(const model::MaskPath& path) {
    const auto vertices = static_cast<A_long>(path.vertices.size());
    return path.closed || vertices == 0 ? vertices : vertices - 1;
}

A_Err getMaskOutlineNumSegments(AEGP_MaskOutlineValH outline, A_long* count) noexcept {
    return gate("AEGP_GetMaskOutlineNumSegments",
                [&](Session& session) { need(count) = segments(session.outlines.at(bits(outline))); });
}

// On a closed outline the vertex behind the last is the first again.
model::MaskVertex& vertexAt(Session& session, AEGP_MaskOutlineValH outline, AEGP_VertexIndex index) {
    model::MaskPath& path = session.outlines.at(bits(outline));
    requireIndex(index, static_cast<std::size_t>(segments(path)) + 1, "vertex");
    if (path.vertices.empty()) {
        throw HostError{PF_Err_INVALID_INDEX, "the outline has no vertices"};
    }
    return path.vertices[static_cast<std::size_t>(index) % path.vertices.size()];
}

A_Err getMaskOutlineVertexInfo(AEGP_MaskOutlineValH outline, AEGP_VertexIndex index,
                               AEGP_MaskVertex* vertex) noexcept {
    return gate("AEGP_GetMaskOutlineVertexInfo", [&](Session& session) {
        const auto& [point, in, out] = vertexAt(session, outline, index);
        need(vertex) = {point.x, point.y, in.x, in.y, out.x, out.y};
    });
}

A_Err setMaskOutlineVertexInfo(AEGP_MaskOutlineValH outline, AEGP_VertexIndex index,
                               const AEGP_MaskVertex* vertex) noexcept {
    return gate("AEGP_SetMaskOutlineVertexInfo", [&](Session& session) {
        const AEGP_MaskVertex& from = need(vertex);
        for (const double number :
             {from.x, from.y, from.tan_in_x, from.tan_in_y, from.tan_out_x, from.tan_out_y}) {
            needNumber(number);
        }
        vertexAt(session, outline, index) = {
            {from.x, from.y, 0}, {from.tan_in_x, from.tan_in_y, 0}, {from.tan_out_x, from.tan_out_y, 0}};
    });
}

}  // namespace

const AEGP_MaskSuite5 tableMaskSuite5 = makeTable<AEGP_MaskSuite5>([](auto& table) {
    table.AEGP_GetLayerNumMasks = getLayerNumMasks;
    table.AEGP_GetLayerMaskByIndex = getLayerMaskByIndex;
    table.AEGP_DisposeMask = disposeMask;
    table.AEGP_DeleteMaskFromLayer = deleteMaskFromLayer;
});

const AEGP_MaskOutlineSuite2 tableMaskOutlineSuite2 = makeTable<AEGP_MaskOutlineSuite2>([](auto& table) {
    table.AEGP_IsMaskOutlineOpen = isMaskOutlineOpen;
    table.AEGP_GetMaskOutlineNumSegments = getMaskOutlineNumSegments;
    table.AEGP_GetMaskOutlineVertexInfo = getMaskOutlineVertexInfo;
    table.AEGP_SetMaskOutlineVertexInfo = setMaskOutlineVertexInfo;
});

}  // namespace headless
