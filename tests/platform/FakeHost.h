// A host of a few hand-filled tables. It records suites and calls.

#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "AEGP_Suites.h"

class FakeHost {
 public:
    using Suite = std::pair<std::string, std::int32_t>;

    FakeHost() { current_ = this; }
    ~FakeHost() { current_ = nullptr; }
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    // `table` must live as long as the host.
    void offer(const char* name, std::int32_t number, const void* table) { offered_[{name, number}] = table; }
    void withhold(const char* name, std::int32_t number) { offered_.erase({name, number}); }

    SPBasicSuite* basic() { return &basic_; }
    const std::vector<std::string>& calls() const { return calls_; }
    void forgetCalls() { calls_.clear(); }
    const std::vector<Suite>& acquired() const { return acquired_; }
    const std::vector<Suite>& released() const { return released_; }

    // What every function of a fake table begins with, and mostly returns.
    static A_Err call(const std::string& name) {
        current_->calls_.push_back(name);
        return A_Err_NONE;
    }

 private:
    static SPErr acquire(const char* name, std::int32_t number, const void** suite) {
        const auto found = current_->offered_.find({name, number});
        if (found == current_->offered_.end()) {
            return A_Err_MISSING_SUITE;
        }
        current_->acquired_.emplace_back(name, number);
        *suite = found->second;
        return 0;
    }
    static SPErr release(const char* name, std::int32_t number) {
        current_->released_.emplace_back(name, number);
        return 0;
    }

    inline static FakeHost* current_ = nullptr;
    SPBasicSuite basic_{acquire, release, nullptr, nullptr, nullptr, nullptr, nullptr};
    std::map<Suite, const void*> offered_;
    std::vector<Suite> acquired_, released_;
    std::vector<std::string> calls_;
};

// With as much as the plug-in's start needs.
class StartHost : public FakeHost {
 public:
    StartHost() {
        commands_.AEGP_GetUniqueCommand = [](AEGP_Command* command) {
            *command = 77;
            return call("number");
        };
        commands_.AEGP_InsertMenuCommand = [](AEGP_Command command, const A_char* text, AEGP_MenuID menu,
                                              A_long place) {
            return call("insert " + std::to_string(command) + " " + text + " into " + std::to_string(menu) +
                        " at " + std::to_string(place));
        };
        commands_.AEGP_SetMenuCommandName = [](AEGP_Command, const A_char* text) {
            return call(std::string("rename ") + text);
        };
        commands_.AEGP_EnableCommand = [](AEGP_Command) { return call("enable"); };
        commands_.AEGP_DisableCommand = [](AEGP_Command) { return call("disable"); };
        hooks_.AEGP_RegisterCommandHook = [](AEGP_PluginID, AEGP_HookPriority, AEGP_Command, AEGP_CommandHook,
                                             AEGP_CommandRefcon) { return call("command hook"); };
        hooks_.AEGP_RegisterUpdateMenuHook = [](AEGP_PluginID, AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon) {
            return call("menu hook");
        };
        hooks_.AEGP_RegisterIdleHook = [](AEGP_PluginID, AEGP_IdleHook hook, AEGP_IdleRefcon) {
            idleHook = hook;
            return call("idle hook");
        };
        offer("AEGP Command Suite", 1, &commands_);
        offer("AEGP Register Suite", 6, &hooks_);
    }

    inline static AEGP_IdleHook idleHook = nullptr;

 private:
    AEGP_CommandSuite1 commands_{};
    AEGP_RegisterSuite5 hooks_{};
};
