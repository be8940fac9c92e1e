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

bool CloseThread(ThreadHandle handle) noexcept
{
    return ::CloseHandle(handle) != 0;
}

std::uint32_t SuspendThread(ThreadHandle handle) noexcept
{
    const DWORD before = ::SuspendThread(handle);
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    if (before != kThreadFailed)
        ::GetThreadContext(handle, &context); // returns when the thread has stopped
    return before;
}

std::uint32_t ResumeThread(ThreadHandle handle) noexcept
{
    return ::ResumeThread(handle);
}

std::uint32_t WaitThread(ThreadHandle handle) noexcept
{
    return ::WaitForSingleObject(handle, INFINITE);
}

bool TerminateThread(ThreadHandle handle) noexcept
{
    return ::TerminateThread(handle, 0) != 0 && ::WaitForSingleObject(handle, INFINITE) == WAIT_OBJECT_0;
}

} // namespace zn::platform
