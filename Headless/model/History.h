// Undo: every change is recorded with the way back and the way forth, old values stored as they were.

#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace headless::model {

class History {
 public:
    struct Change {
        std::function<void()> undo;
        std::function<void()> redo;  // empty: `undo` goes both ways
    };
    struct Step {
        std::string name;
        std::deque<Change> changes;  // by the hundred thousand, and never moved
    };

    // Groups nest: the outermost names the step, and a group without a change leaves none.
    void begin(const std::string& name);
    // Opens a group whose changes join the last step that was done, or a new one where there is none.
    void resume();
    // False when no group is open.
    bool end();
    int depth() const { return depth_; }

    // Records a change that has been made; outside a group it is a step of its own. Without `redo`, `undo` goes
    // both ways.
    void record(std::function<void()> undo, std::function<void()> redo = {});

    // False when there is nothing to take back or to do again. Not while a group is open.
    bool undo();
    bool redo();
    // Takes back the open group, or else everything down to the `count` steps that were done then, and
    // forgets it.
    void rollBackTo(std::size_t count);

    const std::vector<Step>& done() const { return done_; }
    // Another number after every change in either direction.
    std::uint64_t revision() const { return revision_; }

 private:
    void takeBack(Step& step);
    void push(Step step);

    std::vector<Step> done_, undone_;
    Step open_;
    int depth_ = 0;
    std::uint64_t revision_ = 0;
};

// Sets what `get()` refers to. `get` is kept for undo and must stay callable as long as the history.
template <class Get, class Value>
void setRecorded(History& history, Get get, Value value) {
    auto exchange = [get, other = std::move(value)]() mutable { std::swap(get(), other); };
    exchange();
    history.record(std::move(exchange));
}

}  // namespace headless::model
