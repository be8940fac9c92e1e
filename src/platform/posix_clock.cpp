#include "platform/platform.h"

#include <ctime>

namespace zn::platform {

ClockTime LocalTime() noexcept
{
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    localtime_r(&now, &tm);
    return {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec};
}

} // namespace zn::platform
