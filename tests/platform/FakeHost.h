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
