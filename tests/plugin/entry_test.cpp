#include <gtest/gtest.h>

#include <algorithm>

#include "AEGP_SuiteHandler.h"
#include "FakeHost.h"
#include "Kestrin.h"
#include "Operation.h"

namespace {

using Calls = std::vector<std::string>;

TEST(SuiteHandler, AcquiresOnFirstUseAndReleasesExactlyThat) {
    FakeHost host;
    const AEGP_ItemSuite8 items{};
    const AEGP_MemorySuite1 memory{};
    host.offer("AEGP Item Suite", 13, &items);
    host.offer("AEGP Memory Suite", 1, &memory);
    {
        AEGP_SuiteHandler suites(host.basic());
        EXPECT_TRUE(host.acquired().empty());
        EXPECT_EQ(suites.ItemSuite8(), &items);
        EXPECT_EQ(suites.ItemSuite8(), suites.ItemSuite8());
        EXPECT_EQ(suites.MemorySuite1(), &memory);
        try {
            suites.ItemSuite6();
            ADD_FAILURE() << "a missing suite went unnoticed";
        } catch (A_Err error) {
            EXPECT_EQ(error, 516);
        }
        EXPECT_TRUE(host.released().empty());
    }
    EXPECT_EQ(host.acquired().size(), 2U);
    EXPECT_TRUE(std::is_permutation(host.released().begin(), host.released().end(), host.acquired().begin(),
                                    host.acquired().end()));
}

TEST(Step, RunsOnlyUntilTheFirstFailureAndKeepsItsName) {
    int made = 0;
    const A_Err error = operation(nullptr, [&](AEGP_SuiteHandler& suites, Result& result) {
        step(result, "first", [&] { return ++made, A_Err{A_Err_NONE}; });
        step(result, "second", [&] { return ++made, A_Err{4}; });
        step(result, "third", [&] { return ++made, A_Err{5}; });
        EXPECT_STREQ(result.failedStep(), "second");
        suites.ItemSuite8();  // a missing suite does not hide the failure
    });
    EXPECT_EQ(error, 4);
    EXPECT_EQ(made, 2);
}

class EntryPoint : public testing::Test {
 protected:
    EntryPoint() {
        commands_.AEGP_GetUniqueCommand = [](AEGP_Command* command) {
            *command = 77;
            return FakeHost::call("number");
        };
        commands_.AEGP_InsertMenuCommand = [](AEGP_Command command, const A_char* text, AEGP_MenuID menu,
                                              A_long position) {
            EXPECT_EQ(menu, 5);
            EXPECT_EQ(position, -1);
            return FakeHost::call("insert " + std::to_string(command) + " " + text);
        };
        hooks_.AEGP_RegisterCommandHook = [](AEGP_PluginID id, AEGP_HookPriority priority, AEGP_Command command,
                                             AEGP_CommandHook hook, AEGP_CommandRefcon) {
            EXPECT_EQ(id, 9);
            EXPECT_EQ(priority, 1U);
            EXPECT_EQ(command, 0);
            EXPECT_EQ(hook, &CommandHook);
            return FakeHost::call("command hook");
        };
        hooks_.AEGP_RegisterUpdateMenuHook = [](AEGP_PluginID, AEGP_UpdateMenuHook hook,
                                                AEGP_UpdateMenuRefcon) {
            EXPECT_EQ(hook, &UpdateMenuHook);
            return FakeHost::call("menu hook");
        };
        hooks_.AEGP_RegisterIdleHook = [](AEGP_PluginID, AEGP_IdleHook hook, AEGP_IdleRefcon) {
            EXPECT_EQ(hook, &IdleHookCmd);
            return FakeHost::call("idle hook");
        };
        utilities_.AEGP_ReportInfo = [](AEGP_PluginID, const A_char* text) {
            return FakeHost::call(std::string("report ") + text);
        };
        host_.offer("AEGP Command Suite", 1, &commands_);
        host_.offer("AEGP Register Suite", 6, &hooks_);
        host_.offer("AEGP Utility Suite", 11, &utilities_);
    }
    ~EntryPoint() override { EXPECT_EQ(host_.acquired().size(), host_.released().size()); }

    A_Err load() { return EntryPointFunc(host_.basic(), 0, 0, 9, nullptr); }

    FakeHost host_;
    AEGP_CommandSuite1 commands_{};
    AEGP_RegisterSuite5 hooks_{};
    AEGP_UtilitySuite5 utilities_{};
    const Calls all_{"insert 0 -", "number", "insert 77 Kestrin", "command hook", "menu hook", "idle hook"};
    const std::string report_ = "report Kestrin: Problems encountered during twiddling.";
};

TEST_F(EntryPoint, InsertsTheCommandAndRegistersTheHooksInOrder) {
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(host_.calls(), all_);
    EXPECT_STREQ(VERSION_NUMBER, "3.2.0");
}

TEST_F(EntryPoint, StopsAtEachFailingStepAndReportsIt) {
    for (auto failing = all_.begin(); failing != all_.end(); ++failing) {
        host_.failAt(*failing, 4);
        host_.forgetCalls();
        EXPECT_EQ(load(), 4);
        Calls expected(all_.begin(), failing + 1);
        expected.push_back(report_);
        EXPECT_EQ(host_.calls(), expected);
    }
}

TEST_F(EntryPoint, AMissingSuiteGives516) {
    host_.withhold("AEGP Register Suite", 6);
    host_.withhold("AEGP Utility Suite", 11);  // so that the failure cannot even be reported
    EXPECT_EQ(load(), 516);
    EXPECT_EQ(host_.calls(), Calls(all_.begin(), all_.begin() + 3));
}

TEST_F(EntryPoint, TheCommandHookLeavesOtherCommandsAlone) {
    ASSERT_EQ(load(), 0);
    A_Boolean handled = 42;
    EXPECT_EQ(CommandHook(nullptr, nullptr, 0, 1, 0, &handled), 0);
    EXPECT_EQ(CommandHook(nullptr, nullptr, 77, 1, 1, &handled), 0);
    EXPECT_EQ(handled, 42);
    EXPECT_EQ(host_.calls(), all_);

    EXPECT_EQ(CommandHook(nullptr, nullptr, 77, 1, 0, &handled), 516);  // this host has hardly any suite
    EXPECT_EQ(handled, 1);
}

}  // namespace
