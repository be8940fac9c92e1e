#include "platform/platform.h"

#include <cstdlib>
#include <windows.h>

namespace zn::platform {

int ErrorNumber(int systemError) noexcept
{
    return systemError;
}

int LastError() noexcept
{
    return static_cast<int>(::GetLastError());
}

std::string_view Environment(const char* name) noexcept
{
    const char* value = std::getenv(name);
    return value ? std::string_view(value) : std::string_view();
}

} // namespace zn::platform
