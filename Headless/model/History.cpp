#include "model/History.h"

namespace headless::model {

void History::begin(const std::string& name) {
    if (depth_++ == 0) {
        open_ = {name, {}};
    }
}

void History::resume() {
    if (depth_++ == 0) {
        open_ = {};
        if (!done_.empty()) {
            open_ = std::move(done_.back());
            done_.pop_back();
        }
    }
}

bool History::end() {
    if (depth_ == 0) {
        return false;
    }
    if (--depth_ == 0 && !open_.changes.empty()) {
        push(std::exchange(open_, {}));
    }
    return true;
}

void History::add(std::unique_ptr<Change> change) {
    ++revision_;
    if (depth_ > 0) {
        open_.changes.push_back(std::move(change));
    } else {
        Step step;
        step.changes.push_back(std::move(change));
        push(std::move(step));
    }
}

bool History::undo() {
    if (depth_ > 0 || done_.empty()) {
        return false;
    }
    takeBack(done_.back());
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    return true;
}

bool History::redo() {
    if (depth_ > 0 || undone_.empty()) {
        return false;
    }
    ++revision_;
    for (const auto& change : undone_.back().changes) {
        change->redo();
    }
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    return true;
}

void History::rollBackTo(std::size_t count) {
    takeBack(open_);
    open_ = {};
    depth_ = 0;
    while (done_.size() > count) {
        takeBack(done_.back());
        done_.pop_back();
    }
}

void History::takeBack(Step& step) {
    ++revision_;
    for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change) {
        (*change)->undo();
    }
}

void History::push(Step step) {
    undone_.clear();
    done_.push_back(std::move(step));
}

}  // namespace headless::model
