#include "platform/platform.h"

#include <windows.h>

namespace zn::platform {

namespace {

// The system's calls keep no state between calls; a handle only says that the page is known.
char known;

// Bytes of the character that a text begins with; the system tells only whether a byte leads another.
int CharLength(unsigned codePage, std::string_view bytes) noexcept
{
    const auto lead = static_cast<BYTE>(bytes[0]);
    if (codePage == 54936 && bytes.size() >= 4 && lead >= 0x81 && bytes[1] >= '0' && bytes[1] <= '9')
        return 4;
    return lead >= 0x80 && bytes.size() >= 2 && IsDBCSLeadByteEx(codePage, lead) ? 2 : 1;
}

// Whether WideCharToMultiByte can report a missing character for the page.
bool ReportsMissing(unsigned codePage) noexcept
{
    return codePage != 54936 && codePage != 65000 && !(codePage >= 50220 && codePage <= 50229);
}

} // namespace

CodePageConverter::CodePageConverter(unsigned codePage, Direction direction) noexcept
    : handle_(IsValidCodePage(codePage) ? &known : nullptr), codePage_(codePage), direction_(direction)
{
}

CodePageConverter::~CodePageConverter() = default;

ConvertResult CodePageConverter::Decode(std::string_view bytes, char16_t* out, std::size_t room) noexcept
{
    ConvertResult result{0, 0, ConvertStop::End};
    const DWORD flags = ReportsMissing(codePage_) ? MB_ERR_INVALID_CHARS : 0;
    while (result.read < bytes.size()) {
        const std::string_view rest = bytes.substr(result.read);
        const int length = CharLength(codePage_, rest);
        wchar_t units[4];
        const int count = MultiByteToWideChar(codePage_, flags, rest.data(), length, units, 4);
        if (count <= 0) {
            result.stop = ConvertStop::BadInput;
            break;
        }
        if (result.written + static_cast<std::size_t>(count) > room) {
            result.stop = ConvertStop::NoRoom;
            break;
        }
        for (int i = 0; i < count; ++i)
            out[result.written++] = static_cast<char16_t>(units[i]);
        result.read += static_cast<std::size_t>(length);
    }
    return result;
}

ConvertResult CodePageConverter::Encode(std::u16string_view text, char* out, std::size_t room) noexcept
{
    ConvertResult result{0, 0, ConvertStop::End};
    const bool reports = ReportsMissing(codePage_);
    while (result.read < text.size()) {
        const char16_t first = text[result.read];
        const bool pair = first >= 0xD800 && first < 0xDC00 && result.read + 1 < text.size() &&
                          (text[result.read + 1] & 0xFC00) == 0xDC00;
        if (!pair && (first & 0xF800) == 0xD800) {
            result.stop = ConvertStop::BadInput;
            break;
        }
        const wchar_t units[2] = {static_cast<wchar_t>(first),
                                  pair ? static_cast<wchar_t>(text[result.read + 1]) : L'\0'};
        char bytes[16];
        BOOL missing = FALSE;
        const int count = WideCharToMultiByte(codePage_, reports ? WC_NO_BEST_FIT_CHARS : 0, units, pair ? 2 : 1, bytes,
                                              sizeof(bytes), nullptr, reports ? &missing : nullptr);
        if (count <= 0 || missing) {
            result.stop = ConvertStop::BadInput;
            break;
        }
        if (result.written + static_cast<std::size_t>(count) > room) {
            result.stop = ConvertStop::NoRoom;
            break;
        }
        for (int i = 0; i < count; ++i)
            out[result.written++] = bytes[i];
        result.read += pair ? 2 : 1;
    }
    return result;
}

std::size_t CodePageConverter::Finish(char*, std::size_t) noexcept
{
    return 0;
}

} // namespace zn::platform
