// Collections of selected things: layers and masks.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

Collection& thingsOf(Session& session, AEGP_Collection2H collection) {
    return session.collections.at(bits(collection));
}

A_Err newCollection(AEGP_PluginID, AEGP_Collection2H* collection) noexcept {
    return gate("AEGP_NewCollection", [&](Session& session) {
        needHandle(collection);
        *collection = reinterpret_cast<AEGP_Collection2H>(session.collections.add({}, "AEGP_NewCollection"));
    });
}

A_Err disposeCollection(AEGP_Collection2H collection) noexcept {
    return gate("AEGP_DisposeCollection",
                [&](Session& session) { session.collections.remove(bits(collection)); });
}

A_Err getCollectionNumItems(AEGP_Collection2H collection, A_u_long* count) noexcept {
    return gate("AEGP_GetCollectionNumItems", [&](Session& session) {
        need(count) = static_cast<A_u_long>(thingsOf(session, collection).size());
    });
}

A_Err getCollectionItemByIndex(AEGP_Collection2H collection, A_u_long index,
                               AEGP_CollectionItemV2* item) noexcept {
    return gate("AEGP_GetCollectionItemByIndex", [&](Session& session) {
        const auto& things = thingsOf(session, collection);
        if (index >= things.size()) {
            throw HostError{PF_Err_INVALID_INDEX, "the collection has no item " + std::to_string(index)};
        }
        const model::SelectedThing& thing = things[index];
        const AEGP_LayerH layer = session.handleOf(session.project().layer(thing.layer));
        AEGP_CollectionItemV2& out = need(item);
        out = {};
        if (thing.mask < 0) {
            out.type = AEGP_CollectionItemType_LAYER;
            out.u.layer = {layer};
        } else {
            out.type = AEGP_CollectionItemType_MASK;
            out.u.mask = {layer, thing.mask};
        }
    });
}

A_Err collectionPushBack(AEGP_Collection2H collection, const AEGP_CollectionItemV2* item) noexcept {
    return gate("AEGP_CollectionPushBack", [&](Session& session) {
        auto& things = thingsOf(session, collection);
        const AEGP_CollectionItemV2& from = need(item);
        if (from.type == AEGP_CollectionItemType_LAYER) {
            things.add({session.layer(from.u.layer.layerH).id, -1});
        } else if (from.type == AEGP_CollectionItemType_MASK) {
            const model::Layer& layer = session.layer(from.u.mask.layerH);
            requireIndex(from.u.mask.index, layer.masks.size(), "mask");
            things.add({layer.id, from.u.mask.index});
        } else {
            throw HostError{A_Err_PARAMETER, "only layers and masks can be collected"};
        }
    });
}

A_Err collectionErase(AEGP_Collection2H collection, A_u_long first, A_u_long last) noexcept {
    return gate("AEGP_CollectionErase", [&](Session& session) {
        auto& things = thingsOf(session, collection);
        if (first > last || last > things.size()) {
            throw HostError{PF_Err_INVALID_INDEX, "the collection has no such range"};
        }
        things.erase(first, last);
    });
}

}  // namespace

const AEGP_CollectionSuite2 tableCollectionSuite2 = makeTable<AEGP_CollectionSuite2>([](auto& table) {
    table.AEGP_NewCollection = newCollection;
    table.AEGP_DisposeCollection = disposeCollection;
    table.AEGP_GetCollectionNumItems = getCollectionNumItems;
    table.AEGP_GetCollectionItemByIndex = getCollectionItemByIndex;
    table.AEGP_CollectionPushBack = collectionPushBack;
    table.AEGP_CollectionErase = collectionErase;
});

}  // namespace headless
