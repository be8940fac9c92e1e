#include "Zn_Thread.h"

#include "Zn_Text.h"
#include "platform/platform.h"
#include "platform/threads.h"

#include <utility>

namespace platform = zn::platform;

namespace {

constexpr int kNoThread = 22;

// What "%d, %d, %d, %d" reads: blanks in front of a number, a comma right behind it.
class VersionReader {
public:
    explicit VersionReader(const char16_t* text) noexcept : at_(text ? text : u"") {}

    // The two next numbers as one; signed, as it is compared.
    std::int32_t NextPair() noexcept
    {
        const std::uint32_t high = NextNumber();
        return static_cast<std::int32_t>(high << 16 | NextNumber());
    }

private:
    std::uint32_t NextNumber() noexcept
    {
        if (!first_ && *at_++ != u',')
            at_ = u"";
        first_ = false;
        while (zn_isspace(*at_))
            ++at_;
        const bool minus = *at_ == u'-';
        if (minus || *at_ == u'+')
            ++at_;
        if (!IsDigit())
            at_ = u"";
        std::uint32_t number = 0;
        for (; IsDigit(); ++at_)
            number = number * 10 + static_cast<std::uint32_t>(*at_ - u'0');
        return minus ? 0 - number : number;
    }
    bool IsDigit() const noexcept { return *at_ >= u'0' && *at_ <= u'9'; }

    const char16_t* at_;
    bool first_ = true;
};

} // namespace

Zn_Thread::~Zn_Thread()
{
    CloseHandle();
}

void Zn_Thread::CloseHandle() noexcept
{
    if (handle)
        platform::CloseThread(std::exchange(handle, nullptr));
}

int Zn_Thread::CreateThread(Func func, void* param, int, int detached)
{
    if (!func) {
        lastError = kNoThread;
        return -1;
    }
    if (!detached)
        CloseHandle();
    started = 1;
    const platform::ThreadHandle thread = platform::StartThread(func, param);
    if (!thread)
        lastError = kNoThread;
    if (!detached)
        handle = thread;
    else if (thread)
        platform::CloseThread(thread); // nobody else could
    return thread ? 0 : -1;
}

int Zn_Thread::BeginThread(int)
{
    return CreateThread(func_, param_, 0, 0);
}

int Zn_Thread::SetThreadFunc(Func func, void* param)
{
    if (!func) {
        lastError = kNoThread;
        return -1;
    }
    func_ = func;
    if (param)
        param_ = param;
    return 0;
}

int Zn_Thread::SetThreadParam(void* param) noexcept
{
    param_ = param;
    return 0;
}

std::uint32_t Zn_Thread::SuspendThread() const noexcept
{
    return platform::SuspendThread(handle);
}

std::uint32_t Zn_Thread::ResumeThread() const noexcept
{
    return platform::ResumeThread(handle);
}

int Zn_Thread::WaitThread() const noexcept
{
    const std::uint32_t result = platform::WaitThread(handle);
    if (result != 0)
        platform::TerminateThread(handle);
    return static_cast<int>(result);
}

int Zn_Thread::TerminateThread() noexcept
{
    if (!handle)
        return 0;
    const platform::ThreadHandle thread = std::exchange(handle, nullptr);
    if (!platform::TerminateThread(thread)) {
        lastError = zn_getlasterror();
        return -1;
    }
    platform::CloseThread(thread);
    return 0;
}

int Zn_Thread::StopThread(int keepRunning) noexcept
{
    return keepRunning ? 0 : TerminateThread();
}

int ZnCompareVersion(const char16_t* a, const char16_t* b) noexcept
{
    VersionReader left(a), right(b);
    for (int pair = 0; pair < 2; ++pair) {
        const std::int32_t mine = left.NextPair(), other = right.NextPair();
        if (mine != other)
            return mine < other ? -1 : 1;
    }
    return 0;
}
