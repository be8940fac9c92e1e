// The porting contract for threads (posix_threads.cpp, windows_threads.cpp); platform.h says what holds for all calls.
//
// A thread is known by a handle, which is closed once. The thread runs on when its handle is closed, and the handle
// stays good when the thread has ended. A call on a handle that is closed, or never was one, fails with error 6 -
// unless the system has given the same handle away again, which the POSIX side never does.
#pragma once

#include <cstdint>

namespace zn::platform {

using ThreadHandle = void*;
using ThreadFunction = std::uint32_t (*)(void* param);

// What the three calls with a number give when they fail.
inline constexpr std::uint32_t kThreadFailed = 0xFFFFFFFF;

// A thread with the default stack that runs func(param) at once; null when the system gives none.
ThreadHandle StartThread(ThreadFunction func, void* param) noexcept;
bool CloseThread(ThreadHandle handle) noexcept;

// Both give the suspend count before the call. A thread runs while its count is 0; the count goes to 127, and one more
// fails with error 156. When SuspendThread returns, another thread has stopped; for the caller's own thread it returns
// when that is resumed. The thread stops wherever it is, with the locks it holds. A thread that has ended fails with
// error 5, resuming it gives 0.
std::uint32_t SuspendThread(ThreadHandle handle) noexcept;
std::uint32_t ResumeThread(ThreadHandle handle) noexcept;

// Returns 0 when the thread has ended, however long that takes.
std::uint32_t WaitThread(ThreadHandle handle) noexcept;

// Ends a thread wherever it is, suspended or not, and returns when it runs its function no more. Nothing is unwound: no
// destructor runs, memory stays allocated, locks stay locked - those inside the heap or a stream too. Does nothing to a
// thread that has ended, and does not return in the thread that it ends.
bool TerminateThread(ThreadHandle handle) noexcept;

} // namespace zn::platform
