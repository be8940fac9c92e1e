// The explicit stack of walks over trees: depth costs memory here instead of calls.
#pragma once

#include <exception>
#include <vector>

namespace zn {

template <class T>
class WorkStack {
public:
    // False when memory runs out; the stack is then as it was.
    bool Push(const T& item) noexcept
    {
        try {
            items_.push_back(item);
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }
    T& Top() noexcept { return items_.back(); }
    void Pop() noexcept { items_.pop_back(); }
    bool IsEmpty() const noexcept { return items_.empty(); }
    std::size_t Count() const noexcept { return items_.size(); }

private:
    std::vector<T> items_;
};

} // namespace zn
