#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace zntool {
namespace {

constexpr int kInterrupted = 130; // 128 and the number of the signal, as shells have it

std::atomic<bool> finishing = false;
std::atomic<bool> wanted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void End(int number)
{
    static_cast<void>(std::signal(number, End)); // where it was taken back
    wanted = true;
    if (!finishing)
        std::_Exit(kInterrupted);
}

} // namespace

Interruptible::Interruptible()
{
    static_cast<void>(std::signal(SIGINT, End));
    static_cast<void>(std::signal(SIGTERM, End));
}

Interruptible::~Interruptible()
{
    static_cast<void>(std::signal(SIGINT, SIG_DFL));
    static_cast<void>(std::signal(SIGTERM, SIG_DFL));
}

Finish::Finish()
{
    finishing = true;
}

Finish::~Finish()
{
    finishing = false;
    if (wanted)
        std::_Exit(kInterrupted);
}

} // namespace zntool
