// Handles as the host gives them out: numbers that say their kind and age, never addresses.
//
// A handle is looked up, never followed, so a null, foreign, stale, freed or wrong-kind one is an error and
// not a crash.

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "AEGP_Host.h"

namespace headless {

// What a suite function answers with instead of success. `text` is what the host would show.
struct HostError {
    A_Err code = A_Err_GENERIC;
    std::string text;
};

enum class HandleKind : std::uint8_t {
    Project = 1,
    Item,
    Comp,
    Layer,
    Mask,
    Stream,
    Outline,
    Collection,
    World,
    RenderOptions,
    Receipt,
    Memory,
    Blob,
    Value,
};

constexpr const char* nameOf(HandleKind kind) {
    constexpr const char* names[] = {"",
                                     "project",
                                     "item",
                                     "composition",
                                     "layer",
                                     "mask",
                                     "stream",
                                     "outline",
                                     "collection",
                                     "world",
                                     "render options",
                                     "receipt",
                                     "memory handle",
                                     "preferences",
                                     "stream value"};
    return names[static_cast<std::size_t>(kind)];
}

// 8 bits that mark a handle of ours, 8 bits kind, 48 bits of number.
inline constexpr std::uint64_t handleMark = 0x4Bull << 56;
inline constexpr std::uint64_t handleNumberMask = (1ull << 48) - 1;

inline std::uintptr_t makeHandle(HandleKind kind, std::uint64_t number) {
    return static_cast<std::uintptr_t>(handleMark | static_cast<std::uint64_t>(kind) << 48 | number);
}

// The number of a handle of this kind. Throws HostError (parameter) for any other value.
std::uint64_t handleNumber(HandleKind kind, std::uintptr_t handle);

// The things of one kind that the plug-in holds and has to give back.
template <class Thing>
class HandleTable {
 public:
    explicit HandleTable(HandleKind kind) : kind_(kind) {}

    std::uintptr_t add(Thing thing, const char* madeBy) {
        std::uint32_t index = 0;
        if (free_.empty()) {
            index = static_cast<std::uint32_t>(slots_.size());
            slots_.emplace_back();
        } else {
            index = free_.back();
            free_.pop_back();
        }
        Slot& slot = slots_[index];
        slot.thing = std::make_unique<Thing>(std::move(thing));
        slot.madeBy = madeBy;
        ++live_;
        return makeHandle(kind_, static_cast<std::uint64_t>(slot.generation) << 32 | index);
    }

    Thing& at(std::uintptr_t handle) { return *slotAt(handle).thing; }

    void remove(std::uintptr_t handle) { free(static_cast<std::size_t>(&slotAt(handle) - slots_.data())); }

    // All that is still held.
    void clear() {
        for (std::size_t i = 0; i < slots_.size(); ++i) {
            if (slots_[i].thing) {
                free(i);
            }
        }
    }

    int live() const { return live_; }

    // "stream, made by AEGP_GetNewLayerStream" for each that is still held.
    void describe(std::vector<std::string>& out) const {
        for (const Slot& slot : slots_) {
            if (slot.thing) {
                out.push_back(std::string(nameOf(kind_)) + ", made by " + slot.madeBy);
            }
        }
    }

 private:
    struct Slot {
        std::unique_ptr<Thing> thing;
        std::uint16_t generation = 1;
        const char* madeBy = "";
    };

    void free(std::size_t index) {
        Slot& slot = slots_[index];
        slot.thing.reset();
        if (++slot.generation != 0) {  // else an old handle would become good again
            free_.push_back(static_cast<std::uint32_t>(index));
        }
        --live_;
    }

    Slot& slotAt(std::uintptr_t handle) {
        const std::uint64_t number = handleNumber(kind_, handle);
        const std::uint64_t index = number & 0xFFFFFFFF;
        if (index >= slots_.size() || !slots_[index].thing || slots_[index].generation != number >> 32) {
            throw HostError{A_Err_PARAMETER,
                            std::string("this ") + nameOf(kind_) + " has been given back already"};
        }
        return slots_[index];
    }

    HandleKind kind_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_;
    int live_ = 0;
};

}  // namespace headless
