// What can go wrong does: each host call in turn, each suite, each script. The project stays as it was opened.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "AEGP_Suites.h"
#include "support/Story.h"

namespace kestrin_test {
namespace {

struct Fails : Story {
    // A project that takes the standard crop through every branch that asks no question twice.
    void openRich() {
        answers.answer("Low Resolution", "Accurate");
        answers.answer("3D Layers", "Yes");
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
    void expectUndoAndRedo() {
        const std::string result = project().write();
        while (project().history.undo()) {
        }
        EXPECT_EQ(project().write(), opened);
        while (project().history.redo()) {
        }
        EXPECT_EQ(project().write(), result);
    }
    // After a call that failed, or after the last script where none did, things are given back and nothing else
    // happens.
    void expectOnlyReleasesAfterTheFailure() {
        constexpr const char* harmless[] = {"AcquireSuite",      "ReleaseSuite",         "AEGP_Dispose",
                                            "AEGP_CheckinFrame", "AEGP_UnlockMemHandle", "AEGP_FreeMemHandle",
                                            "CloseProgress"};
        const auto& calls = session->calls().last;
        auto failure = std::find_if(calls.begin(), calls.end(), [](const std::string& line) {
            return line.find(" -> ") != std::string::npos;
        });
        if (failure == calls.end()) {
            failure = std::find(calls.rbegin(), calls.rend(), "AEGP_ExecuteScript").base() - 1;
        }
        // The null is moved whatever happened before.
        std::vector<std::string> move = {"AEGP_GetNewLayerStream", "AEGP_GetNewStreamValue",
                                         "AEGP_SetStreamValue"};
        for (auto line = failure + 1; line != calls.end(); ++line) {
            EXPECT_TRUE(std::erase(move, *line) == 1 ||
                        std::any_of(std::begin(harmless), std::end(harmless),
                                    [&](const char* name) { return line->starts_with(name); }))
                << *line << " after " << *failure;
        }
    }
    // The duration and the mask crop take one layer.
    void holdFor(bool shift, bool command) {
        if (command) {
            select({"Card"});
        }
        session->openMenu();
        session->holdKeys(shift, command);
        ASSERT_EQ(session->tick(), 0);
        session->holdKeys(false, false);
    }
};

// Runs each command again and again, with its 1st, 2nd, 3rd host call failing, until it runs untouched.
struct FailingCommand {
    const char* name;
    bool shift, command;
    std::uint64_t leastCalls;
};

class EachCallOf : public Fails, public testing::WithParamInterface<FailingCommand> {};

TEST_P(EachCallOf, FailsTheCommandAndLeavesTheProject) {
    constexpr A_Err code = 77;
    int unnoticed = 0;
    for (std::uint64_t call = 1;; ++call) {
        openRich();
        holdFor(GetParam().shift, GetParam().command);
        session->clearCalls();
        session->failCall({call, code});
        const A_Err error = run();
        if (session->calls().total < call) {
            EXPECT_EQ(error, 0);
            EXPECT_GT(call, GetParam().leastCalls);
            expectUndoAndRedo();
            break;
        }
        if (error == 0) {
            // The one call whose failure is to be ignored is the move of the null, and what goes with it.
            ++unnoticed;
            expectUndoAndRedo();
            continue;
        }
        std::string failedCall;
        for (const std::string& line : session->calls().last) {
            if (line.find("-> 77") != std::string::npos) {
                failedCall = line.substr(line.find('_') + 1);
                break;
            }
        }
        EXPECT_EQ(error, code) << "call " << call << ", " << failedCall;
        EXPECT_EQ(project().write(), opened) << "call " << call;
        EXPECT_EQ(project().history.depth(), 0);
        EXPECT_FALSE(session->progressOpen());
        if (error == code) {
            expectOnlyReleasesAfterTheFailure();
        }
        // A thing stays held where its own release was the call that failed.
        const bool releasing = failedCall.find("Dispose") == 0 || failedCall.find("Checkin") == 0;
        for (const std::string& line : session->stillOpen()) {
            EXPECT_TRUE(releasing || !(line.starts_with("suite") || line.starts_with("receipt") ||
                                       line.starts_with("collection")))
                << "call " << call << ", " << failedCall << ": " << line;
        }
        if (HasFailure()) {
            break;
        }
    }
    // GetNewLayerStream, GetNewStreamValue, SetStreamValue and the two releases, once for each crop; and what
    // tells whether a layer is a precomp answers "no" instead.
    EXPECT_LT(unnoticed, 30);
}

INSTANTIATE_TEST_SUITE_P(, EachCallOf,
                         testing::Values(FailingCommand{"Standard", false, false, 300},
                                         FailingCommand{"Duration", false, true, 150},
                                         FailingCommand{"Mask", true, true, 100},
                                         FailingCommand{"Preferences", true, false, 2}),
                         [](const auto& command) { return command.param.name; });

TEST_F(Fails, EachSuiteInTurn) {
#define KESTRIN_SUITE(label, name, number) {name, number},
    const std::vector<std::pair<const char*, int>> suites = {AEGP_FOR_EACH_SUITE(KESTRIN_SUITE)};
#undef KESTRIN_SUITE
    struct Keys {
        bool shift, command;
        int leastNeeded;
    };
    for (const Keys keys : {Keys{false, false, 14}, {false, true, 14}, {true, true, 12}, {true, false, 2}}) {
        int needed = 0;
        for (const auto& [name, number] : suites) {
            openRich();
            holdFor(keys.shift, keys.command);
            session->withholdSuite(name, number);
            const A_Err error = run();
            EXPECT_TRUE(error == 0 || error == 516) << name << " " << number << " gives " << error;
            if (error != 0) {
                ++needed;
                EXPECT_EQ(project().write(), opened) << name;
            }
            for (const std::string& line : session->stillOpen()) {
                EXPECT_FALSE(line.starts_with("suite")) << name << ": " << line;
            }
        }
        EXPECT_GE(needed, keys.leastNeeded);
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
        for (const std::string& line : session->stillOpen()) {
            // The answer about the resolution is left to the host, and all of a cancelled mask crop.
            EXPECT_TRUE(line.starts_with("memory handle, made by AEGP_ExecuteScript") ||
                        (error == 0 && line.starts_with("collection")))
                << line;
        }
        if (error != 0) {
            EXPECT_EQ(project().write(), opened);
            expectOnlyReleasesAfterTheFailure();
            return;
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
            check(error);
            if (HasFailure()) {
                return;
            }
        }
    }
    EXPECT_EQ(answered.size(), 9u) << testing::PrintToString(answered);  // all but the one that sets a parent
    EXPECT_GE(failed, GetParam().fails ? 9 : 0);
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
