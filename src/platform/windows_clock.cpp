#include "platform/platform.h"

#include <windows.h>

namespace zn::platform {

ClockTime LocalTime() noexcept
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

} // namespace zn::platform
