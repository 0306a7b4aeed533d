// What can go wrong does: each host call in turn, each suite, each script. The project stays as it was opened.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "AEGP_Suites.h"
#include "Crop.h"
#include "suites/Tables.h"
#include "support/Story.h"

namespace kestrin_test {
namespace {

constexpr A_Err code = 77;
constexpr const char* answerLeft = "memory handle, made by AEGP_ExecuteScript";

struct Fails;

// Something that a person does, and what is left open after it by intent.
struct Path {
    const char* name;
    std::uint64_t leastCalls;
    std::function<void(Fails&)> prepare;
    std::function<A_Err(Fails&)> run;
    std::vector<std::string> left = {};
    bool menuHook = false;  // runs it, and before anything else
};
void PrintTo(const Path& path, std::ostream* out) {
    *out << path.name;
}

struct Fails : Story {
    // A project that takes the standard crop through every branch that asks no question twice.
    void openRich(const char* resolution = "Accurate", const char* preCompose = "Yes") {
        answers.answer("Low Resolution", resolution);
        answers.answer("3D Layers", preCompose);
        answers.answer("Choose Mask", "OK");
        answers.answer("Kestrin Preferences", "Save");
        open(kestrin_test::project("Scene", {400, 300})
                 .with(precomp("Card", {400, 300})
                           .with(solid("Red", {100, 50}).at({150, 125}))
                           .masked({{10, 10}, {300, 10}, {300, 250}})
                           .masked({{0, {{1, 1}, {400, 1}, {400, 300}}}, {9, {{2, 2}, {400, 1}, {400, 300}}}}))
                 .with(useOf("Card", {400, 300}).anchor({{0, {1, 2, 0}}, {9, {3, 4, 0}}}))
                 .with(precomp("Deep", {400, 300}).with(solid("d", {30, 30}).at({7, 7}).threeD()).remapped(0.2))
                 .with(precomp("Empty", {400, 300}).with(solid("e", {30, 30}).shown(20, 30)))
                 .with(solid("not a precomp", {10, 10}))
                 .lasting(0, 4));
        comp("Card").downsampleX = comp("Card").downsampleY = 2;
        comp("Card").pixelAspect = {10, 11};
        select({"Card", "Deep", "Empty", "not a precomp"});
        pad(3);
        preferences().setBool(section, "IncludeMasks", true);
        preferences().setBool(section, "DeleteMask", true);
    }
    // As little as takes each command to its end: nothing is there from frame 3 on.
    void openBrief(const std::vector<std::string>& selected, double frame, int contentAt = 0) {
        answers.answer("Kestrin Preferences", "Save");
        open(kestrin_test::project("Scene", {40, 30})
                 .with(precomp("Card", {40, 30})
                           .with(solid("s", {20, 10}).at({static_cast<double>(contentAt), 0}))
                           .masked({{1, 1}, {30, 1}, {30, 25}})
                           .shown(0, 3))
                 .with(solid("not a precomp", {10, 10}).shown(0, 3))
                 .lasting(0, 4));
        moveTo(frame);
        select(selected);
    }
    void openPanel(const std::vector<std::string>& selected, int request, bool withCommand = true) {
        openBrief(selected, 0);
        preferences().setLong(section, "Panel_Run", request);
        preferences().setLong(section, "Menu_Cmd", withCommand ? session->pluginCommand() : 0);
    }
    void expectUndoAndRedo() {
        const std::string result = project().write();
        while (project().history.undo()) {
        }
        EXPECT_EQ(project().write(), opened);
        while (project().history.redo()) {
        }
        EXPECT_EQ(project().write(), result);
    }
    // Modes follow the keys that are held while the menu is open; the duration and the mask crop take one
    // layer.
    void holdFor(bool shift, bool command) {
        if (command) {
            select({"Card"});
        }
        choose(shift, command);
    }
    void choose(bool shift, bool command) {
        session->openMenu();
        session->holdKeys(shift, command);
        ASSERT_EQ(session->tick(), 0);
        session->holdKeys(false, false);
    }
    A_Err menu() {
        constexpr std::string_view reported = "the plug-in reported error ";
        const auto before = session->messages().size();
        session->openMenu();
        const std::string last = session->messages().size() > before ? session->messages().back().text : "";
        return last.starts_with(reported) ? std::stoi(last.substr(reported.size())) : 0;
    }

    // After the call that failed no other is made, but those that are made whatever happened.
    void expectSilenceAfter(std::size_t failure, bool inMenuHook) {
        // No calls of the host's: the duration crop's panel opens and shows the progress, and its keys are
        // read.
        const std::set<std::string> ofTheSystem = {"AcquireSuite Kestrin Platform Suite 1", "OpenProgress",
                                                   "GetModifierKeys", "SetProgress", "CloseProgress"};
        const auto& calls = session->calls().last;
        const auto failed = calls.begin() + static_cast<std::ptrdiff_t>(failure);
        std::vector<std::string> later;
        std::copy_if(failed + 1, calls.end(), std::back_inserter(later), [&](const std::string& call) {
            return !call.starts_with("ReleaseSuite") && !ofTheSystem.contains(call);
        });
        const auto made = [&](const char* call) {
            return std::find(later.begin(), later.end(), call) != later.end();
        };
        const auto before = [&](const char* call) { return std::find(calls.begin(), failed, call) != failed; };
        std::vector<std::string> expected;
        if (inMenuHook) {
            // The entry is enabled or disabled, whatever happened.
            if (!later.empty()) {
                expected = {"AcquireSuite AEGP Command Suite 1",
                            made("AEGP_EnableCommand") ? "AEGP_EnableCommand" : "AEGP_DisableCommand"};
            }
        } else if (made("AEGP_GetNewLayerStream")) {
            // The null is moved, once it is there.
            EXPECT_TRUE(before("AEGP_CreateNullInComp"));
            expected = {"AcquireSuite AEGP Stream Suite 9", "AEGP_GetNewLayerStream",
                        "AEGP_GetNewStreamValue",           "AEGP_SetStreamValue",
                        "AEGP_DisposeStreamValue",          "AEGP_DisposeStream"};
        } else if (later.size() == 2 && later[1].starts_with("AEGP_GetNewLayerStream ->")) {
            // And tried where there is none.
            expected = {"AcquireSuite AEGP Stream Suite 9", later[1]};
        }
        EXPECT_EQ(later, expected) << "after " << *failed;
    }
    // The first call in the record that failed.
    std::size_t failure() {
        const auto& calls = session->calls().last;
        const auto found = std::find_if(calls.begin(), calls.end(), [](const std::string& line) {
            return line.find(" -> ") != std::string::npos;
        });
        EXPECT_NE(found, calls.end());
        return static_cast<std::size_t>(found - calls.begin());
    }
    std::uint64_t timesCalled(const char* name) {
        const auto& counts = session->calls().counts;
        const auto found = counts.find(name);
        return found == counts.end() ? 0 : found->second;
    }

    // ---- What is taken again and again

    static std::vector<Path> paths() {
        const auto choosing = [](bool shift, bool command) {
            return [=](Fails& story) { story.openRich(), story.holdFor(shift, command); };
        };
        const auto storing = [](int resolution, int threeD) {
            return [=](Fails& story) {
                story.openRich();
                story.preferences().setLong(section, "Resolution", resolution);
                story.preferences().setLong(section, "ThreeD", threeD);
            };
        };
        const auto panel = [](const std::vector<std::string>& selected, int request, bool withCommand = true) {
            return [=](Fails& story) { story.openPanel(selected, request, withCommand); };
        };
        const auto menuOf = [](const std::vector<std::string>& selected) {
            return [=](Fails& story) { story.openRich(), story.select(selected); };
        };
        const auto command = [](Fails& story) { return story.run(); };
        const auto tick = [](Fails& story) { return story.session->tick(); };
        const auto menu = [](Fails& story) { return story.menu(); };
        const std::vector<std::string> answer = {answerLeft};
        return {
            {"Standard", 300, [](Fails& story) { story.openRich(); }, command, answer},
            {"StandardFastAndFlat", 250, [](Fails& story) { story.openRich("Fast", "No"); }, command, answer},
            {"StandardWithStoredAnswers", 300, storing(1, 1), command},
            {"StandardExpanded", 300,
             [=](Fails& story) {
                 storing(2, 2)(story);
                 story.select({"Card"});
                 story.preferences().setBool(section, "Expand", true);
                 story.preferences().setFloat(section, "ExpandAmount", 12);
             },
             command},
            {"WholeComposition", 60, [](Fails& story) { story.openBrief({}, 0); }, command},
            {"EmptyComposition", 15, [](Fails& story) { story.openBrief({}, 3); }, command},
            {"EmptyLayer", 25, [](Fails& story) { story.openBrief({"Card"}, 0, 9000); }, command},
            {"NoLayerAtTheTime", 10, [](Fails& story) { story.openBrief({"Card"}, 3); }, command},
            {"ProjectPanel", 150,
             [=](Fails& story) {
                 storing(1, 1)(story);
                 story.session->selectInProjectPanel(
                     {story.comp("Card").item->id, story.comp("Deep").item->id});
             },
             command},
            {"Duration", 150, choosing(false, true), command, answer},
            {"DurationOfAComposition", 80,
             [](Fails& story) {
                 story.openBrief({}, 0);
                 story.choose(false, true);
             },
             command},
            {"DurationCancelled",
             20,
             [=](Fails& story) {
                 choosing(false, true)(story);
                 story.session->onProgress = [&](int) { story.session->holdKeys(true, true); };
             },
             [](Fails& story) {
                 const A_Err error = story.run();
                 story.session->holdKeys(false, false);
                 return error;
             },
             {"render options, made by AEGP_NewFromItem", answerLeft}},
            {"DurationOfNothing",
             50,
             [](Fails& story) {
                 story.openBrief({"Card"}, 0, 9000);
                 story.choose(false, true);
             },
             command,
             {"render options, made by AEGP_NewFromItem"}},
            {"Mask", 100, choosing(true, true), command},
            {"MaskCancelled",
             10,
             [=](Fails& story) {
                 choosing(true, true)(story);
                 story.answers.answer("Choose Mask", "Cancel");
             },
             command,
             {"collection, made by AEGP_GetNewCollectionFromCompSelection", answerLeft}},
            {"OnlyMask", 60,
             [](Fails& story) {
                 story.openBrief({"Card"}, 0);
                 story.choose(true, true);
             },
             command},
            {"SelectedMask", 100,
             [](Fails& story) {
                 story.openRich();
                 story.choose(true, true);
                 story.selectMask("Card", 1);
             },
             command},
            {"Preferences", 2, choosing(true, false), command},
            {"MenuOfOneLayer", 9, menuOf({"Card"}), menu, {}, true},
            {"MenuOfLayers", 15, menuOf({"Card", "Deep", "not a precomp"}), menu, {}, true},
            {"MenuOfAComposition", 6, menuOf({}), menu, {}, true},
            {"MenuOfTheProjectPanel",
             6,
             [](Fails& story) {
                 story.openRich();
                 story.session->selectInProjectPanel(
                     {story.comp("Card").item->id, story.comp("Deep").item->id});
             },
             menu,
             {},
             true},
            {"Keys", 5,
             [](Fails& story) {
                 story.openRich();
                 story.session->holdKeys(true, false);
             },
             tick},
            {"PanelStandard", 80, panel({"Card"}, 1), tick, {}, true},
            {"PanelDuration", 80, panel({"Card"}, 2), tick, {}, true},
            {"PanelMask", 80, panel({"Card"}, 3), tick, {}, true},
            {"PanelPreferences", 10, panel({"Card"}, 4), tick, {}, true},
            {"PanelOfTheWrongSelection", 10, panel({"not a precomp"}, 1), tick, {}, true},
            {"PanelWithoutACommand", 6, panel({"Card"}, 1, false), tick, {}, true},
        };
    }
};

// Takes each path again and again, with its 1st, 2nd, 3rd host call failing, until it runs untouched.
class EachCallOf : public Fails, public testing::WithParamInterface<Path> {
 protected:
    // A suite is acquired for the call that follows: nothing waits for one that it may not need.
    void expectSuitesAcquiredOnFirstUse() {
        const auto& calls = session->calls().last;
        for (std::size_t i = 0; i + 1 < calls.size(); ++i) {
            EXPECT_FALSE(calls[i].starts_with("AcquireSuite") &&
                         calls[i + 1].find("Suite ") != std::string::npos)
                << calls[i] << " before " << calls[i + 1];
        }
    }
    // What is asked whether or not it can be answered: whether a layer is a precomp, the move of the null, the
    // menu entry's state, and the panel and the keys, which are the system's.
    void expectMinor(std::size_t failure) {
        const auto& calls = session->calls().last;
        const std::string& line = calls[failure];
        const bool once = line.starts_with("AEGP_GetLayer") || line.starts_with("AEGP_GetItemType") ||
                          line.find("Stream") != std::string::npos ||
                          line.find("ableCommand") != std::string::npos;
        if (once) {
            EXPECT_TRUE(calls[failure + 1].starts_with("ReleaseSuite"))
                << calls[failure + 1] << " after " << line;
        } else {
            EXPECT_TRUE(line.find("Progress") != std::string::npos || line.starts_with("GetModifierKeys"))
                << line;
        }
    }
};

TEST_P(EachCallOf, FailsTheCommandAndLeavesTheProject) {
    for (std::uint64_t call = 1; !HasFailure(); ++call) {
        GetParam().prepare(*this);
        session->clearCalls();
        session->failCall({call, code});
        const A_Err error = GetParam().run(*this);
        SCOPED_TRACE("call " + std::to_string(call));
        expectSuitesAcquiredOnFirstUse();
        EXPECT_EQ(project().history.depth(), 0);
        EXPECT_TRUE(!session->progressOpen() || timesCalled("CloseProgress") == 1);  // that may be what failed
        if (session->calls().total < call) {
            EXPECT_EQ(error, 0);
            EXPECT_GT(call, GetParam().leastCalls);
            EXPECT_EQ(session->stillOpen(), GetParam().left);
            expectUndoAndRedo();
            break;
        }
        if (error == 0) {
            expectMinor(failure());
            for (const std::string& line : session->stillOpen()) {
                EXPECT_TRUE(line.starts_with("stream") ||
                            std::count(GetParam().left.begin(), GetParam().left.end(), line) > 0)
                    << line;
            }
            expectUndoAndRedo();
            continue;
        }
        EXPECT_EQ(error, code);
        EXPECT_EQ(project().write(), opened);
        EXPECT_EQ(session->stillOpen(), std::vector<std::string>());
        const bool inMenuHook = GetParam().menuHook && timesCalled("AEGP_GetActiveItem") == 1 &&
                                timesCalled("AEGP_DoCommand") + timesCalled("AEGP_ExecuteScript") == 0;
        expectSilenceAfter(failure(), inMenuHook);
    }
}

INSTANTIATE_TEST_SUITE_P(, EachCallOf, testing::ValuesIn(Fails::paths()),
                         [](const auto& path) { return path.param.name; });

class EachSuiteOf : public Fails, public testing::WithParamInterface<Path> {};

TEST_P(EachSuiteOf, FailsTheCommandWhereItIsNeeded) {
#define KESTRIN_SUITE(label, name, number) {name, number},
    const std::vector<std::pair<const char*, int>> suites = {AEGP_FOR_EACH_SUITE(KESTRIN_SUITE)};
#undef KESTRIN_SUITE
    int needed = 0;
    for (const auto& [name, number] : suites) {
        SCOPED_TRACE(name + (" " + std::to_string(number)));
        GetParam().prepare(*this);
        session->withholdSuite(name, number);
        session->clearCalls();
        const A_Err error = GetParam().run(*this);
        for (const std::string& line : session->stillOpen()) {
            EXPECT_FALSE(line.starts_with("suite")) << line;
        }
        if (error != 0) {
            ++needed;
            EXPECT_EQ(error, 516);
            EXPECT_EQ(project().write(), opened);
            const auto& calls = session->calls().last;
            const auto refused = std::find(calls.rbegin(), calls.rend(),
                                           "AcquireSuite " + std::string(name) + " " + std::to_string(number));
            ASSERT_NE(refused, calls.rend());
            expectSilenceAfter(static_cast<std::size_t>(calls.rend() - refused) - 1, false);
        }
    }
    EXPECT_GE(needed, 2);
}

INSTANTIATE_TEST_SUITE_P(, EachSuiteOf, testing::ValuesIn(Fails::paths()),
                         [](const auto& path) { return path.param.name; });

// The standard crop forgets the answers when its last layer is done with, whatever came of it; the duration
// crop when it has cropped.
TEST_F(Fails, ADurationCropThatFailedKeepsTheAnswer) {
    for (const bool duration : {false, true}) {
        answers = {};
        openRich();
        select({"Card"});
        holdFor(false, duration);
        session->answerScript = [&](const auto& script) {
            const std::string text = script();
            session->failCall({3, code});  // locked and unlocked, then used
            return text;
        };
        EXPECT_EQ(run(), code);
        session->answerScript = nullptr;
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(answers.shown["Low Resolution"], duration ? 1 : 2);
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(answers.shown["Low Resolution"], duration ? 2 : 3);
    }
}

TEST_F(Fails, ADurationCropThatFailedRunsOutAndCanBeCancelled) {
    for (const bool cancelled : {false, true}) {
        openBrief({"Card"}, 0);
        choose(false, true);
        session->clearCalls();
        session->onProgress = [&](int) {
            session->holdKeys(cancelled, cancelled);
            if (timesCalled("SetProgress") == 1) {
                session->failCall({1, code});
            }
        };
        EXPECT_EQ(run(), code);
        session->holdKeys(false, false);
        EXPECT_EQ(timesCalled("AEGP_RenderAndCheckoutFrame"), 1u);
        EXPECT_EQ(timesCalled("GetModifierKeys"), cancelled ? 2u : 3u);
        EXPECT_EQ(session->progressShown().size(), cancelled ? 1u : 3u);
        EXPECT_FALSE(session->progressOpen());
    }
}

TEST_F(Fails, ATimeStepOfNothingIsNoCropOfTheFirstFrame) {
    static AEGP_RenderOptionsSuite3 standingStill;
    static A_long step;
    standingStill = tableRenderOptionsSuite3;
    standingStill.AEGP_GetTimeStep = [](AEGP_RenderOptionsH, A_Time* time) -> A_Err {
        *time = {step, Session::current().timeScale()};
        return 0;
    };
    for (const A_long value : {0, -1000}) {
        step = value;
        openBrief({"Card"}, 0);
        session->clearCalls();
        SPBasicSuite basic = *session->basicSuite();
        basic.AcquireSuite = [](const char* name, std::int32_t number, const void** suite) {
            const SPErr error = Session::current().basicSuite()->AcquireSuite(name, number, suite);
            *suite = *suite == &tableRenderOptionsSuite3 ? &standingStill : *suite;
            return error;
        };
        EXPECT_EQ(crop::cropDuration(&basic, 1), A_Err_GENERIC);
        EXPECT_EQ(project().write(), opened);
        EXPECT_EQ(timesCalled("OpenProgress"), 1u);
        EXPECT_FALSE(session->progressOpen());
        EXPECT_EQ(timesCalled("AEGP_EndUndoGroup"), 0u);
    }
}

// What a script gives instead of what it is asked for. Without a text there is no answer at all.
struct WrongAnswer {
    const char* name;
    std::optional<std::string> text;
    bool fails = false;
};

class WrongScripts : public Fails, public testing::WithParamInterface<WrongAnswer> {
 protected:
    struct Command {
        const char* name;
        std::function<void()> prepare;
        bool panel = false;
    };

    std::vector<Command> commands() {
        const auto holding = [this](bool shift, bool key) { openRich(), holdFor(shift, key); };
        // Of one layer that is not there at the time, and nothing else.
        const auto nothingThere = [this](const std::vector<std::string>& selected) {
            open(kestrin_test::project("Scene", {400, 300})
                     .with(precomp("Ended", {400, 300}).with(solid("s", {50, 50})).shown(0, 10)));
            moveTo(10);
            select(selected);
        };
        const auto panel = [this](A_long menuCommand) {
            openRich();
            select({"not a precomp"});
            preferences().setLong(section, "Panel_Run", 1);
            preferences().setLong(section, "Menu_Cmd", menuCommand);
        };
        return {{"Standard", [=] { holding(false, false); }},
                {"Duration", [=] { holding(false, true); }},
                {"Mask", [=] { holding(true, true); }},
                {"Preferences", [=] { holding(true, false); }},
                {"no layer", [=] { nothingThere({"Ended"}); }},
                {"no content", [=] { nothingThere({}); }},
                {"panel, wrong selection", [=] { panel(1); }, true},
                {"panel, wrong request", [=] { panel(0); }, true}};
    }

    // By its file; the texts have places that are filled in.
    static std::string nameOf(const std::string& script) {
        for (const auto& entry : std::filesystem::directory_iterator(KESTRIN_SCRIPTS)) {
            std::ifstream in(entry.path(), std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(in), {}};
            if (script.starts_with(text.substr(0, text.find_first_of("%@")))) {
                return entry.path().stem().string();
            }
        }
        return "(unknown)";
    }

    void check(A_Err error) {
        EXPECT_EQ(project().history.depth(), 0);
        if (error != 0) {
            EXPECT_EQ(project().write(), opened);
            EXPECT_EQ(session->stillOpen(), std::vector<std::string>());
            expectSilenceAfter(failure(), false);
            return;
        }
        for (const std::string& line : session->stillOpen()) {
            // The answer about the resolution is left to the host, and all of a cancelled mask crop.
            EXPECT_TRUE(line == answerLeft || line.starts_with("collection")) << line;
        }
        expectUndoAndRedo();
    }
};

TEST_P(WrongScripts, LeaveTheProjectWholeAndOneUndoAway) {
    std::set<std::string> answered;
    int failed = 0;
    for (const Command& command : commands()) {
        for (std::size_t wrong = 1;; ++wrong) {
            command.prepare();
            std::size_t scripts = 0;
            session->answerScript = [&](const auto& script) -> std::optional<std::string> {
                if (++scripts != wrong) {
                    return script();
                }
                answered.insert(nameOf(session->scriptsRun().back()));
                if (GetParam().fails) {
                    throw script::ScriptError("made to fail", 1);
                }
                return GetParam().text;
            };
            session->clearCalls();
            const A_Err error = command.panel ? session->tick() : run();
            if (scripts < wrong) {
                EXPECT_GT(wrong, 1u) << command.name;
                break;
            }
            SCOPED_TRACE(std::string(command.name) + ", script " + std::to_string(wrong));
            failed += error != 0 ? 1 : 0;
            EXPECT_TRUE(error != 0 || !GetParam().fails);
            EXPECT_TRUE(error == 0 || GetParam().fails || GetParam().text || error == A_Err_PARAMETER);
            check(error);
            if (HasFailure()) {
                return;
            }
        }
    }
    EXPECT_EQ(answered.size(), 9u) << testing::PrintToString(answered);  // all but the one that sets a parent
    EXPECT_GE(failed, GetParam().fails ? 9 : GetParam().text ? 0 : 4);   // four times it is a question
}

INSTANTIATE_TEST_SUITE_P(, WrongScripts,
                         testing::Values(WrongAnswer{"AnError", "", true},
                                         WrongAnswer{"NoAnswer", std::nullopt}, WrongAnswer{"AnEmptyText", ""},
                                         WrongAnswer{"AMegabyte", std::string(1 << 20, '7')},
                                         WrongAnswer{"Garbage", std::string("\xFF\0%s%n\"');", 9)},
                                         WrongAnswer{"AnotherNumber", "-1"}),
                         [](const auto& answer) { return answer.param.name; });

TEST_F(Fails, WhateverItsStartLacksThePluginDoesNotStart) {
    const std::vector<std::string> steps = {"AEGP_InsertMenuCommand",      "AEGP_GetUniqueCommand",
                                            "AEGP_InsertMenuCommand",      "AEGP_RegisterCommandHook",
                                            "AEGP_RegisterUpdateMenuHook", "AEGP_RegisterIdleHook"};
    const auto begin = [&] {
        session.reset();
        session = std::make_unique<Session>(
            model::Project::read(kestrin_test::project("Scene", {40, 30}).text()), answers);
    };
    for (std::size_t step = 0; step < steps.size(); ++step) {
        begin();
        session->failCall({step + 1, 77});
        EXPECT_THROW(session->loadPlugin(KESTRIN_PLUGIN), std::runtime_error);
        const auto& calls = session->calls().last;
        EXPECT_EQ(session->calls().total, step + 2);  // and the report
        EXPECT_EQ(
            std::count_if(calls.begin(), calls.end(),
                          [&](const std::string& call) { return call.starts_with(steps[step] + " -> 77"); }),
            1);
        EXPECT_NE(messages(Message::Kind::Report).at(0).find("Problems encountered"), std::string::npos);
        EXPECT_EQ(session->stillOpen(), std::vector<std::string>());
    }
    for (const auto& [name, number] :
         {std::pair("AEGP Command Suite", 1), std::pair("AEGP Register Suite", 6)}) {
        begin();
        session->withholdSuite(name, number);
        EXPECT_THROW(session->loadPlugin(KESTRIN_PLUGIN), std::runtime_error);
    }
}

}  // namespace
}  // namespace kestrin_test
