// The project and its items.

#include "suites/Gate.h"
#include "suites/Tables.h"
#include "suites/Text.h"

namespace headless {

namespace {

constexpr std::size_t shortName = 32;  // 8-bit name buffers of the older tables
constexpr std::size_t projectName = 48;

// ---- Project --------------------------------------------------------------------------------------------

A_Err getNumProjects(A_long* count) noexcept {
    return gate("AEGP_GetNumProjects", [&](Session&) { need(count) = 1; });
}

A_Err getProjectByIndex(A_long index, AEGP_ProjectH* project) noexcept {
    return gate("AEGP_GetProjectByIndex", [&](Session& session) {
        needHandle(project);
        requireIndex(index, 1, "project");
        *project = session.projectHandle();
    });
}

A_Err getProjectName(AEGP_ProjectH project, A_char* name) noexcept {
    return gate("AEGP_GetProjectName", [&](Session& session) {
        session.requireProject(project);
        copyText(session.project().root().item->name, &need(name), projectName);
    });
}

template <class Table>
void fillProject(Table& table) {
    table.AEGP_GetNumProjects = getNumProjects;
    table.AEGP_GetProjectByIndex = getProjectByIndex;
    table.AEGP_GetProjectName = getProjectName;
}

// ---- Items ----------------------------------------------------------------------------------------------

A_Err getFirstProjItem(AEGP_ProjectH project, AEGP_ItemH* first) noexcept {
    return gate("AEGP_GetFirstProjItem", [&](Session& session) {
        needHandle(first);
        session.requireProject(project);
        *first = session.handleOf(session.project().items.front().get());
    });
}

A_Err getNextProjItem(AEGP_ProjectH project, AEGP_ItemH item, AEGP_ItemH* next) noexcept {
    return gate("AEGP_GetNextProjItem", [&](Session& session) {
        const AEGP_ItemH from = item;
        needHandle(next);
        session.requireProject(project);
        *next = session.handleOf(session.project().itemAfter(session.item(from)));
    });
}

A_Err getActiveItem(AEGP_ItemH* item) noexcept {
    return gate("AEGP_GetActiveItem",
                [&](Session& session) { needHandle(item) = session.handleOf(session.activeItemNow()); });
}

A_Err isItemSelected(AEGP_ItemH item, A_Boolean* selected) noexcept {
    return gate("AEGP_IsItemSelected", [&](Session& session) {
        need(selected) = session.isSelectedInProject(session.item(item)) ? 1 : 0;
    });
}

A_Err getItemType(AEGP_ItemH item, AEGP_ItemType* type) noexcept {
    return gate("AEGP_GetItemType", [&](Session& session) {
        need(type) = session.item(item).comp ? AEGP_ItemType_COMP : AEGP_ItemType_FOOTAGE;
    });
}

A_Err getItemName8(AEGP_ItemH item, A_char* name) noexcept {
    return gate("AEGP_GetItemName",
                [&](Session& session) { copyText(session.item(item).name, &need(name), shortName); });
}

A_Err getItemName16(AEGP_PluginID, AEGP_ItemH item, AEGP_MemHandle* name) noexcept {
    return gate("AEGP_GetItemName", [&](Session& session) {
        needHandle(name);
        const std::u16string text = utf16Of(session.item(item).name);
        *name = session.newMemory(text.data(), text.size() * sizeof(text[0]), "AEGP_GetItemName");
    });
}

A_Err setItemName8(AEGP_ItemH item, const A_char* name) noexcept {
    return gate("AEGP_SetItemName", [&](Session& session) {
        model::setItemName(session.project(), session.item(item), &need(name));
    });
}

A_Err setItemName16(AEGP_ItemH item, const A_UTF16Char* name) noexcept {
    return gate("AEGP_SetItemName", [&](Session& session) {
        model::setItemName(session.project(), session.item(item), utf8Of(&need(name)));
    });
}

A_Err getItemId(AEGP_ItemH item, A_long* id) noexcept {
    return gate("AEGP_GetItemID", [&](Session& session) { need(id) = session.item(item).id; });
}

A_Err getItemDuration(AEGP_ItemH item, A_Time* duration) noexcept {
    return gate("AEGP_GetItemDuration", [&](Session& session) {
        const model::Item& what = session.item(item);
        need(duration) = session.durationOf(what.comp ? what.comp->frameCount() : 0);
    });
}

A_Err getItemCurrentTime(AEGP_ItemH item, A_Time* time) noexcept {
    return gate("AEGP_GetItemCurrentTime", [&](Session& session) {
        const model::Item& what = session.item(item);
        need(time) = session.timeOf(what.comp ? what.comp->currentFrame : 0);
    });
}

A_Err setItemCurrentTime(AEGP_ItemH item, const A_Time* time) noexcept {
    return gate("AEGP_SetItemCurrentTime", [&](Session& session) {
        const double frame = session.framesOf(need(time));
        if (const model::Item& what = session.item(item); what.comp) {
            what.comp->currentFrame = frame;
        }
    });
}

A_Err getItemDimensions(AEGP_ItemH item, A_long* width, A_long* height) noexcept {
    return gate("AEGP_GetItemDimensions", [&](Session& session) {
        const model::Size size = session.item(item).size;
        need(width);
        need(height) = size.height;
        *width = size.width;
    });
}

A_Err getItemPixelAspectRatio(AEGP_ItemH item, A_Ratio* ratio) noexcept {
    return gate("AEGP_GetItemPixelAspectRatio", [&](Session& session) {
        const model::Item& what = session.item(item);
        const model::PixelAspect aspect = what.comp ? what.comp->pixelAspect : model::PixelAspect{};
        need(ratio) = {aspect.numerator, aspect.denominator};
    });
}

A_Err deleteItem(AEGP_ItemH item) noexcept {
    return gate("AEGP_DeleteItem",
                [&](Session& session) { model::deleteItem(session.project(), session.item(item)); });
}

// What all versions of the suite have alike.
template <class Table>
void fillItems(Table& table) {
    table.AEGP_GetActiveItem = getActiveItem;
    table.AEGP_IsItemSelected = isItemSelected;
    table.AEGP_GetItemType = getItemType;
    table.AEGP_GetItemID = getItemId;
    table.AEGP_GetItemDuration = getItemDuration;
    table.AEGP_GetItemCurrentTime = getItemCurrentTime;
    table.AEGP_GetItemDimensions = getItemDimensions;
    table.AEGP_GetItemPixelAspectRatio = getItemPixelAspectRatio;
    table.AEGP_DeleteItem = deleteItem;
    table.AEGP_SetItemCurrentTime = setItemCurrentTime;
}

template <class Table>
void fillItemWalk(Table& table) {
    table.AEGP_GetFirstProjItem = getFirstProjItem;
    table.AEGP_GetNextProjItem = getNextProjItem;
}

}  // namespace

const AEGP_ProjSuite5 tableProjSuite5 = makeTable<AEGP_ProjSuite5>([](auto& table) { fillProject(table); });
const AEGP_ProjSuite6 tableProjSuite6 = makeTable<AEGP_ProjSuite6>([](auto& table) { fillProject(table); });

const AEGP_ItemSuite1 tableItemSuite1 = makeTable<AEGP_ItemSuite1>([](auto& table) {
    fillItems(table);
    table.AEGP_GetItemName = getItemName8;
});

const AEGP_ItemSuite6 tableItemSuite6 = makeTable<AEGP_ItemSuite6>([](auto& table) {
    fillItems(table);
    fillItemWalk(table);
    table.AEGP_GetItemName = getItemName8;
    table.AEGP_SetItemName = setItemName8;
});

const AEGP_ItemSuite8 tableItemSuite8 = makeTable<AEGP_ItemSuite8>([](auto& table) {
    fillItems(table);
    fillItemWalk(table);
    table.AEGP_GetItemName = getItemName16;
    table.AEGP_SetItemName = setItemName16;
});

}  // namespace headless
