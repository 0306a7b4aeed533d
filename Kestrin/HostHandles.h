// Owners of what the host hands out and wants back. Each gives its handle back when it goes out of scope.

#pragma once

#include <utility>

#include "AEGP_Host.h"

// `get` lends, `put` receives from a host call (giving the former handle back first), `release` gives away,
// `reset` gives back now and returns the host's answer. The table must outlive the owner.
template <class Handle, class Suite, A_Err (*Suite::*giveBack)(Handle)>
class HostHandle {
 public:
    explicit HostHandle(const Suite* suite) noexcept : suite_(suite) {}
    HostHandle(HostHandle&& other) noexcept : suite_(other.suite_), handle_(other.release()) {}
    HostHandle& operator=(HostHandle&&) = delete;
    ~HostHandle() { reset(); }

    Handle get() const noexcept { return handle_; }
    Handle* put() noexcept {
        reset();
        return &handle_;
    }
    Handle release() noexcept { return std::exchange(handle_, nullptr); }
    A_Err reset() noexcept {
        const Handle handle = release();
        return handle == nullptr ? A_Err{A_Err_NONE} : (suite_->*giveBack)(handle);
    }

 private:
    const Suite* suite_;
    Handle handle_ = nullptr;
};

using Collection =
    HostHandle<AEGP_Collection2H, AEGP_CollectionSuite2, &AEGP_CollectionSuite2::AEGP_DisposeCollection>;
using Mask = HostHandle<AEGP_MaskRefH, AEGP_MaskSuite5, &AEGP_MaskSuite5::AEGP_DisposeMask>;
using Stream = HostHandle<AEGP_StreamRefH, AEGP_StreamSuite4, &AEGP_StreamSuite4::AEGP_DisposeStream>;
using Memory = HostHandle<AEGP_MemHandle, AEGP_MemorySuite1, &AEGP_MemorySuite1::AEGP_FreeMemHandle>;
using RenderOptions =
    HostHandle<AEGP_RenderOptionsH, AEGP_RenderOptionsSuite3, &AEGP_RenderOptionsSuite3::AEGP_Dispose>;
using FrameReceipt = HostHandle<AEGP_FrameReceiptH, AEGP_RenderSuite3, &AEGP_RenderSuite3::AEGP_CheckinFrame>;

enum class Expressions { before, applied };

// The value of a stream at one time. The host owns what hangs on it, such as an outline.
class StreamValue {
 public:
    StreamValue(const AEGP_StreamSuite4* suite, AEGP_PluginID pluginId) noexcept
        : suite_(suite), pluginId_(pluginId) {}
    StreamValue(const StreamValue&) = delete;
    StreamValue& operator=(const StreamValue&) = delete;
    ~StreamValue() { reset(); }

    // Gives the former value back first.
    A_Err read(AEGP_StreamRefH stream, AEGP_LTimeMode mode, const A_Time& time,
               Expressions expressions) noexcept {
        reset();
        const A_Err error = suite_->AEGP_GetNewStreamValue(pluginId_, stream, mode, &time,
                                                           expressions == Expressions::before, &value_);
        held_ = error == A_Err_NONE;
        return error;
    }
    AEGP_StreamValue2* get() noexcept { return &value_; }
    void release() noexcept { held_ = false; }
    A_Err reset() noexcept {
        return std::exchange(held_, false) ? suite_->AEGP_DisposeStreamValue(&value_) : A_Err{A_Err_NONE};
    }

 private:
    const AEGP_StreamSuite4* suite_;
    AEGP_PluginID pluginId_;
    AEGP_StreamValue2 value_{};
    bool held_ = false;
};
