// Values and lists that are nearly always absent: without them a pointer is all they take.

#pragma once

#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace headless::model {

// As std::optional.
template <class T>
class Rare {
 public:
    Rare() = default;
    Rare(T value) : value_(std::make_unique<T>(std::move(value))) {}
    Rare(const Rare& other) : value_(other.value_ ? std::make_unique<T>(*other.value_) : nullptr) {}
    Rare(Rare&&) noexcept = default;
    Rare& operator=(Rare other) noexcept {
        value_.swap(other.value_);
        return *this;
    }
    ~Rare() = default;

    bool has_value() const { return value_ != nullptr; }
    explicit operator bool() const { return has_value(); }
    T& operator*() { return *value_; }
    const T& operator*() const { return *value_; }
    T* operator->() { return value_.get(); }
    const T* operator->() const { return value_.get(); }
    T value_or(T otherwise) const { return value_ ? *value_ : std::move(otherwise); }
    bool operator==(const Rare& other) const {
        return value_ && other.value_ ? *value_ == *other.value_ : value_ == other.value_;
    }

 private:
    std::unique_ptr<T> value_;
};

// As std::vector.
template <class T>
class RareList {
 public:
    bool empty() const { return size() == 0; }
    std::size_t size() const { return list_ ? list_->size() : 0; }
    T* begin() { return list_ ? list_->data() : nullptr; }
    T* end() { return begin() + size(); }
    const T* begin() const { return list_ ? list_->data() : nullptr; }
    const T* end() const { return begin() + size(); }
    auto rbegin() { return std::reverse_iterator(end()); }
    auto rend() { return std::reverse_iterator(begin()); }
    T& operator[](std::size_t index) { return (*list_)[index]; }
    const T& operator[](std::size_t index) const { return (*list_)[index]; }
    T& front() { return list_->front(); }
    const T& front() const { return list_->front(); }
    T& back() { return list_->back(); }

    void reserve(std::size_t size) { list().reserve(size); }
    void resize(std::size_t size) { list().resize(size); }
    void push_back(T value) { list().push_back(std::move(value)); }
    void erase(T* at) {
        list_->erase(list_->begin() + (at - begin()));
        if (list_->empty()) {
            list_ = {};
        }
    }
    void clear() { list_ = {}; }
    bool operator==(const RareList& other) const {
        return size() == other.size() && (empty() || *list_ == *other.list_);
    }

 private:
    std::vector<T>& list() { return list_ ? *list_ : *(list_ = std::vector<T>()); }

    Rare<std::vector<T>> list_;
};

}  // namespace headless::model
