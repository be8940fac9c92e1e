// A bar on standard error for work that lasts: shown when that is a terminal and a second has gone by.
//
//     Progress progress("reading store.bin");
//     progress.Set(done, total);          // as often as is convenient; cheap
//
// Work that can't say how far it is shows a moving bar and the seconds. The destructor wipes the line.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace zntool {

class Progress {
public:
    explicit Progress(std::string what);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // A total of 0: how far it is isn't known.
    void Set(long long done, long long total)
    {
        done_.store(done, std::memory_order_relaxed);
        total_.store(total, std::memory_order_relaxed);
    }

private:
    void Watch();
    void Draw(double seconds) const;

    std::string what_;
    std::atomic<long long> done_ = 0;
    std::atomic<long long> total_ = 0;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool over_ = false;
    std::thread watcher_;
};

} // namespace zntool
