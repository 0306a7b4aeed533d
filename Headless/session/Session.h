// One run of the host: an open project, the plug-in, and everything that a person does in between.

#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "AEGP_Host.h"
#include "model/Preferences.h"
#include "model/Project.h"
#include "render/World.h"
#include "script/Engine.h"
#include "session/Collection.h"
#include "session/CompPictures.h"
#include "suites/Handles.h"

namespace headless {

// What the host showed, or would have shown, to the person in front of it.
struct Message {
    enum class Kind { Alert, Report, Error };
    Kind kind = Kind::Error;
    std::string title;
    std::string text;
};

// Every call that came in.
struct CallRecord {
    std::uint64_t total = 0;                                   // through the gate: without suites come and gone
    std::map<std::string, std::uint64_t, std::less<>> counts;  // by function
    std::deque<std::string> last;                              // the newest, each with its answer unless 0
};

// The nth call from now on fails, as if the host could not do it.
struct Fault {
    std::uint64_t call = 0;  // counted from 1
    A_Err code = A_Err_GENERIC;
};

struct MenuEntry {
    AEGP_Command command = 0;
    std::string name;
    bool enabled = false;
};

// What the plug-in holds and has to give back.
struct HeldThings {
    int masks = 0, streams = 0, values = 0, outlines = 0, collections = 0, options = 0, receipts = 0,
        memory = 0;
    bool operator==(const HeldThings&) const = default;
};

struct SessionOptions {
    render::Depth depth = render::Depth::Bits8;
    std::filesystem::path preferencesFile;  // empty: the store lives as long as the session
    std::filesystem::path homeFolder;       // what scripts write to "~"; empty: they cannot
    std::uint32_t durationScale = 0;        // time scale of item durations alone; 0: the project's
};

// One session at a time in a process, on one thread: the suites' tables have no other way to find it.
class Session final : private script::ScriptHost {
 public:
    Session(std::unique_ptr<model::Project> project, ui::Answerer& answerer, SessionOptions options = {});
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    static Session& current();

    // Loads the library and calls its entry point. Throws std::runtime_error that says what is wrong with it.
    void loadPlugin(const std::filesystem::path& library);
    // The same with an entry point that is already there.
    A_Err startPlugin(AEGP_PluginEntryPoint entryPoint);

    // ---- What a person does ------------------------------------------------------------------------
    void openComp(model::Comp& comp);  // brings it to the front
    void select(model::Comp& comp, std::vector<model::SelectedThing> things);
    void selectInProjectPanel(std::vector<model::ItemId> items);  // and brings that panel to the front
    void holdKeys(bool shift, bool command);
    // Opens the menu: entries are off until the plug-in's hook enables them.
    std::vector<MenuEntry> openMenu();
    // One idle tick.
    A_Err tick();
    // Runs a command as if it had been chosen in the menu. A hook that fails leaves the project as it was.
    A_Err runCommand(AEGP_Command command);
    // The plug-in's own command; 0 when it has none.
    AEGP_Command pluginCommand() const;

    // Pictures of the project as it is now.
    CompPictures& pictures() { return pictures_; }

    // ---- What can be seen of it ----------------------------------------------------------------------
    const std::vector<Message>& messages() const { return messages_; }
    const CallRecord& calls() const { return calls_; }
    void clearCalls() { calls_ = {}; }
    HeldThings held() const;
    // One line for each thing that is still held, and each suite that is still acquired. A hook that fails
    // leaves what it held to the host; suites it releases.
    std::vector<std::string> stillOpen() const;
    int undoMismatches() const { return undoMismatches_; }
    const std::vector<std::string>& scriptsRun() const { return scriptsRun_; }
    const std::vector<int>& progressShown() const { return progressShown_; }
    bool progressOpen() const { return progressOpen_; }
    const std::vector<std::pair<std::string, std::string>>& executedFiles() const { return executedFiles_; }

    // ---- For tests -----------------------------------------------------------------------------------
    void failCall(const Fault& fault) { fault_ = Fault{calls_.total + fault.call, fault.code}; }
    void failNoCall() { fault_.reset(); }
    // A suite that this host does not have, by name and number.
    void withholdSuite(const std::string& name, std::int32_t number) { withheld_.emplace(name, number); }
    // Stands between the plug-in and its scripts: gives the answer, nothing for one that has no text, or throws
    // script::ScriptError. `run` lets the script run.
    std::function<std::optional<std::string>(const std::function<std::string()>& run)> answerScript;
    // Called after each frame that the plug-in has had rendered, with the percentage last shown.
    std::function<void(int)> onProgress;
    // Called whenever the plug-in is about to look at the keys.
    std::function<void()> beforeKeysAreRead;
    // Called with a name before the plug-in's code runs, and with null when it is back.
    std::function<void(const char* hook)> onHook;

    model::Project& project() { return *project_; }
    model::Preferences& preferences() override { return preferences_; }
    // What scripts have had saved goes to the file of the options, if there is one; until then it is kept here,
    // as the person may still cancel.
    void writePreferences();
    void savePreferences() override { saved_.push_back(preferences_); }

    // ---- For the suites ------------------------------------------------------------------------------
    // Records a call, `what` it is about included: 0, or the code that refuses it.
    A_Err recordCall(const char* name, const std::string& what = {}) noexcept;
    // Start of a gated call: 0, or the code that it must answer with at once.
    A_Err enterCall(const char* name) noexcept;
    // End of a gated call that could not be done: records it and returns the code.
    A_Err failedCall(const char* name, A_Err code, const std::string& text) noexcept;

    const SPBasicSuite* basicSuite() const;
    SPErr acquireSuite(const char* name, std::int32_t number, const void** suite);
    SPErr releaseSuite(const char* name, std::int32_t number);

    model::Item& item(AEGP_ItemH handle);
    model::Comp& comp(AEGP_CompH handle);
    model::Layer& layer(AEGP_LayerH handle);
    AEGP_ItemH handleOf(const model::Item* item);
    AEGP_CompH handleOf(const model::Comp* comp);
    AEGP_LayerH handleOf(const model::Layer* layer);
    void requireProject(AEGP_ProjectH handle);
    AEGP_ProjectH projectHandle();
    void requireBlob(AEGP_PersistentBlobH handle);
    AEGP_PersistentBlobH blobHandle();

    model::Item* activeItemNow();
    model::Layer* activeLayerNow();
    bool isSelectedInProject(const model::Item& item) const;
    // From the top of the stack, each layer followed by its selected masks.
    std::vector<model::SelectedThing> selectionInOrder(const model::Comp& comp) const;

    // Times. One scale for all; frames are those of the root's rate.
    std::uint32_t timeScale() const;
    A_Time timeOf(double frames) const;
    double framesOf(const A_Time& time) const;  // throws HostError on a scale of 0
    A_Time durationOf(double frames) const;     // in the scale that item durations have
    // Between a frame of a layer's composition, as the file counts, and the layer's own time in frames.
    static double layerFrames(const model::Layer& layer, double fileFrame);
    static double fileFrame(const model::Layer& layer, double layerFrames);
    // A time in one of the two modes as a frame of the layer's composition.
    double fileFrameOf(const model::Layer& layer, AEGP_LTimeMode mode, const A_Time& time) const;

    struct MaskRef {
        model::LayerId layer = 0;
        std::shared_ptr<model::Mask> mask;
    };
    // The layer that has the mask now, and its index there. Throws HostError when it has been deleted.
    std::pair<model::Layer&, std::size_t> ownerOf(const MaskRef& ref);
    struct StreamRef {
        model::LayerId layer = 0;
        AEGP_LayerStream which = 0;         // of a layer's stream
        std::shared_ptr<model::Mask> mask;  // of a mask's outline
    };
    struct RenderOptions {
        model::ItemId item = 0;
        A_Time time{}, timeStep{};
        A_short factorX = 1, factorY = 1;
    };
    struct Receipt {
        std::uintptr_t world = 0;
    };
    struct Memory {
        std::vector<std::uint8_t> bytes;
        int locks = 0;
    };
    struct Value {
        std::uintptr_t outline = 0;  // that hangs on it; 0 for none
    };

    HandleTable<MaskRef> masks{HandleKind::Mask};
    HandleTable<StreamRef> streams{HandleKind::Stream};
    HandleTable<model::MaskPath> outlines{HandleKind::Outline};
    HandleTable<Collection> collections{HandleKind::Collection};
    HandleTable<RenderOptions> options{HandleKind::RenderOptions};
    HandleTable<Receipt> receipts{HandleKind::Receipt};
    HandleTable<render::World> worlds{HandleKind::World};
    HandleTable<Memory> memory{HandleKind::Memory};
    HandleTable<Value> values{HandleKind::Value};
    int freedWhileLocked = 0;

    AEGP_MemHandle newMemory(const void* bytes, std::size_t size, const char* madeBy);
    render::World renderedWorld(const RenderOptions& options);

    void registerCommandHook(AEGP_Command command, AEGP_CommandHook hook, AEGP_CommandRefcon refcon);
    void registerMenuHook(AEGP_UpdateMenuHook hook, AEGP_UpdateMenuRefcon refcon);
    void registerIdleHook(AEGP_IdleHook hook, AEGP_IdleRefcon refcon);
    AEGP_Command newCommand();
    void insertMenuEntry(AEGP_Command command, const std::string& name, A_long place);
    MenuEntry& menuEntry(AEGP_Command command);
    A_Err offerCommand(AEGP_Command command);

    void beginUndoGroup(const std::string& name) { project_->history.begin(name); }
    void endUndoGroup();
    // Nothing where there is no answer, not even an empty one. Throws script::ScriptError.
    std::optional<std::string> runScript(const std::string& text);
    void addMessage(Message message) { messages_.push_back(std::move(message)); }

    std::uint64_t keys();
    void openProgress() { progressOpen_ = true; }
    void showProgress(int percent);
    void closeProgress() { progressOpen_ = false; }

 private:
    struct CommandHook {
        AEGP_Command command;
        AEGP_CommandHook hook;
        AEGP_CommandRefcon refcon;
    };

    // Calls into the plug-in. After the outermost call, undo groups are put in order; after one that failed,
    // the project is put back and what the plug-in still held is let go.
    void enterPlugin(const char* hook) const {
        if (onHook) onHook(hook);
    }
    A_Err callHook(const char* what, const std::function<A_Err()>& hook);
    void letGo();
    void requireRegistering() const;

    // script::ScriptHost
    int itemCount() override;
    script::ItemInfo itemAt(int index) override;
    script::ItemInfo item(script::ItemId id) override;
    std::optional<script::ItemId> activeItem() override;
    script::LayerId layerAt(script::ItemId comp, int index) override;
    std::vector<script::LayerId> selectedLayers(script::ItemId comp) override;
    script::LayerInfo layer(script::LayerId id) override;
    void setParent(script::LayerId child, std::optional<script::LayerId> parent) override;
    void reloadPreferences() override;
    void alert(const std::string& message, const std::string& title, bool errorIcon) override;
    ui::Answerer& answerer() override { return answerer_; }
    void executed(const std::string& path, const std::string& content) override;
    std::string homeFolder() override { return options_.homeFolder.string(); }

    std::unique_ptr<model::Project> project_;
    ui::Answerer& answerer_;
    SessionOptions options_;
    model::Preferences preferences_;
    std::vector<model::Preferences> saved_;  // not in the file yet
    std::thread::id mainThread_ = std::this_thread::get_id();

    model::ItemId frontItem_ = 0;
    bool projectPanelInFront_ = false;
    std::set<model::ItemId> selectedItems_;

    void* library_ = nullptr;
    bool registering_ = false;
    AEGP_GlobalRefcon globalRefcon_ = nullptr;
    std::vector<CommandHook> commandHooks_;
    std::vector<std::pair<AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon>> menuHooks_;
    std::vector<std::pair<AEGP_IdleHook, AEGP_IdleRefcon>> idleHooks_;
    AEGP_Command nextCommand_;
    std::vector<MenuEntry> menu_;
    int hookDepth_ = 0;
    int undoMismatches_ = 0;
    std::atomic<const char*> calledFromOtherThread_ = nullptr;

    std::map<std::pair<std::string, std::int32_t>, int> acquired_;
    std::set<std::pair<std::string, std::int32_t>> withheld_;
    CallRecord calls_;
    std::optional<Fault> fault_;
    std::vector<Message> messages_;
    std::vector<std::string> scriptsRun_;
    std::vector<std::pair<std::string, std::string>> executedFiles_;

    std::uint64_t keys_ = 0;
    bool progressOpen_ = false;
    std::vector<int> progressShown_;

    CompPictures pictures_;
    std::unique_ptr<script::Engine> engine_;
};

}  // namespace headless
