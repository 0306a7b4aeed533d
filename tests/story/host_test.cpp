// The host's own side: bad handles, what is counted, what is put in order after a hook.

#include "AEGP_Suites.h"
#include "model/Edit.h"
#include "suites/Tables.h"
#include "support/Story.h"

namespace kestrin_test {
namespace {

struct Host : Story {
    void SetUp() override {
        open(kestrin_test::project("Scene", {400, 300})
                 .with(precomp("Card", {400, 300})
                           .with(solid("Red", {100, 50}).at({150, 125}))
                           .anchor({5, 6})
                           .masked({{0, 0}, {9, 0}, {9, 9}}))
                 .with(solid("S", {10, 10})));
    }
    AEGP_LayerH card() { return session->handleOf(&layer("Card")); }
};

TEST_F(Host, EverySlotOfEveryTableIsFilledAndFoundByItsExactNumber) {
#define KESTRIN_SUITE(label, name, number)                                       \
    {                                                                            \
        const void* table = findSuite(name, number);                             \
        ASSERT_NE(table, nullptr) << name;                                       \
        const auto* slots = static_cast<const AEGP_UnusedSlot*>(table);          \
        for (std::size_t i = 0; i < sizeof(AEGP_##label) / sizeof(void*); ++i) { \
            EXPECT_NE(slots[i], nullptr) << #label << " slot " << i;             \
        }                                                                        \
    }
    AEGP_FOR_EACH_SUITE(KESTRIN_SUITE)
#undef KESTRIN_SUITE
    EXPECT_EQ(findSuite("AEGP Item Suite", 8), nullptr);  // a label's digit is no number to acquire by
    EXPECT_EQ(tableLayerSuite7.AEGP_GetLayerID(), A_Err_GENERIC);
}

TEST_F(Host, NullForeignStaleAndWrongHandlesAreErrors) {
    const auto& items = tableItemSuite8;
    const auto& layers = tableLayerSuite7;
    const auto& streams = tableStreamSuite4;
    int local = 0;
    AEGP_ItemType type = 0;
    A_long number = 0;
    EXPECT_EQ(items.AEGP_GetItemType(nullptr, &type), A_Err_PARAMETER);
    EXPECT_EQ(items.AEGP_GetItemType(reinterpret_cast<AEGP_ItemH>(&local), &type), A_Err_PARAMETER);
    EXPECT_EQ(items.AEGP_GetItemType(reinterpret_cast<AEGP_ItemH>(card()), &type), A_Err_PARAMETER);
    EXPECT_EQ(items.AEGP_GetItemType(session->handleOf(comp("Card").item), nullptr), A_Err_PARAMETER);
    EXPECT_EQ(layers.AEGP_GetCompLayerByIndex(session->handleOf(&comp("Scene")), 2, nullptr), A_Err_PARAMETER);
    AEGP_LayerH found = card();
    EXPECT_EQ(layers.AEGP_GetCompLayerByIndex(session->handleOf(&comp("Scene")), 2, &found),
              PF_Err_INVALID_INDEX);
    EXPECT_EQ(found, nullptr);

    AEGP_StreamRefH stream = nullptr;
    ASSERT_EQ(streams.AEGP_GetNewLayerStream(0, card(), AEGP_LayerStream_ANCHORPOINT, &stream), 0);
    AEGP_StreamValue2 value{};
    const A_Time zero{0, 1};
    ASSERT_EQ(streams.AEGP_GetNewStreamValue(0, stream, AEGP_LTimeMode_CompTime, &zero, 1, &value), 0);
    EXPECT_EQ(value.val.three_d.y, 6);
    EXPECT_EQ(session->held(), (HeldThings{.streams = 1, .values = 1}));
    EXPECT_EQ(streams.AEGP_DisposeStreamValue(&value), 0);
    EXPECT_EQ(streams.AEGP_DisposeStreamValue(&value), 0);  // of zeroes: harmless
    EXPECT_EQ(streams.AEGP_DisposeStream(stream), 0);
    EXPECT_EQ(streams.AEGP_DisposeStream(stream), A_Err_PARAMETER);

    ASSERT_EQ(streams.AEGP_GetNewLayerStream(0, card(), AEGP_LayerStream_POSITION, &stream), 0);
    const AEGP_LayerH gone = card();
    EXPECT_EQ(layers.AEGP_DeleteLayer(gone), 0);
    EXPECT_EQ(layers.AEGP_GetLayerIndex(gone, &number), A_Err_PARAMETER);
    EXPECT_EQ(tableKeyframeSuite4.AEGP_GetStreamNumKFs(stream, &number), A_Err_PARAMETER);
    EXPECT_EQ(session->stillOpen(), std::vector<std::string>{"stream, made by AEGP_GetNewLayerStream"});
    ASSERT_TRUE(undo());
    EXPECT_EQ(layers.AEGP_GetLayerIndex(gone, &number), 0);  // the layer is back, and so is its handle
    EXPECT_EQ(streams.AEGP_DisposeStream(stream), 0);
}

TEST_F(Host, OnlyTheMainThreadMayCall) {
    A_Err error = 0;
    std::thread([&] {
        A_long count = 0;
        error = tableProjSuite6.AEGP_GetNumProjects(&count);
    }).join();
    EXPECT_EQ(error, A_Err_WRONG_THREAD);
}

TEST_F(Host, ACopyThatIsTakenBackTakesItsHandlesWithIt) {
    AEGP_CompH copy = nullptr;
    AEGP_LayerH inside = nullptr;
    A_long number = 0;
    ASSERT_EQ(tableCompSuite7.AEGP_DuplicateComp(session->handleOf(&comp("Card")), &copy), 0);
    ASSERT_EQ(tableLayerSuite7.AEGP_GetCompLayerByIndex(copy, 0, &inside), 0);
    ASSERT_TRUE(undo());
    EXPECT_EQ(tableLayerSuite7.AEGP_GetLayerIndex(inside, &number), A_Err_PARAMETER);
    EXPECT_EQ(tableLayerSuite7.AEGP_GetCompNumLayers(copy, &number), A_Err_PARAMETER);
    model::setItemName(project(), *comp("Card").item, "Other");  // and with it what could be done again
    EXPECT_EQ(tableLayerSuite7.AEGP_GetLayerIndex(inside, &number), A_Err_PARAMETER);
}

// Hooks with faults of their own, registered by a plug-in made for it.
A_Err leavesAGroupOpen(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command, AEGP_HookPriority, A_Boolean,
                       A_Boolean* handled) {
    *handled = 1;
    tableUtilitySuite5.AEGP_StartUndoGroup("Left open");
    return tableCompSuite7.AEGP_SetCompDimensions(
        Session::current().handleOf(&Session::current().project().root()), 200, 100);
}

A_Err changesAndFails(AEGP_GlobalRefcon refcon, AEGP_CommandRefcon command, AEGP_Command id,
                      AEGP_HookPriority priority, A_Boolean already, A_Boolean* handled) {
    leavesAGroupOpen(refcon, command, id, priority, already, handled);
    tableUtilitySuite5.AEGP_EndUndoGroup();
    return 42;
}

A_Err throws(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command, AEGP_HookPriority, A_Boolean, A_Boolean*) {
    throw std::runtime_error("out of the hook");
}

template <A_Err (*hook)(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command, AEGP_HookPriority, A_Boolean,
                        A_Boolean*)>
A_Err start(SPBasicSuite*, A_long, A_long, AEGP_PluginID id, AEGP_GlobalRefcon*) {
    return tableRegisterSuite5.AEGP_RegisterCommandHook(id, AEGP_HP_BeforeAE, AEGP_Command_ALL, hook, nullptr);
}

TEST_F(Host, PutsInOrderWhatAHookLeavesBehind) {
    const auto openBare = [&] {
        session.reset();
        session = std::make_unique<Session>(model::Project::read(opened), answers);
    };
    openBare();
    ASSERT_EQ(session->startPlugin(start<leavesAGroupOpen>), 0);
    EXPECT_EQ(session->runCommand(5), 0);
    EXPECT_EQ(session->undoMismatches(), 1);
    EXPECT_EQ(project().history.done().back().name, "Left open");
    EXPECT_EQ(sizeOf("Scene"), (Size{200, 100}));

    openBare();
    ASSERT_EQ(session->startPlugin(start<changesAndFails>), 0);
    EXPECT_EQ(session->runCommand(5), 42);
    EXPECT_EQ(project().write(), opened);
    EXPECT_TRUE(project().history.done().empty());

    openBare();
    ASSERT_EQ(session->startPlugin(start<throws>), 0);
    EXPECT_EQ(session->runCommand(5), A_Err_GENERIC);
    EXPECT_EQ(messages(Message::Kind::Error).front(), "the plug-in let an exception out");
    EXPECT_NE(tableRegisterSuite5.AEGP_RegisterIdleHook(0, nullptr, nullptr), 0);
}

TEST_F(Host, PreferencesAreReadAsTheHostReadsThem) {
    const auto& store = tablePersistentDataSuite3;
    AEGP_PersistentBlobH blob = nullptr;
    ASSERT_EQ(store.AEGP_GetApplicationBlob(&blob), 0);
    A_long number = -1;
    preferences().setFloat("Kestrin", "PaddingAmount", -12.5);
    EXPECT_EQ(store.AEGP_GetLong(blob, "Kestrin", "PaddingAmount", 3, &number), 0);
    EXPECT_EQ(number, -12);
    EXPECT_EQ(store.AEGP_GetLong(blob, "Kestrin", "Resolution", 7, &number), 0);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(preferences().getLong("Kestrin", "Resolution"), 7);  // reading has written the default
    A_u_char flag = 9;
    EXPECT_EQ(store.AEGP_GetData(blob, "Kestrin", "Padding", 1, nullptr, &flag), 0);
    EXPECT_EQ(flag, 0);
    preferences().setBool("Kestrin", "Padding", true);
    EXPECT_EQ(store.AEGP_GetData(blob, "Kestrin", "Padding", 1, nullptr, &flag), 0);
    EXPECT_EQ(flag, 1);
    EXPECT_EQ(store.AEGP_GetData(blob, "Kestrin", "PaddingAmount", 1, nullptr, &flag), A_Err_GENERIC);
}

TEST_F(Host, FramesArePaddedAndTimesOutsideAreEmpty) {
    const auto& options = tableRenderOptionsSuite3;
    AEGP_RenderOptionsH made = nullptr;
    ASSERT_EQ(options.AEGP_NewFromItem(0, session->handleOf(comp("Scene").item), &made), 0);
    const auto opaque = [&](A_Time time) {
        EXPECT_EQ(options.AEGP_SetTime(made, time), 0);
        AEGP_FrameReceiptH receipt = nullptr;
        AEGP_WorldH world = nullptr;
        PF_Pixel8* pixels = nullptr;
        A_u_long rowBytes = 0;
        EXPECT_EQ(tableRenderSuite3.AEGP_RenderAndCheckoutFrame(made, nullptr, nullptr, &receipt), 0);
        EXPECT_EQ(tableRenderSuite3.AEGP_GetReceiptWorld(receipt, &world), 0);
        EXPECT_EQ(tableWorldSuite3.AEGP_GetBaseAddr8(world, &pixels), 0);
        EXPECT_EQ(tableWorldSuite3.AEGP_GetRowBytes(world, &rowBytes), 0);
        EXPECT_GT(rowBytes, 400u * 4);
        EXPECT_EQ(tableWorldSuite3.AEGP_GetBaseAddr16(world, nullptr), A_Err_PARAMETER);
        const bool result = pixels->alpha == 255;
        EXPECT_EQ(tableRenderSuite3.AEGP_CheckinFrame(receipt), 0);
        EXPECT_EQ(tableWorldSuite3.AEGP_GetBaseAddr8(world, &pixels), A_Err_PARAMETER);
        return result;
    };
    EXPECT_TRUE(opaque({0, 1}));   // the solid S covers the corner
    EXPECT_FALSE(opaque({1, 1}));  // one second: the composition has ended
    EXPECT_FALSE(opaque({-1, 30}));
    EXPECT_EQ(options.AEGP_Dispose(made), 0);
    expectNothingOpen();
}

}  // namespace
}  // namespace kestrin_test
