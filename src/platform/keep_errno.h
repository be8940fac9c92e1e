// The POSIX side alone: keeps the thread's errno over calls whose failure is no news to the caller.
#pragma once

#include <cerrno>

namespace zn::platform {

class KeepErrno {
public:
    KeepErrno() noexcept = default;
    ~KeepErrno() { errno = saved_; }
    KeepErrno(const KeepErrno&) = delete;
    KeepErrno& operator=(const KeepErrno&) = delete;

private:
    int saved_ = errno;
};

} // namespace zn::platform
