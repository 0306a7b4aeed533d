// The host's own side: bad handles, what is counted, what is put in order after a hook.

#include <cmath>
#include <cstring>

#include "AEGP_Suites.h"
#include "model/Edit.h"
#include "suites/Gate.h"
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

Session& host() {
    return Session::current();
}
AEGP_LayerH firstLayer() {
    return host().handleOf(host().project().root().layers.front().get());
}
AEGP_StreamRefH newStream() {
    AEGP_StreamRefH stream = nullptr;
    tableStreamSuite4.AEGP_GetNewLayerStream(0, firstLayer(), AEGP_LayerStream_POSITION, &stream);
    return stream;
}

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

TEST_F(Host, ALayersHandleGoesAndComesWithTheLayer) {
    const auto& layers = tableLayerSuite7;
    A_long number = 0;
    const AEGP_LayerH gone = card();
    const AEGP_StreamRefH stream = newStream();
    EXPECT_EQ(layers.AEGP_DeleteLayer(gone), 0);
    EXPECT_EQ(layers.AEGP_GetLayerIndex(gone, &number), A_Err_PARAMETER);
    EXPECT_EQ(tableKeyframeSuite4.AEGP_GetStreamNumKFs(stream, &number), A_Err_PARAMETER);
    ASSERT_TRUE(undo());
    EXPECT_EQ(layers.AEGP_GetLayerIndex(gone, &number), 0);
    EXPECT_EQ(tableStreamSuite4.AEGP_DisposeStream(stream), 0);
    AEGP_ItemType type = 0;
    EXPECT_EQ(tableItemSuite8.AEGP_GetItemType(reinterpret_cast<AEGP_ItemH>(gone), &type), A_Err_PARAMETER);
}

TEST_F(Host, ANullStandsAtTheCentre) {
    const model::Layer& null = model::addNull(project(), comp("Scene"), "N", std::nullopt);
    expectNear(null.position.value, {200, 150, 0});
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

// ---- Plug-ins with faults of their own ---------------------------------------------------------------

AEGP_StreamValue2 newValue(AEGP_StreamRefH stream) {
    AEGP_StreamValue2 value{};
    const A_Time zero{0, 1};
    tableStreamSuite4.AEGP_GetNewStreamValue(0, stream, AEGP_LTimeMode_CompTime, &zero, 1, &value);
    return value;
}
A_Err resize() {
    return tableCompSuite7.AEGP_SetCompDimensions(host().handleOf(&host().project().root()), 200, 100);
}

// What a faulty command hook does, what is said about it, and what is found held when it is back.
struct FaultyPlugin {
    const char* name;
    A_Err (*command)();
    std::vector<std::string> messages = {}, held = {};
    A_Err error = 0;
};

const std::vector<FaultyPlugin>& faultyPlugins() {
    static const std::vector<FaultyPlugin> plugins = {
        {"leaks a stream, a value and a suite",
         [] {
             const void* suite = nullptr;
             newValue(newStream());
             return host().basicSuite()->AcquireSuite("AEGP World Suite", 3, &suite);
         },
         {},
         {"stream, made by AEGP_GetNewLayerStream", "stream value, made by AEGP_GetNewStreamValue",
          "suite AEGP World Suite 3, acquired 1 times too often"}},
        {"releases the copy of a value, too",
         [] {
             const AEGP_StreamRefH stream = newStream();
             AEGP_StreamValue2 value = newValue(stream);
             AEGP_StreamValue2 copy = value;
             tableStreamSuite4.AEGP_DisposeStreamValue(&value);
             tableStreamSuite4.AEGP_DisposeStreamValue(&copy);
             return tableStreamSuite4.AEGP_DisposeStream(stream);
         },
         {"AEGP_DisposeStreamValue: this stream value has been given back already"},
         {}},
        {"uses a stream after its release, when another has its place",
         [] {
             const AEGP_StreamRefH old = newStream();
             tableStreamSuite4.AEGP_DisposeStream(old);
             const AEGP_StreamRefH other = newStream();
             A_long keys = 0;
             tableKeyframeSuite4.AEGP_GetStreamNumKFs(old, &keys);
             return tableStreamSuite4.AEGP_DisposeStream(other);
         },
         {"AEGP_GetStreamNumKFs: this stream has been given back already"},
         {}},
        {"unlocks more often than it locks",
         [] {
             AEGP_MemHandle text = nullptr;
             void* address = nullptr;
             tableUtilitySuite5.AEGP_ExecuteScript(0, "1", 0, &text, nullptr);
             tableMemorySuite1.AEGP_LockMemHandle(text, &address);
             tableMemorySuite1.AEGP_UnlockMemHandle(text);
             tableMemorySuite1.AEGP_UnlockMemHandle(text);
             return tableMemorySuite1.AEGP_FreeMemHandle(text);
         },
         {"AEGP_UnlockMemHandle: the memory handle is not locked"},
         {}},
        {"calls from another thread",
         [] {
             A_long count = 0;
             A_Err error = 0;
             std::thread([&] { error = tableProjSuite6.AEGP_GetNumProjects(&count); }).join();
             return error;
         },
         {"AEGP_GetNumProjects: called from another thread than the main one; it was refused",
          "CommandHook: the plug-in reported error 5; the project is as it was before"},
         {},
         A_Err_WRONG_THREAD},
        {"acquires from another thread",
         [] {
             std::thread([] {
                 const void* suite = nullptr;
                 host().basicSuite()->AcquireSuite("AEGP Item Suite", 9, &suite);
             }).join();
             return 0;
         },
         {"AcquireSuite: called from another thread than the main one; it was refused"},
         {}},
        {"throws a number through the host",
         [] {
             static int depth = 0;
             if (++depth % 2 == 0) {
                 throw 516;
             }
             return tableCommandSuite1.AEGP_DoCommand(5);
         },
         {"AEGP_DoCommand: an exception came out of it",
          "CommandHook: the plug-in reported error 1; the project is as it was before"},
         {},
         A_Err_GENERIC},
        {"changes the project and throws",
         []() -> A_Err {
             resize();
             throw std::runtime_error("out of the hook");
         },
         {"CommandHook: the plug-in let an exception out",
          "CommandHook: the plug-in reported error 1; the project is as it was before"},
         {},
         A_Err_GENERIC},
        {"leaves a group open",
         [] {
             tableUtilitySuite5.AEGP_StartUndoGroup("Left open");
             tableUtilitySuite5.AEGP_StartUndoGroup("Inner");
             return resize();
         },
         {"CommandHook: the plug-in left an undo group open; it was closed"},
         {}},
        {"releases a suite that it does not have",
         [] {
             host().basicSuite()->ReleaseSuite("AEGP Item Suite", 9);
             return 0;
         },
         {"ReleaseSuite: released more often than acquired: AEGP Item Suite 9"},
         {}},
        {"sets what is no number",
         [] {
             const AEGP_StreamRefH stream = newStream();
             AEGP_StreamValue2 value = newValue(stream);
             value.val.three_d.x = std::nan("");
             tableStreamSuite4.AEGP_SetStreamValue(0, stream, &value);
             tableStreamSuite4.AEGP_DisposeStreamValue(&value);
             return tableStreamSuite4.AEGP_DisposeStream(stream);
         },
         {"AEGP_SetStreamValue: the number nan is out of range"},
         {}},
    };
    return plugins;
}

const FaultyPlugin* running = nullptr;

A_Err faultyHook(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command, AEGP_HookPriority, A_Boolean,
                 A_Boolean* handled) {
    *handled = 1;
    return running->command();
}

A_Err startFaulty(SPBasicSuite*, A_long, A_long, AEGP_PluginID id, AEGP_GlobalRefcon*) {
    return tableRegisterSuite5.AEGP_RegisterCommandHook(id, AEGP_HP_BeforeAE, AEGP_Command_ALL, faultyHook,
                                                        nullptr);
}

struct Faulty : Host {
    A_Err runFaulty(const FaultyPlugin& plugin) {
        running = &plugin;
        session.reset();
        session = std::make_unique<Session>(model::Project::read(opened), answers);
        EXPECT_EQ(session->startPlugin(startFaulty), 0);
        return session->runCommand(5);
    }
};

TEST_F(Faulty, IsCaughtAndNamed) {
    for (const FaultyPlugin& plugin : faultyPlugins()) {
        SCOPED_TRACE(plugin.name);
        EXPECT_EQ(runFaulty(plugin), plugin.error);
        std::vector<std::string> messagesGiven;
        for (const Message& message : session->messages()) {
            messagesGiven.push_back(message.title + ": " + message.text);
        }
        EXPECT_EQ(messagesGiven, plugin.messages);
        EXPECT_EQ(session->stillOpen(), plugin.held);
        EXPECT_EQ(project().history.depth(), 0);
        if (plugin.error != 0) {
            EXPECT_EQ(project().write(), opened);
            EXPECT_TRUE(project().history.done().empty());
        }
    }
    EXPECT_NE(tableRegisterSuite5.AEGP_RegisterIdleHook(0, nullptr, nullptr), 0);
}

TEST_F(Faulty, UndoGroupsNestAndAreCounted) {
    runFaulty({"", [] {
                   for (const char* name : {"Outer", "Inner"}) {
                       tableUtilitySuite5.AEGP_StartUndoGroup(name);
                       resize();
                   }
                   for (int i = 0; i < 3; ++i) {
                       tableUtilitySuite5.AEGP_EndUndoGroup();
                   }
                   tableUtilitySuite5.AEGP_StartUndoGroup("Empty");
                   tableUtilitySuite5.AEGP_EndUndoGroup();
                   return tableUtilitySuite5.AEGP_StartUndoGroup("Left open");
               }});
    EXPECT_EQ(session->undoMismatches(), 2);
    ASSERT_EQ(project().history.done().size(), 1u);
    EXPECT_EQ(project().history.done().back().name, "Outer");
    ASSERT_TRUE(undo());
    EXPECT_EQ(project().write(), opened);
}

// ---- Every function with arguments that are none -----------------------------------------------------

// Whether a pointer is a handle: what it points to is the host's secret.
template <class Pointee>
concept Secret = !requires {
    sizeof(Pointee);
}
&&!std::is_void_v<Pointee> && !std::is_function_v<Pointee>;

// An argument: `handle` where a handle is asked for, memory of the caller's own for every other pointer, else
// zero.
template <class Arg>
Arg argument(void* handle, void* memory) {
    if constexpr (std::is_pointer_v<Arg>) {
        return reinterpret_cast<Arg>(Secret<std::remove_pointer_t<Arg>> ? handle : memory);
    } else {
        return Arg{};
    }
}

struct Refusals : Host {
    template <class... Args>
    void refuse(A_Err (*function)(Args...), const char* suite, int place) {
        alignas(16) static char memory[4096];
        EXPECT_NE(function(Args{}...), 0) << suite << ", function " << place << " with null pointers";
        for (const std::uintptr_t handle : stale) {
            std::memset(memory, 0, sizeof memory);
            EXPECT_NE(function(argument<Args>(reinterpret_cast<void*>(handle), memory)...), 0)
                << suite << ", function " << place << " with " << std::hex << handle;
        }
    }
    // Functions of one suite that take a handle or the address of a result.
    template <class... Functions>
    void refuseAll(const char* suite, Functions... functions) {
        int place = 0;
        (refuse(functions, suite, ++place), ...);
    }

    // Of each kind one that stands for nothing, and the address of the caller's own memory.
    Refusals() {
        for (int kind = 1; kind <= static_cast<int>(HandleKind::Value); ++kind) {
            stale.push_back(makeHandle(static_cast<HandleKind>(kind), 1u << 30));
        }
        stale.push_back(bits(&stale));
    }

    std::vector<std::uintptr_t> stale;
};

TEST_F(Refusals, OfNullStaleForeignAndWrongHandlesEverywhere) {
    const std::string before = project().write();
#define F(table, name) table.AEGP_##name
    const auto& items = tableItemSuite8;
    const auto& layers = tableLayerSuite7;
    const auto& comps = tableCompSuite9;
    const auto& masks = tableMaskSuite5;
    const auto& outlines = tableMaskOutlineSuite2;
    const auto& streams = tableStreamSuite4;
    const auto& keys = tableKeyframeSuite4;
    const auto& options = tableRenderOptionsSuite3;
    const auto& frames = tableRenderSuite3;
    const auto& worlds = tableWorldSuite3;
    const auto& memory = tableMemorySuite1;
    const auto& store = tablePersistentDataSuite3;
    const auto& collections = tableCollectionSuite2;
    refuseAll("items", F(items, IsItemSelected), F(items, GetItemType), F(items, GetItemName),
              F(items, GetItemID), F(items, GetItemDuration), F(items, GetItemCurrentTime),
              F(items, GetItemDimensions), F(items, GetItemPixelAspectRatio), F(items, DeleteItem),
              F(items, SetItemCurrentTime), F(items, GetFirstProjItem), F(items, GetNextProjItem),
              F(items, SetItemName));
    refuseAll("layers", F(layers, GetCompNumLayers), F(layers, GetCompLayerByIndex), F(layers, GetLayerIndex),
              F(layers, GetLayerSourceItem), F(layers, GetLayerParentComp), F(layers, GetLayerName),
              F(layers, GetLayerFlags), F(layers, GetLayerCurrentTime), F(layers, GetLayerInPoint),
              F(layers, GetLayerDuration), F(layers, GetLayerOffset), F(layers, AddLayer),
              F(layers, ReorderLayer), F(layers, GetLayerMaskedBounds), F(layers, GetLayerObjectType),
              F(layers, IsLayer3D), F(layers, GetLayerParent), F(layers, SetLayerParent),
              F(layers, DeleteLayer));
    refuseAll("comps", F(comps, GetCompFromItem), F(comps, GetItemFromComp), F(comps, GetCompDownsampleFactor),
              F(comps, SetCompDownsampleFactor), F(comps, GetCompFramerate),
              F(comps, GetNewCollectionFromCompSelection), F(comps, SetSelection), F(comps, CreateNullInComp),
              F(comps, SetCompPixelAspectRatio), F(comps, SetCompDimensions), F(comps, DuplicateComp));
    refuseAll("collections", F(collections, DisposeCollection), F(collections, GetCollectionNumItems),
              F(collections, GetCollectionItemByIndex), F(collections, CollectionPushBack),
              F(collections, CollectionErase), F(memory, FreeMemHandle), F(memory, LockMemHandle),
              F(memory, UnlockMemHandle), F(memory, GetMemHandleSize), F(store, GetData), F(store, GetLong),
              F(store, DeleteEntry));
    refuseAll("streams", F(masks, GetLayerNumMasks), F(masks, GetLayerMaskByIndex), F(masks, DisposeMask),
              F(masks, DeleteMaskFromLayer), F(outlines, IsMaskOutlineOpen),
              F(outlines, GetMaskOutlineNumSegments), F(outlines, GetMaskOutlineVertexInfo),
              F(outlines, SetMaskOutlineVertexInfo), F(streams, GetNewLayerStream),
              F(streams, GetNewMaskStream), F(streams, DisposeStream), F(streams, GetNewStreamValue),
              F(streams, SetStreamValue), F(keys, GetStreamNumKFs), F(keys, GetKeyframeTime),
              F(keys, GetNewKeyframeValue), F(keys, SetKeyframeValue), F(keys, GetKeyframeInterpolation),
              F(keys, SetKeyframeInterpolation));
    refuseAll("frames", F(options, NewFromItem), F(options, Dispose), F(options, SetTime), F(options, GetTime),
              F(options, GetTimeStep), F(options, SetDownsampleFactor), F(options, GetDownsampleFactor),
              F(frames, RenderAndCheckoutFrame), F(frames, CheckinFrame), F(frames, GetReceiptWorld),
              F(worlds, Dispose), F(worlds, GetType), F(worlds, GetSize), F(worlds, GetRowBytes),
              F(worlds, GetBaseAddr8), F(worlds, GetBaseAddr16), F(worlds, GetBaseAddr32));
#undef F

    const auto& utility = tableUtilitySuite5;
    const auto& commands = tableCommandSuite1;
    for (const A_Err error :
         {utility.AEGP_ReportInfo(0, nullptr), utility.AEGP_StartUndoGroup(nullptr),
          utility.AEGP_ExecuteScript(0, nullptr, 0, nullptr, nullptr), commands.AEGP_GetUniqueCommand(nullptr),
          commands.AEGP_InsertMenuCommand(1, nullptr, 0, 0), commands.AEGP_SetMenuCommandName(1, nullptr),
          tableProjSuite6.AEGP_GetNumProjects(nullptr), tableProjSuite6.AEGP_GetProjectByIndex(0, nullptr),
          tableItemSuite8.AEGP_GetActiveItem(nullptr), tableLayerSuite7.AEGP_GetActiveLayer(nullptr),
          tableCollectionSuite2.AEGP_NewCollection(0, nullptr),
          tablePersistentDataSuite3.AEGP_GetApplicationBlob(nullptr),
          tableStreamSuite4.AEGP_DisposeStreamValue(nullptr), tablePlatformSuite1.GetModifierKeys(nullptr),
          tablePlatformSuite1.OpenProgress(nullptr, nullptr)}) {
        EXPECT_EQ(error, A_Err_PARAMETER);
    }
    EXPECT_EQ(session->stillOpen(), std::vector<std::string>());
    EXPECT_EQ(project().write(), before);
}

TEST_F(Refusals, OfIndicesBesideTheRange) {
    AEGP_LayerH layer = nullptr;
    AEGP_MaskRefH mask = nullptr;
    AEGP_ProjectH openProject = nullptr;
    A_Time time{};
    const AEGP_StreamRefH stream = newStream();
    for (const A_long index : {-1, 2, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(tableLayerSuite7.AEGP_GetCompLayerByIndex(session->handleOf(&comp("Scene")), index, &layer),
                  PF_Err_INVALID_INDEX);
        EXPECT_EQ(tableMaskSuite5.AEGP_GetLayerMaskByIndex(card(), index, &mask), PF_Err_INVALID_INDEX);
        EXPECT_EQ(tableProjSuite6.AEGP_GetProjectByIndex(index, &openProject), PF_Err_INVALID_INDEX);
        EXPECT_EQ(tableKeyframeSuite4.AEGP_GetKeyframeTime(stream, index, AEGP_LTimeMode_CompTime, &time),
                  PF_Err_INVALID_INDEX);
        EXPECT_EQ(tableLayerSuite7.AEGP_ReorderLayer(card(), index) == 0, index == -1);  // to the end
    }
    EXPECT_EQ(tableStreamSuite4.AEGP_DisposeStream(stream), 0);
}

}  // namespace
}  // namespace kestrin_test
