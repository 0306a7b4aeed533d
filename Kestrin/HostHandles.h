// Owners of what the host hands out and wants back.
//
// An owner gives its handle back at the end of its scope: one more step of the operation. Once the operation
// has failed it lets go of the handle instead, for a failed operation makes no further host call; what it held
// is then the host's to clear away. `giveBack` of this header is where that is decided, for all of them.

#pragma once

#include <cassert>
#include <exception>
#include <utility>

#include "Operation.h"

// The call that gives a handle back, unless the operation has failed or an exception is ending it.
template <class Call>
void giveBack(Result& result, Call&& call) noexcept {
    if (std::uncaught_exceptions() > 0) {
        return;
    }
    try {
        step(result, "give a handle back", call);
    } catch (A_Err missingSuite) {
        result.note("acquire a suite", missingSuite);
    }
}

// `get` lends, `put` receives from a host call into an empty owner, `release` gives away, `giveBack` gives back
// before the end of the scope. Handler and result must outlive the owner.
template <class Handle, class Suite, const Suite* (AEGP_SuiteHandler::*suite)(),
          A_Err (*Suite::*dispose)(Handle)>
class HostHandle {
 public:
    HostHandle(AEGP_SuiteHandler& suites, Result& result) noexcept : suites_(suites), result_(result) {}
    HostHandle(const HostHandle&) = delete;
    HostHandle& operator=(const HostHandle&) = delete;
    ~HostHandle() { giveBack(); }

    Handle get() const noexcept { return handle_; }
    Handle* put() noexcept {
        assert(handle_ == nullptr);
        return &handle_;
    }
    Handle release() noexcept { return std::exchange(handle_, nullptr); }
    void giveBack() noexcept {
        if (const Handle handle = release()) {
            ::giveBack(result_, [&] { return ((suites_.*suite)()->*dispose)(handle); });
        }
    }

 private:
    AEGP_SuiteHandler& suites_;
    Result& result_;
    Handle handle_ = nullptr;
};

using Collection = HostHandle<AEGP_Collection2H, AEGP_CollectionSuite2, &AEGP_SuiteHandler::CollectionSuite2,
                              &AEGP_CollectionSuite2::AEGP_DisposeCollection>;
using Mask = HostHandle<AEGP_MaskRefH, AEGP_MaskSuite5, &AEGP_SuiteHandler::MaskSuite5,
                        &AEGP_MaskSuite5::AEGP_DisposeMask>;
using Stream = HostHandle<AEGP_StreamRefH, AEGP_StreamSuite4, &AEGP_SuiteHandler::StreamSuite4,
                          &AEGP_StreamSuite4::AEGP_DisposeStream>;
using Memory = HostHandle<AEGP_MemHandle, AEGP_MemorySuite1, &AEGP_SuiteHandler::MemorySuite1,
                          &AEGP_MemorySuite1::AEGP_FreeMemHandle>;
using RenderOptions =
    HostHandle<AEGP_RenderOptionsH, AEGP_RenderOptionsSuite3, &AEGP_SuiteHandler::RenderOptionsSuite3,
               &AEGP_RenderOptionsSuite3::AEGP_Dispose>;
using FrameReceipt = HostHandle<AEGP_FrameReceiptH, AEGP_RenderSuite3, &AEGP_SuiteHandler::RenderSuite3,
                                &AEGP_RenderSuite3::AEGP_CheckinFrame>;

enum class Expressions { before, applied };

// The value of a stream at one time. The host owns what hangs on it, such as an outline.
class StreamValue {
 public:
    StreamValue(AEGP_SuiteHandler& suites, Result& result, AEGP_PluginID pluginId) noexcept
        : suites_(suites), result_(result), pluginId_(pluginId) {}
    StreamValue(const StreamValue&) = delete;
    StreamValue& operator=(const StreamValue&) = delete;
    ~StreamValue() { giveBack(); }

    // A step of the operation. Gives the former value back first. `name` is a literal.
    void read(const char* name, const Stream& stream, AEGP_LTimeMode mode, const A_Time& time,
              Expressions expressions) {
        giveBack();
        step(result_, name, [&] {
            const A_Err error = suites_.StreamSuite4()->AEGP_GetNewStreamValue(
                pluginId_, stream.get(), mode, &time, expressions == Expressions::before, &value_);
            held_ = error == A_Err_NONE;
            return error;
        });
    }
    AEGP_StreamValue2* get() noexcept { return &value_; }
    void giveBack() noexcept {
        if (std::exchange(held_, false)) {
            ::giveBack(result_, [&] { return suites_.StreamSuite4()->AEGP_DisposeStreamValue(&value_); });
        }
    }

 private:
    AEGP_SuiteHandler& suites_;
    Result& result_;
    AEGP_PluginID pluginId_;
    AEGP_StreamValue2 value_{};
    bool held_ = false;
};
