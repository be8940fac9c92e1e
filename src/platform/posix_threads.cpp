// A thread is stopped and ended by a signal, whose handler parks the thread or jumps out of its function. Programs
// leave that signal alone: they neither handle it nor block it in threads that are to be suspended or terminated.
#include "platform/platform.h"
#include "platform/threads.h"

#include <atomic>
#include <cerrno>
#include <csetjmp>
#include <csignal>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <pthread.h>

namespace zn::platform {

namespace {

constexpr int kInvalidHandle = 6;
constexpr int kAccessDenied = 5;
constexpr int kOutOfMemory = 8;
constexpr int kTooManySuspends = 156;

constexpr std::uint32_t kMostSuspends = 127;
constexpr std::uint32_t kEndOrder = 0x80000000;

int ControlSignal() noexcept
{
#ifdef SIGRTMIN
    return SIGRTMIN + 7;
#else
    return SIGUSR2;
#endif
}

enum class Status { Running, Parked, Ended };

struct Thread {
    Thread(ThreadFunction function, void* parameter) noexcept : func(function), param(parameter) {}

    void Become(Status next) noexcept
    {
        status = next;
        Announce();
    }
    void Announce() noexcept
    {
        ++events;
        events.notify_all();
    }
    template <class Condition>
    void WaitUntil(Condition condition) noexcept
    {
        for (std::uint32_t seen = events; !condition(); seen = events)
            events.wait(seen);
    }
    bool HasEnded() const noexcept { return status == Status::Ended; }

    const ThreadFunction func;
    void* const param;
    pthread_t id{};
    sigjmp_buf out{};
    std::mutex lock;                       // held to give an order, and by the thread to end: no order finds it gone
    std::atomic<std::uint32_t> orders = 0; // the suspend count, and kEndOrder
    std::atomic<Status> status = Status::Running;
    std::atomic<std::uint32_t> events = 0; // counts what WaitUntil may be waiting for
};

thread_local Thread* current = nullptr;

// Handles and their threads. A handle is a number that counts up, so that none is given twice.
class Table {
public:
    ThreadHandle Add(const std::shared_ptr<Thread>& thread)
    {
        const std::lock_guard guard(lock_);
        threads_.emplace(last_ + 4, thread);
        last_ += 4;
        return reinterpret_cast<ThreadHandle>(last_); // NOLINT(performance-no-int-to-ptr): a number, never followed
    }

    std::shared_ptr<Thread> Find(ThreadHandle handle) noexcept
    {
        const std::lock_guard guard(lock_);
        const auto found = threads_.find(reinterpret_cast<std::uintptr_t>(handle));
        if (found != threads_.end())
            return found->second;
        SetLastError(kInvalidHandle);
        return nullptr;
    }

    bool Remove(ThreadHandle handle) noexcept
    {
        const std::lock_guard guard(lock_);
        if (threads_.erase(reinterpret_cast<std::uintptr_t>(handle)) != 0)
            return true;
        SetLastError(kInvalidHandle);
        return false;
    }

private:
    std::mutex lock_;
    std::map<std::uintptr_t, std::shared_ptr<Thread>> threads_;
    std::uintptr_t last_ = 0;
};

// Lives to the end of the process: threads may outlive its static objects.
Table& Threads() noexcept
{
    alignas(Table) static unsigned char memory[sizeof(Table)];
    static auto* table = new (memory) Table();
    return *table;
}

// Keeps orders to the calling thread waiting, so that it is not stopped with a lock of ours.
class Undisturbed {
public:
    Undisturbed() noexcept
    {
        sigset_t control;
        sigemptyset(&control);
        sigaddset(&control, ControlSignal());
        pthread_sigmask(SIG_BLOCK, &control, &before_);
    }
    ~Undisturbed() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;

private:
    sigset_t before_{};
};

void Obey(int)
{
    Thread* self = current;
    if (!self)
        return;
    const int savedError = errno;
    std::uint32_t orders = self->orders;
    while (orders != 0 && (orders & kEndOrder) == 0) {
        self->Become(Status::Parked);
        self->orders.wait(orders);
        self->Become(Status::Running);
        orders = self->orders;
    }
    if (orders != 0)
        siglongjmp(self->out, 1);
    errno = savedError;
}

bool InstallHandler() noexcept
{
    struct sigaction action {};
    action.sa_handler = Obey;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask); // a parked thread handles no other signal
    return sigaction(ControlSignal(), &action, nullptr) == 0;
}

// Orders reach the thread while its function runs.
void CallFunction(Thread& self) noexcept
{
    if (sigsetjmp(self.out, 1) != 0)
        return; // by an order to end; the signal is blocked again
    sigset_t control;
    sigemptyset(&control);
    sigaddset(&control, ControlSignal());
    pthread_sigmask(SIG_UNBLOCK, &control, nullptr);
    self.func(self.param);
    pthread_sigmask(SIG_BLOCK, &control, nullptr);
}

void* RunThread(void* argument)
{
    const std::unique_ptr<std::shared_ptr<Thread>> self(static_cast<std::shared_ptr<Thread>*>(argument));
    Thread& thread = **self;
    current = &thread;
    CallFunction(thread);
    current = nullptr;
    const std::lock_guard guard(thread.lock);
    thread.Become(Status::Ended);
    return nullptr;
}

bool Create(Thread& thread, void* argument) noexcept
{
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0)
        return false;
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    // The lock: whoever gives the thread an order finds its id.
    const std::lock_guard guard(thread.lock);
    const int error = pthread_create(&thread.id, &attributes, RunThread, argument);
    pthread_attr_destroy(&attributes);
    if (error != 0)
        errno = error;
    return error == 0;
}

} // namespace

ThreadHandle StartThread(ThreadFunction func, void* param) noexcept
{
    static const bool ready = InstallHandler();
    if (!ready)
        return nullptr;
    const Undisturbed undisturbed; // the new thread begins with the signal blocked as well
    ThreadHandle handle = nullptr;
    try {
        const auto thread = std::make_shared<Thread>(func, param);
        auto own = std::make_unique<std::shared_ptr<Thread>>(thread);
        handle = Threads().Add(thread);
        if (Create(*thread, own.get())) {
            static_cast<void>(own.release()); // the thread's now
            return handle;
        }
    } catch (const std::bad_alloc&) {
        SetLastError(kOutOfMemory);
    }
    if (handle)
        Threads().Remove(handle);
    return nullptr;
}

bool CloseThread(ThreadHandle handle) noexcept
{
    const Undisturbed undisturbed;
    return Threads().Remove(handle);
}

std::uint32_t SuspendThread(ThreadHandle handle) noexcept
{
    std::shared_ptr<Thread> thread;
    std::uint32_t before = 0;
    {
        const Undisturbed undisturbed;
        thread = Threads().Find(handle);
        if (!thread)
            return kThreadFailed;
        const std::lock_guard guard(thread->lock);
        before = thread->orders & ~kEndOrder;
        if (thread->HasEnded() || before == kMostSuspends) {
            SetLastError(thread->HasEnded() ? kAccessDenied : kTooManySuspends);
            return kThreadFailed;
        }
        ++thread->orders;
        pthread_kill(thread->id, ControlSignal());
    }
    if (thread.get() == current) // was parked where the signal was let through, and runs again
        return before;
    thread->WaitUntil([&] { return thread->status != Status::Running || thread->orders == 0; });
    if (!thread->HasEnded())
        return before;
    SetLastError(kAccessDenied);
    return kThreadFailed;
}

std::uint32_t ResumeThread(ThreadHandle handle) noexcept
{
    const Undisturbed undisturbed;
    const std::shared_ptr<Thread> thread = Threads().Find(handle);
    if (!thread)
        return kThreadFailed;
    const std::lock_guard guard(thread->lock);
    const std::uint32_t before = thread->HasEnded() ? 0 : thread->orders & ~kEndOrder;
    if (before > 0) {
        --thread->orders;
        thread->orders.notify_all();
        thread->Announce();
    }
    return before;
}

std::uint32_t WaitThread(ThreadHandle handle) noexcept
{
    std::shared_ptr<Thread> thread;
    {
        const Undisturbed undisturbed;
        thread = Threads().Find(handle);
    }
    if (!thread)
        return kThreadFailed;
    thread->WaitUntil([&] { return thread->HasEnded(); });
    return 0;
}

bool TerminateThread(ThreadHandle handle) noexcept
{
    std::shared_ptr<Thread> thread;
    {
        const Undisturbed undisturbed;
        thread = Threads().Find(handle);
        if (!thread)
            return false;
        {
            const std::lock_guard guard(thread->lock);
            if (thread->HasEnded())
                return true;
            thread->orders |= kEndOrder;
            thread->orders.notify_all();
            pthread_kill(thread->id, ControlSignal());
        }
        if (thread.get() == current)
            thread.reset(); // nothing of this call is unwound: it ends where the signal is let through
    }
    thread->WaitUntil([&] { return thread->HasEnded(); });
    return true;
}

} // namespace zn::platform
