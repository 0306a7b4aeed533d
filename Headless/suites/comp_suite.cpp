// Compositions and the selection inside them.

#include "suites/Gate.h"
#include "suites/Tables.h"
#include "suites/Text.h"

namespace headless {

namespace {

constexpr int largestDownsample = 99;

A_Err getCompFromItem(AEGP_ItemH item, AEGP_CompH* comp) noexcept {
    return gate("AEGP_GetCompFromItem", [&](Session& session) {
        needHandle(comp);
        *comp = session.handleOf(session.item(item).comp.get());
    });
}

A_Err getItemFromComp(AEGP_CompH comp, AEGP_ItemH* item) noexcept {
    return gate("AEGP_GetItemFromComp", [&](Session& session) {
        needHandle(item);
        *item = session.handleOf(session.comp(comp).item);
    });
}

A_Err getCompDownsampleFactor(AEGP_CompH comp, AEGP_DownsampleFactor* factor) noexcept {
    return gate("AEGP_GetCompDownsampleFactor", [&](Session& session) {
        const model::Comp& what = session.comp(comp);
        need(factor) = {static_cast<A_short>(what.downsampleX), static_cast<A_short>(what.downsampleY)};
    });
}

A_Err setCompDownsampleFactor(AEGP_CompH comp, const AEGP_DownsampleFactor* factor) noexcept {
    return gate("AEGP_SetCompDownsampleFactor", [&](Session& session) {
        const auto [x, y] = need(factor);
        if (x < 1 || y < 1 || x > largestDownsample || y > largestDownsample) {
            throw HostError{A_Err_PARAMETER, "downsample factors go from 1 to 99"};
        }
        model::Comp& what = session.comp(comp);
        what.downsampleX = x;
        what.downsampleY = y;
    });
}

A_Err getCompFramerate(AEGP_CompH comp, A_FpLong* rate) noexcept {
    return gate("AEGP_GetCompFramerate", [&](Session& session) { need(rate) = session.comp(comp).frameRate; });
}

A_Err getNewCollectionFromCompSelection(AEGP_PluginID, AEGP_CompH comp,
                                        AEGP_Collection2H* collection) noexcept {
    return gate("AEGP_GetNewCollectionFromCompSelection", [&](Session& session) {
        needHandle(collection);
        const model::Comp& what = session.comp(comp);
        *collection = reinterpret_cast<AEGP_Collection2H>(session.collections.add(
            Collection(session.selectionInOrder(what)), "AEGP_GetNewCollectionFromCompSelection"));
    });
}

A_Err setSelection(AEGP_CompH comp, AEGP_Collection2H collection) noexcept {
    return gate("AEGP_SetSelection", [&](Session& session) {
        model::Comp& what = session.comp(comp);
        const auto& things = session.collections.at(bits(collection)).things();
        for (const model::SelectedThing& thing : things) {
            const model::Layer* layer = session.project().layer(thing.layer);
            if (layer == nullptr || layer->comp != &what ||
                thing.mask >= static_cast<int>(layer->masks.size())) {
                throw HostError{A_Err_GENERIC, "something in the selection is not in the composition any more"};
            }
        }
        what.selection = things;
    });
}

std::optional<double> lengthOf(Session& session, const A_Time* duration) {
    if (duration == nullptr || duration->scale == 0 || duration->value <= 0) {
        return std::nullopt;
    }
    return session.framesOf(*duration);
}

A_Err createNull8(const A_char* name, AEGP_CompH comp, const A_Time* duration, AEGP_LayerH* layer) noexcept {
    return gate("AEGP_CreateNullInComp", [&](Session& session) {
        needHandle(layer);
        *layer = session.handleOf(
            &model::addNull(session.project(), session.comp(comp), &need(name), lengthOf(session, duration)));
    });
}

A_Err createNull16(const A_UTF16Char* name, AEGP_CompH comp, const A_Time* duration,
                   AEGP_LayerH* layer) noexcept {
    return gate("AEGP_CreateNullInComp", [&](Session& session) {
        needHandle(layer);
        *layer = session.handleOf(&model::addNull(session.project(), session.comp(comp), utf8Of(&need(name)),
                                                  lengthOf(session, duration)));
    });
}

A_Err setCompPixelAspectRatio(AEGP_CompH comp, const A_Ratio* ratio) noexcept {
    return gate("AEGP_SetCompPixelAspectRatio", [&](Session& session) {
        const auto [numerator, denominator] = need(ratio);
        if (numerator <= 0 || denominator == 0) {
            throw HostError{A_Err_PARAMETER, "a pixel aspect ratio needs two positive numbers"};
        }
        model::setPixelAspect(session.project(), session.comp(comp), {numerator, denominator});
    });
}

A_Err setCompDimensions(AEGP_CompH comp, A_long width, A_long height) noexcept {
    return gate("AEGP_SetCompDimensions", [&](Session& session) {
        model::setCompSize(session.project(), session.comp(comp), {width, height});
    });
}

A_Err duplicateComp(AEGP_CompH comp, AEGP_CompH* copy) noexcept {
    return gate("AEGP_DuplicateComp", [&](Session& session) {
        const AEGP_CompH from = comp;
        needHandle(copy);
        *copy = session.handleOf(&model::duplicateComp(session.project(), session.comp(from)));
    });
}

template <class Table>
Table compTable() {
    return makeTable<Table>([](auto& table) {
        table.AEGP_GetCompFromItem = getCompFromItem;
        table.AEGP_GetItemFromComp = getItemFromComp;
        table.AEGP_GetCompDownsampleFactor = getCompDownsampleFactor;
        table.AEGP_SetCompDownsampleFactor = setCompDownsampleFactor;
        table.AEGP_GetCompFramerate = getCompFramerate;
        table.AEGP_GetNewCollectionFromCompSelection = getNewCollectionFromCompSelection;
        table.AEGP_SetSelection = setSelection;
        if constexpr (std::is_same_v<Table, AEGP_CompSuite4>) {
            table.AEGP_CreateNullInComp = createNull8;
        } else {
            table.AEGP_CreateNullInComp = createNull16;
        }
        table.AEGP_SetCompPixelAspectRatio = setCompPixelAspectRatio;
        table.AEGP_SetCompDimensions = setCompDimensions;
        table.AEGP_DuplicateComp = duplicateComp;
    });
}

}  // namespace

const AEGP_CompSuite4 tableCompSuite4 = compTable<AEGP_CompSuite4>();
const AEGP_CompSuite7 tableCompSuite7 = compTable<AEGP_CompSuite7>();
const AEGP_CompSuite9 tableCompSuite9 = compTable<AEGP_CompSuite9>();

}  // namespace headless
