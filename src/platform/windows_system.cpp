#include "platform/platform.h"

#include <algorithm>
#include <cstdlib>
#include <windows.h>

namespace zn::platform {

int ErrorNumber(int systemError) noexcept
{
    return systemError;
}

int SocketErrorNumber(int systemError) noexcept
{
    return systemError;
}

int LastError() noexcept
{
    return static_cast<int>(::GetLastError());
}

void SetLastError(int number) noexcept
{
    ::SetLastError(static_cast<DWORD>(number));
}

std::size_t ErrorText(int number, char16_t* out, std::size_t room) noexcept
{
    const DWORD saved = ::GetLastError();
    constexpr DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    wchar_t* text = nullptr;
    const DWORD length =
        ::FormatMessageW(flags, nullptr, static_cast<DWORD>(number), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                         reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const std::size_t shown = std::min<std::size_t>(length < 2 ? 0 : length - 2, room); // without its line end
    std::copy_n(text, shown, out);
    ::LocalFree(text);
    ::SetLastError(saved);
    return shown;
}

std::string_view Environment(const char* name) noexcept
{
    const char* value = std::getenv(name);
    return value ? std::string_view(value) : std::string_view();
}

} // namespace zn::platform
