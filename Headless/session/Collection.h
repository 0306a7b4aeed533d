// The selected things that the plug-in collects.
//
// Kept in two halves with the place of the last erasure between them: whoever walks over a large collection and
// erases here and there, in either direction, moves each thing once and not all the rest each time.

#pragma once

#include <vector>

#include "model/Project.h"

namespace headless {

class Collection {
 public:
    Collection() = default;
    explicit Collection(std::vector<model::SelectedThing> things) : before_(std::move(things)) {}

    std::size_t size() const { return before_.size() + after_.size(); }
    const model::SelectedThing& operator[](std::size_t index) const {
        return index < before_.size() ? before_[index] : after_[size() - 1 - index];
    }
    void add(const model::SelectedThing& thing) {
        split(size());
        before_.push_back(thing);
    }
    // The things in [first, last).
    void erase(std::size_t first, std::size_t last) {
        split(last);
        before_.resize(first);
    }
    // All of them, in order.
    const std::vector<model::SelectedThing>& things() {
        split(size());
        return before_;
    }

 private:
    void split(std::size_t index) {
        while (before_.size() > index) {
            after_.push_back(before_.back());
            before_.pop_back();
        }
        while (before_.size() < index) {
            before_.push_back(after_.back());
            after_.pop_back();
        }
    }

    std::vector<model::SelectedThing> before_, after_;  // the second from its end
};

}  // namespace headless
