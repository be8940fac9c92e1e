#include "progress.h"

#include "terminal.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zntool {
namespace {

constexpr int kBarCells = 30;
constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kRefresh = std::chrono::milliseconds(100);

} // namespace

Progress::Progress(std::string what) : what_(std::move(what))
{
    if (IsTerminal(stderr))
        watcher_ = std::thread([this] { Watch(); });
}

Progress::~Progress()
{
    if (!watcher_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        over_ = true;
    }
    wake_.notify_one();
    watcher_.join();
}

void Progress::Watch()
{
    const auto start = std::chrono::steady_clock::now();
    std::unique_lock lock(mutex_);
    if (wake_.wait_for(lock, kPatience, [this] { return over_; }))
        return;
    do {
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
        Draw(passed.count());
    } while (!wake_.wait_for(lock, kRefresh, [this] { return over_; }));
    WriteError("\r\033[K");
}

void Progress::Draw(double seconds) const
{
    const long long total = total_.load(std::memory_order_relaxed);
    const long long done = std::min(done_.load(std::memory_order_relaxed), total);
    std::string bar(kBarCells, ' ');
    std::string figure;
    if (total > 0) {
        std::fill_n(bar.begin(), done * kBarCells / total, '#');
        figure = std::to_string(done * 100 / total) + "%";
    } else {
        std::fill_n(bar.begin() + static_cast<int>(seconds * 10) % (kBarCells - 3), 3, '#');
        figure = std::to_string(static_cast<int>(seconds)) + " s";
    }
    WriteError("\r" + what_ + " [" + bar + "] " + figure + "\033[K");
}

} // namespace zntool
