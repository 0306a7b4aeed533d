// Undo: every change is recorded with the way back and the way forth, old values stored as they were.

#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>

namespace headless::model {

class History {
 public:
    // There are hundreds of thousands of them: each is one object, no larger than what it has to remember.
    class Change {
     public:
        Change() = default;
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;
        virtual ~Change() = default;
        virtual void undo() = 0;
        virtual void redo() = 0;
    };
    struct Step {
        std::string name;
        std::deque<std::unique_ptr<Change>> changes;
    };

    // Groups nest: the outermost names the step, and a group without a change leaves none.
    void begin(const std::string& name);
    // Opens a group whose changes join the last step that was done, or a new one where there is none.
    void resume();
    // False when no group is open.
    bool end();
    int depth() const { return depth_; }

    // Records a change that has been made; outside a group it is a step of its own.
    template <class Undo, class Redo>
    void record(Undo undo, Redo redo);
    // The same where one action, called in turn, takes back and does again.
    template <class Exchange>
    void record(Exchange exchange);

    // False when there is nothing to take back or to do again. Not while a group is open.
    bool undo();
    bool redo();
    // Takes back the open group, or else everything down to the `count` steps that were done then, and
    // forgets it.
    void rollBackTo(std::size_t count);

    const std::deque<Step>& done() const { return done_; }
    // Another number after every change in either direction.
    std::uint64_t revision() const { return revision_; }

 private:
    void add(std::unique_ptr<Change> change);
    void takeBack(Step& step);
    void push(Step step);

    std::deque<Step> done_, undone_;
    Step open_;
    int depth_ = 0;
    std::uint64_t revision_ = 0;
};

template <class Undo, class Redo>
void History::record(Undo undo, Redo redo) {
    struct TwoWays final : Change {
        TwoWays(Undo&& back, Redo&& forth) : undo_(std::move(back)), redo_(std::move(forth)) {}
        void undo() override { undo_(); }
        void redo() override { redo_(); }
        Undo undo_;
        Redo redo_;
    };
    add(std::make_unique<TwoWays>(std::move(undo), std::move(redo)));
}

template <class Exchange>
void History::record(Exchange exchange) {
    struct OneWay final : Change {
        explicit OneWay(Exchange&& action) : exchange_(std::move(action)) {}
        void undo() override { exchange_(); }
        void redo() override { exchange_(); }
        Exchange exchange_;
    };
    add(std::make_unique<OneWay>(std::move(exchange)));
}

// Sets what `get()` refers to. `get` is kept for undo and must stay callable as long as the history.
template <class Get, class Value>
void setRecorded(History& history, Get get, Value value) {
    auto exchange = [get, other = std::move(value)]() mutable { std::swap(get(), other); };
    exchange();
    history.record(std::move(exchange));
}

}  // namespace headless::model
