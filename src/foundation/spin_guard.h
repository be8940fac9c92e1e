// Holds a lock that is taken for a few instructions: spinning beats a mutex. While the process has one thread
// nothing is locked.
#pragma once

#include "Zn_RefCount.h"

#include <atomic>
#include <thread>

namespace zn {

class SpinGuard {
public:
    explicit SpinGuard(std::atomic<bool>& locked) noexcept : locked_(Zn_RefCount::IsOnlyThread() ? nullptr : &locked)
    {
        while (locked_ && locked_->exchange(true, std::memory_order_acquire))
            Wait();
    }
    ~SpinGuard()
    {
        if (locked_)
            locked_->store(false, std::memory_order_release);
    }
    SpinGuard(const SpinGuard&) = delete;
    SpinGuard& operator=(const SpinGuard&) = delete;

private:
    void Wait() const noexcept
    {
        for (int spins = 0; locked_->load(std::memory_order_relaxed); ++spins)
            if (spins >= 64)
                std::this_thread::yield();
    }

    std::atomic<bool>* locked_;
};

} // namespace zn
