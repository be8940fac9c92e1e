#include "platform/threads.h"

#include <new>
#include <windows.h>

namespace zn::platform {

namespace {

struct Start {
    ThreadFunction func;
    void* param;
};

// The system's calling convention around the function's own.
DWORD WINAPI RunThread(void* argument)
{
    const Start start = *static_cast<Start*>(argument);
    delete static_cast<Start*>(argument);
    return start.func(start.param);
}

} // namespace

ThreadHandle StartThread(ThreadFunction func, void* param) noexcept
{
    auto* start = new (std::nothrow) Start{func, param};
    if (!start) {
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    const HANDLE thread = ::CreateThread(nullptr, 0, RunThread, start, 0, nullptr);
    if (!thread)
        delete start;
    return thread;
}

bool CloseThread(ThreadHandle thread) noexcept
{
    return ::CloseHandle(thread) != 0;
}

std::uint32_t SuspendThread(ThreadHandle thread) noexcept
{
    const DWORD before = ::SuspendThread(thread);
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    if (before != kThreadFailed)
        ::GetThreadContext(thread, &context); // returns when the thread has stopped
    return before;
}

std::uint32_t ResumeThread(ThreadHandle thread) noexcept
{
    return ::ResumeThread(thread);
}

std::uint32_t WaitThread(ThreadHandle thread) noexcept
{
    return ::WaitForSingleObject(thread, INFINITE);
}

bool TerminateThread(ThreadHandle thread) noexcept
{
    return ::TerminateThread(thread, 0) != 0 && ::WaitForSingleObject(thread, INFINITE) == WAIT_OBJECT_0;
}

} // namespace zn::platform
