#include "session/Session.h"

#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <unordered_map>

#include "suites/Tables.h"

namespace headless {

namespace {

Session* currentSession = nullptr;

constexpr std::size_t callsRemembered = 2000;
constexpr double ticksPerFrame = 1000;
constexpr AEGP_PluginID pluginId = 0x4B53;
constexpr std::uint64_t shiftKey = 1ull << 17;
constexpr std::uint64_t commandKey = 1ull << 20;

std::string nameAndNumber(const char* suite, std::int32_t number) {
    return " " + std::string(suite) + " " + std::to_string(number);
}

// Command numbers differ from run to run, as the host's do, and are never 0 or 1.
AEGP_Command firstCommand() {
    return 1000 + static_cast<AEGP_Command>(std::random_device{}() % 8000);
}

}  // namespace

std::uint64_t handleNumber(HandleKind kind, std::uintptr_t handle) {
    const std::uint64_t bits = handle;
    if (bits == 0) {
        throw HostError{A_Err_PARAMETER, std::string("the ") + nameOf(kind) + " is null"};
    }
    if (bits >> 56 != handleMark >> 56 || (bits >> 48 & 0xFF) != static_cast<std::uint64_t>(kind)) {
        throw HostError{A_Err_PARAMETER, std::string("this is no ") + nameOf(kind) + " of this host"};
    }
    return bits & handleNumberMask;
}

Session& Session::current() {
    return *currentSession;
}

Session::Session(std::unique_ptr<model::Project> project, ui::Answerer& answerer, SessionOptions how)
    : project_(std::move(project)),
      answerer_(answerer),
      options_(std::move(how)),
      nextCommand_(firstCommand()),
      pictures_(*project_),
      engine_(new script::Engine(*this)) {
    if (!options_.preferencesFile.empty()) {
        preferences_ = model::Preferences::load(options_.preferencesFile);
    }
    // Scripts may write files and reach the network, as after a fresh installation's first question.
    constexpr const char* hostSection = "Main Pref Section";
    constexpr const char* scriptAccess = "Pref_SCRIPTING_FILE_NETWORK_SECURITY";
    if (!preferences_.has(hostSection, scriptAccess)) {
        preferences_.setLong(hostSection, scriptAccess, 1);
    }
    frontItem_ = project_->root().item->id;
    if (currentSession != nullptr) {
        throw std::logic_error("a session is open already");
    }
    currentSession = this;
}

Session::~Session() {
    currentSession = nullptr;
    if (library_ != nullptr) {
        enterPlugin("end");
        dlclose(library_);
        enterPlugin(nullptr);
    }
}

// ---- The plug-in ---------------------------------------------------------------------------------------

void Session::loadPlugin(const std::filesystem::path& library) {
    enterPlugin("start");
    library_ = dlopen(std::filesystem::absolute(library).c_str(), RTLD_NOW | RTLD_LOCAL);
    enterPlugin(nullptr);
    if (library_ == nullptr) {
        throw std::runtime_error("the plug-in cannot be loaded: " + std::string(dlerror()));
    }
    const auto entryPoint = reinterpret_cast<AEGP_PluginEntryPoint>(dlsym(library_, "EntryPointFunc"));
    if (entryPoint == nullptr) {
        throw std::runtime_error(library.string() + " is no plug-in: it has no EntryPointFunc");
    }
    if (const A_Err error = startPlugin(entryPoint)) {
        throw std::runtime_error("the plug-in " + library.string() + " failed to start (error " +
                                 std::to_string(error) + ")");
    }
}

A_Err Session::startPlugin(AEGP_PluginEntryPoint entryPoint) {
    registering_ = true;
    const A_Err error = callHook("EntryPointFunc", [&] {
        return entryPoint(const_cast<SPBasicSuite*>(basicSuite()), 1, 0, pluginId, &globalRefcon_);
    });
    registering_ = false;
    return error;
}

A_Err Session::callHook(const char* what, const std::function<A_Err()>& hook) {
    const std::size_t stepsBefore = project_->history.done().size();
    if (hookDepth_++ == 0) {
        enterPlugin(what);
    }
    A_Err error = A_Err_NONE;
    try {
        error = hook();
    } catch (...) {
        error = A_Err_GENERIC;
        addMessage({Message::Kind::Error, what, "the plug-in let an exception out"});
    }
    if (--hookDepth_ > 0) {
        return error;
    }
    enterPlugin(nullptr);
    if (const char* name = calledFromOtherThread_.exchange(nullptr)) {
        addMessage(
            {Message::Kind::Error, name, "called from another thread than the main one; it was refused"});
    }
    model::History& history = project_->history;
    if (history.depth() > 0) {
        ++undoMismatches_;
        addMessage({Message::Kind::Error, what, "the plug-in left an undo group open; it was closed"});
    }
    if (error != A_Err_NONE) {
        history.rollBackTo(stepsBefore);
        letGo();
        addMessage(
            {Message::Kind::Error, what,
             "the plug-in reported error " + std::to_string(error) + "; the project is as it was before"});
    }
    while (history.end()) {
    }
    return error;
}

void Session::letGo() {
    masks.clear();
    streams.clear();
    outlines.clear();
    collections.clear();
    options.clear();
    receipts.clear();
    worlds.clear();
    memory.clear();
    values.clear();
}

void Session::requireRegistering() const {
    if (!registering_) {
        throw HostError{A_Err_GENERIC, "hooks can be registered only while the plug-in starts"};
    }
}

void Session::registerCommandHook(AEGP_Command command, AEGP_CommandHook hook, AEGP_CommandRefcon refcon) {
    requireRegistering();
    commandHooks_.push_back({command, hook, refcon});
}

void Session::registerMenuHook(AEGP_UpdateMenuHook hook, AEGP_UpdateMenuRefcon refcon) {
    requireRegistering();
    menuHooks_.emplace_back(hook, refcon);
}

void Session::registerIdleHook(AEGP_IdleHook hook, AEGP_IdleRefcon refcon) {
    requireRegistering();
    idleHooks_.emplace_back(hook, refcon);
}

AEGP_Command Session::newCommand() {
    return nextCommand_++;
}

void Session::insertMenuEntry(AEGP_Command command, const std::string& name, A_long place) {
    const auto at = place == AEGP_MENU_INSERT_AT_TOP ? menu_.begin() : menu_.end();
    menu_.insert(at, {command, name, false});
}

MenuEntry& Session::menuEntry(AEGP_Command command) {
    const auto found = std::find_if(menu_.begin(), menu_.end(), [&](const MenuEntry& entry) {
        return entry.command == command && command != 0;
    });
    if (found == menu_.end()) {
        throw HostError{A_Err_PARAMETER, "there is no menu entry for the command " + std::to_string(command)};
    }
    return *found;
}

AEGP_Command Session::pluginCommand() const {
    const auto found =
        std::find_if(menu_.begin(), menu_.end(), [](const MenuEntry& entry) { return entry.command != 0; });
    return found == menu_.end() ? 0 : found->command;
}

// ---- What a person does ------------------------------------------------------------------------------

void Session::openComp(model::Comp& comp) {
    frontItem_ = comp.item->id;
    projectPanelInFront_ = false;
}

void Session::select(model::Comp& comp, std::vector<model::SelectedThing> things) {
    comp.selection = std::move(things);
}

void Session::selectInProjectPanel(std::vector<model::ItemId> items) {
    projectPanelInFront_ = true;
    selectedItems_ = {items.begin(), items.end()};
}

void Session::holdKeys(bool shift, bool command) {
    keys_ = (shift ? shiftKey : 0) | (command ? commandKey : 0);
}

std::vector<MenuEntry> Session::openMenu() {
    for (MenuEntry& entry : menu_) {
        entry.enabled = false;
    }
    for (const auto& registered : menuHooks_) {
        callHook("UpdateMenuHook", [&] { return registered.first(globalRefcon_, registered.second, {}); });
    }
    return menu_;
}

A_Err Session::tick() {
    A_Err result = A_Err_NONE;
    for (const auto& registered : idleHooks_) {
        A_long sleep = 60;
        const A_Err error =
            callHook("IdleHook", [&] { return registered.first(globalRefcon_, registered.second, &sleep); });
        result = result != A_Err_NONE ? result : error;
    }
    return result;
}

A_Err Session::runCommand(AEGP_Command command) {
    return callHook("CommandHook", [&] { return offerCommand(command); });
}

A_Err Session::offerCommand(AEGP_Command command) {
    A_Boolean handled = 0;
    for (const CommandHook& hook : commandHooks_) {
        if (hook.command != AEGP_Command_ALL && hook.command != command) {
            continue;
        }
        A_Boolean handledHere = 0;
        const A_Err error =
            hook.hook(globalRefcon_, hook.refcon, command, AEGP_HP_BeforeAE, handled, &handledHere);
        handled = handled != 0 || handledHere != 0 ? 1 : 0;
        if (error != A_Err_NONE) {
            return error;
        }
    }
    if (handled == 0) {
        addMessage(
            {Message::Kind::Error, "AEGP_DoCommand", "nothing handles the command " + std::to_string(command)});
        return A_Err_GENERIC;
    }
    return A_Err_NONE;
}

// ---- Selection ------------------------------------------------------------------------------------------

model::Item* Session::activeItemNow() {
    if (projectPanelInFront_) {
        return selectedItems_.size() == 1 ? project_->item(*selectedItems_.begin()) : nullptr;
    }
    return project_->item(frontItem_);
}

model::Layer* Session::activeLayerNow() {
    const model::Item* item = activeItemNow();
    if (item == nullptr || !item->comp) {
        return nullptr;
    }
    std::set<model::LayerId> layers;
    for (const model::SelectedThing& thing : item->comp->selection) {
        layers.insert(thing.layer);
    }
    return layers.size() == 1 ? project_->layer(*layers.begin()) : nullptr;
}

std::vector<model::SelectedThing> Session::selectionInOrder(const model::Comp& comp) const {
    std::unordered_map<model::LayerId, std::size_t> places;
    for (std::size_t i = 0; i < comp.layers.size(); ++i) {
        places.emplace(comp.layers[i]->id, i);
    }
    std::vector<model::SelectedThing> things = comp.selection;
    std::sort(things.begin(), things.end(), [&](const auto& a, const auto& b) {
        return std::pair(places[a.layer], a.mask) < std::pair(places[b.layer], b.mask);
    });
    return things;
}

bool Session::isSelectedInProject(const model::Item& item) const {
    return projectPanelInFront_ && selectedItems_.contains(item.id);
}

// ---- The gate -------------------------------------------------------------------------------------------

A_Err Session::recordCall(const char* name, const std::string& what) noexcept {
    if (std::this_thread::get_id() != mainThread_) {
        calledFromOtherThread_ = name;  // touching anything else here would be a race
        return A_Err_WRONG_THREAD;
    }
    ++calls_.counts.try_emplace(name).first->second;
    calls_.last.emplace_back(name + what);
    if (calls_.last.size() > callsRemembered) {
        calls_.last.pop_front();
    }
    return A_Err_NONE;
}

A_Err Session::enterCall(const char* name) noexcept {
    if (const A_Err refused = recordCall(name)) {
        return refused;
    }
    ++calls_.total;
    if (fault_ && calls_.total == fault_->call) {
        return failedCall(name, fault_->code, "this call was made to fail");
    }
    return A_Err_NONE;
}

A_Err Session::failedCall(const char* name, A_Err code, const std::string& text) noexcept {
    calls_.last.back() += " -> " + std::to_string(code) + " (" + text + ")";
    addMessage({Message::Kind::Error, name, text});
    return code;
}

SPErr Session::acquireSuite(const char* name, std::int32_t number, const void** suite) {
    if (const A_Err refused = recordCall("AcquireSuite", nameAndNumber(name, number))) {
        return refused;
    }
    *suite = nullptr;
    if (withheld_.contains({name, number})) {
        return A_Err_MISSING_SUITE;
    }
    *suite = findSuite(name, number);
    if (*suite == nullptr) {
        return A_Err_MISSING_SUITE;
    }
    ++acquired_[{name, number}];
    return A_Err_NONE;
}

SPErr Session::releaseSuite(const char* name, std::int32_t number) {
    if (const A_Err refused = recordCall("ReleaseSuite", nameAndNumber(name, number))) {
        return refused;
    }
    const auto found = acquired_.find({name, number});
    if (found == acquired_.end() || found->second == 0) {
        return failedCall("ReleaseSuite", A_Err_PARAMETER,
                          "released more often than acquired:" + nameAndNumber(name, number));
    }
    --found->second;
    return A_Err_NONE;
}

HeldThings Session::held() const {
    return {masks.live(),       streams.live(), values.live(),   outlines.live(),
            collections.live(), options.live(), receipts.live(), memory.live()};
}

std::vector<std::string> Session::stillOpen() const {
    std::vector<std::string> lines;
    masks.describe(lines);
    streams.describe(lines);
    values.describe(lines);
    collections.describe(lines);
    options.describe(lines);
    receipts.describe(lines);
    memory.describe(lines);
    for (const auto& [suite, count] : acquired_) {
        if (count > 0) {
            lines.push_back("suite" + nameAndNumber(suite.first.c_str(), suite.second) + ", acquired " +
                            std::to_string(count) + " times too often");
        }
    }
    return lines;
}

// ---- Handles of what belongs to the project --------------------------------------------------------

model::Item& Session::item(AEGP_ItemH handle) {
    const auto number = handleNumber(HandleKind::Item, reinterpret_cast<std::uintptr_t>(handle));
    model::Item* item = project_->item(static_cast<model::ItemId>(number));
    if (item == nullptr) {
        throw HostError{A_Err_PARAMETER, "this item has been deleted"};
    }
    return *item;
}

model::Comp& Session::comp(AEGP_CompH handle) {
    const auto number = handleNumber(HandleKind::Comp, reinterpret_cast<std::uintptr_t>(handle));
    model::Item* item = project_->item(static_cast<model::ItemId>(number));
    if (item == nullptr || !item->comp) {
        throw HostError{A_Err_PARAMETER, "this composition has been deleted"};
    }
    return *item->comp;
}

model::Layer& Session::layer(AEGP_LayerH handle) {
    const auto number = handleNumber(HandleKind::Layer, reinterpret_cast<std::uintptr_t>(handle));
    model::Layer* layer = project_->layer(static_cast<model::LayerId>(number));
    if (layer == nullptr) {
        throw HostError{A_Err_PARAMETER, "this layer has been deleted"};
    }
    return *layer;
}

AEGP_ItemH Session::handleOf(const model::Item* item) {
    return item == nullptr ? nullptr
                           : reinterpret_cast<AEGP_ItemH>(
                                 makeHandle(HandleKind::Item, static_cast<std::uint64_t>(item->id)));
}

AEGP_CompH Session::handleOf(const model::Comp* comp) {
    return comp == nullptr ? nullptr
                           : reinterpret_cast<AEGP_CompH>(
                                 makeHandle(HandleKind::Comp, static_cast<std::uint64_t>(comp->item->id)));
}

AEGP_LayerH Session::handleOf(const model::Layer* layer) {
    return layer == nullptr ? nullptr : reinterpret_cast<AEGP_LayerH>(makeHandle(HandleKind::Layer, layer->id));
}

void Session::requireProject(AEGP_ProjectH handle) {
    handleNumber(HandleKind::Project, reinterpret_cast<std::uintptr_t>(handle));
}

AEGP_ProjectH Session::projectHandle() {
    return reinterpret_cast<AEGP_ProjectH>(makeHandle(HandleKind::Project, 1));
}

void Session::requireBlob(AEGP_PersistentBlobH handle) {
    handleNumber(HandleKind::Blob, reinterpret_cast<std::uintptr_t>(handle));
}

AEGP_PersistentBlobH Session::blobHandle() {
    return reinterpret_cast<AEGP_PersistentBlobH>(makeHandle(HandleKind::Blob, 1));
}

std::pair<model::Layer&, std::size_t> Session::ownerOf(const MaskRef& ref) {
    if (model::Layer* layer = project_->layer(ref.layer)) {
        // Deleted masks only move later ones down.
        for (std::size_t i = std::min(ref.mask->fileIndex + 1, layer->masks.size()); i-- > 0;) {
            if (layer->masks[i] == ref.mask) {
                return {*layer, i};
            }
        }
    }
    throw HostError{A_Err_PARAMETER, "this mask has been deleted"};
}

AEGP_MemHandle Session::newMemory(const void* bytes, std::size_t size, const char* madeBy) {
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    return reinterpret_cast<AEGP_MemHandle>(memory.add({{first, first + size}, 0}, madeBy));
}

// ---- Times --------------------------------------------------------------------------------------------

std::uint32_t Session::timeScale() const {
    return static_cast<std::uint32_t>(std::lround(project_->frameRate() * ticksPerFrame));
}

A_Time Session::timeOf(double frames) const {
    constexpr double largest = 2147483647;
    return {static_cast<A_long>(std::lround(std::clamp(frames * ticksPerFrame, -largest, largest))),
            timeScale()};
}

double Session::framesOf(const A_Time& time) const {
    if (time.scale == 0) {
        throw HostError{A_Err_PARAMETER, "a time with the scale 0"};
    }
    if (time.scale == timeScale()) {
        return time.value / ticksPerFrame;
    }
    return static_cast<double>(time.value) / time.scale * project_->frameRate();
}

A_Time Session::durationOf(double frames) const {
    const A_Time time = timeOf(frames);
    if (options_.durationScale == 0) {
        return time;
    }
    return {
        static_cast<A_long>(std::lround(static_cast<double>(time.value) / time.scale * options_.durationScale)),
        options_.durationScale};
}

double Session::fileFrameOf(const model::Layer& layer, AEGP_LTimeMode mode, const A_Time& time) const {
    switch (mode) {
        case AEGP_LTimeMode_LayerTime:
            return fileFrame(layer, framesOf(time));
        case AEGP_LTimeMode_CompTime:
            return framesOf(time) + layer.comp->firstFrame;
        default:
            throw HostError{A_Err_PARAMETER, "there is no such time mode"};
    }
}

double Session::layerFrames(const model::Layer& layer, double fileFrame) {
    const double sourceStart =
        layer.source != nullptr && layer.source->comp ? layer.source->comp->firstFrame : 0;
    return (fileFrame - layer.startFrame) / layer.stretch - sourceStart;
}

double Session::fileFrame(const model::Layer& layer, double layerFrames) {
    const double sourceStart =
        layer.source != nullptr && layer.source->comp ? layer.source->comp->firstFrame : 0;
    return (layerFrames + sourceStart) * layer.stretch + layer.startFrame;
}

// ---- Rendering ----------------------------------------------------------------------------------------

render::World Session::renderedWorld(const RenderOptions& wanted) {
    const model::Item* item = project_->item(wanted.item);
    if (item == nullptr) {
        throw HostError{A_Err_PARAMETER, "the item to render has been deleted"};
    }
    if (!item->comp) {
        throw HostError{A_Err_GENERIC,
                        "\"" + item->name + "\" is no composition, and only those can be rendered"};
    }
    return pictures_.world(*item->comp, framesOf(wanted.time), wanted.factorX, wanted.factorY, options_.depth);
}

std::uint64_t Session::keys() {
    if (beforeKeysAreRead) {
        beforeKeysAreRead();
    }
    return keys_;
}

void Session::showProgress(int percent) {
    progressShown_.push_back(percent);
    if (onProgress) {
        onProgress(percent);
    }
}

void Session::endUndoGroup() {
    if (!project_->history.end()) {
        ++undoMismatches_;
        calls_.last.back() += " (no undo group was open)";
    }
}

}  // namespace headless
