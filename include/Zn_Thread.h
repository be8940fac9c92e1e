// One thread of the system and the function it runs.
//
//     std::uint32_t Fetch(void* param);
//     ...
//     Zn_Thread thread;
//     if (thread.CreateThread(Fetch, &orders, 0, 0) == 0)
//         thread.WaitThread();
//
// The object holds a handle, not the thread: destroying it closes the handle and leaves the thread running. Copies hold
// the same handle, and the first of them to close it closes it for all; a closed handle does no harm, calls on it fail.
// The object itself is not locked: the thread that owns it drives it.
//
// A thread that is suspended keeps the locks it holds, so that whoever needs one of them - the heap's, a stream's, a
// mutex of yours - waits until it is resumed. A thread that is terminated never gives them back, runs no destructor and
// frees nothing. Prefer a flag that the function looks at. On POSIX systems the signal SIGRTMIN+7 stops and ends
// threads (SIGUSR2 where there are no real-time signals); a thread that blocks it can't be stopped.
#pragma once

#include "Zn_Base.h"

class ZN_API Zn_Thread {
public:
    using Func = std::uint32_t (*)(void* param);

    Zn_Thread() noexcept = default;
    Zn_Thread(const Zn_Thread&) noexcept = default;
    Zn_Thread& operator=(const Zn_Thread&) noexcept = default;
    virtual ~Zn_Thread();

    // Start func(param): 0, or -1 with lastError 22 without a function or when the system gives no thread. Detached 0
    // keeps the thread's handle and closes one that was kept; any other value leaves both as they are. The integer
    // arguments named reserved mean nothing.
    int CreateThread(Func func, void* param, int reserved, int detached);
    int BeginThread(int reserved);
    // Says what BeginThread runs; a null param keeps the one stored. -1 with lastError 22 for a null function.
    int SetThreadFunc(Func func, void* param);
    // Null is stored too.
    int SetThreadParam(void* param) noexcept;

    // The suspend count before the call, all bits set on failure. The thread runs while its count is 0; it may be 127.
    std::uint32_t SuspendThread() const noexcept;
    std::uint32_t ResumeThread() const noexcept;
    // Waits until the thread ends, without limit, and returns 0. When it can't wait, it terminates the thread and
    // returns what the wait gave: -1, also without a handle.
    int WaitThread() const noexcept;
    // Ends the thread where it stands and closes the handle; 0, also without a handle. -1 with the system's error in
    // lastError when it can't; the handle is forgotten, and not closed, then too.
    int TerminateThread() noexcept;
    // Terminates unless keepRunning is set.
    int StopThread(int keepRunning) noexcept;

    std::int32_t lastError = 0;
    std::int32_t started = 0; // 1 from the first attempt to create a thread on
    void* handle = nullptr;

private:
    void CloseHandle() noexcept;

    void* param_ = nullptr;
    Func func_ = nullptr;
};

// Compares two version texts of four numbers, "2004, 7, 15, 2": -1, 0 or 1. A number that is missing, and all behind
// it, counts as 0. Callers rely on the first two making one number of 32 bits with a sign (the first times 65536, or
// the second), and on the last two doing so.
ZN_API int ZnCompareVersion(const char16_t* a, const char16_t* b) noexcept;
