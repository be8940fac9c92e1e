// The count of holders in front of shared text, bytes and list items.
//
// Holders in different threads may count at the same time. A count goes without locked operations, which cost
// more than the rest of a copy, where nobody else can be counting: while the process has one thread only (where
// the standard library knows that), and when the only holder gives up or the first one takes hold.
#pragma once

#include <atomic>
#include <cstdint>
#if defined(__GLIBCXX__) && defined(_GLIBCXX_RELEASE) && _GLIBCXX_RELEASE >= 11
#    include <ext/atomicity.h>
#endif

class Zn_RefCount {
public:
    constexpr Zn_RefCount(std::int32_t count = 0) noexcept : count_(count) {}

    // Both return the count left. Who counts to 0 has the shared thing for himself and frees it.
    int AddRef() noexcept
    {
        const std::int32_t count = count_.load(std::memory_order_relaxed);
        if (count != 0 && !IsOnlyThread())
            return count_.fetch_add(1, std::memory_order_relaxed) + 1;
        count_.store(count + 1, std::memory_order_relaxed);
        return count + 1;
    }
    int Release() noexcept
    {
        const std::int32_t count = count_.load(std::memory_order_acquire);
        if (count != 1 && !IsOnlyThread())
            return count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
        count_.store(count - 1, std::memory_order_relaxed);
        return count - 1;
    }
    int Get() const noexcept { return count_.load(std::memory_order_acquire); }

    // Whether the process surely has one thread only.
    static bool IsOnlyThread() noexcept
    {
#if defined(__GLIBCXX__) && defined(_GLIBCXX_RELEASE) && _GLIBCXX_RELEASE >= 11
        return __gnu_cxx::__is_single_threaded();
#else
        return false;
#endif
    }

private:
    std::atomic<std::int32_t> count_;
};
