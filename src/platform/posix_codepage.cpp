#include "platform/platform.h"

#include "platform/keep_errno.h"

#include <bit>
#include <cerrno>
#include <cstdint>
#include <iconv.h>
#include <mutex>

namespace zn::platform {

namespace {

using Direction = CodePageConverter::Direction;

struct PageName {
    unsigned codePage;
    const char* name;
};

constexpr PageName kPages[] = {
    {37, "IBM037"},         {437, "CP437"},         {500, "IBM500"},        {720, "CP720"},
    {737, "CP737"},         {775, "CP775"},         {850, "CP850"},         {852, "CP852"},
    {855, "CP855"},         {857, "CP857"},         {858, "CP858"},         {860, "CP860"},
    {861, "CP861"},         {862, "CP862"},         {863, "CP863"},         {864, "CP864"},
    {865, "CP865"},         {866, "CP866"},         {869, "CP869"},         {874, "CP874"},
    {932, "CP932"},         {936, "CP936"},         {949, "CP949"},         {950, "CP950"},
    {1250, "CP1250"},       {1251, "CP1251"},       {1253, "CP1253"},       {1254, "CP1254"},
    {1255, "CP1255"},       {1256, "CP1256"},       {1257, "CP1257"},       {1258, "CP1258"},
    {1361, "JOHAB"},        {10000, "MACINTOSH"},   {20866, "KOI8-R"},      {20932, "EUC-JP"},
    {20936, "GB2312"},      {21866, "KOI8-U"},      {28592, "ISO-8859-2"},  {28593, "ISO-8859-3"},
    {28594, "ISO-8859-4"},  {28595, "ISO-8859-5"},  {28596, "ISO-8859-6"},  {28597, "ISO-8859-7"},
    {28598, "ISO-8859-8"},  {28599, "ISO-8859-9"},  {28603, "ISO-8859-13"}, {28605, "ISO-8859-15"},
    {50220, "ISO-2022-JP"}, {50225, "ISO-2022-KR"}, {51932, "EUC-JP"},      {51936, "GB2312"},
    {51949, "EUC-KR"},      {54936, "GB18030"},     {65000, "UTF-7"},
};

const char* NameOf(unsigned codePage) noexcept
{
    for (const PageName& page : kPages) {
        if (page.codePage == codePage)
            return page.name;
    }
    return nullptr;
}

constexpr const char* kUtf16 = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

// Opening a conversion loads its tables, so a few are kept for the next text of the same page.
class IdleConversions {
public:
    iconv_t Take(unsigned codePage, Direction direction) noexcept
    {
        const std::lock_guard guard(lock_);
        for (Slot& slot : slots_) {
            if (slot.open && slot.codePage == codePage && slot.direction == direction) {
                slot.open = false;
                return slot.conversion;
            }
        }
        return nullptr;
    }

    void Give(iconv_t conversion, unsigned codePage, Direction direction) noexcept
    {
        {
            const std::lock_guard guard(lock_);
            for (Slot& slot : slots_) {
                if (!slot.open) {
                    slot = {conversion, codePage, direction, true};
                    return;
                }
            }
        }
        iconv_close(conversion);
    }

private:
    struct Slot {
        iconv_t conversion = nullptr;
        unsigned codePage = 0;
        Direction direction = Direction::ToUtf16;
        bool open = false;
    };
    std::mutex lock_;
    Slot slots_[8];
};

// Lives to the end of the process: texts of static lifetime may be converted while it ends.
IdleConversions& Idle() noexcept
{
    alignas(IdleConversions) static unsigned char memory[sizeof(IdleConversions)];
    static auto* idle = new (memory) IdleConversions();
    return *idle;
}

ConvertResult Run(iconv_t conversion, const void* input, std::size_t bytes, std::size_t unit, void* output,
                  std::size_t room, std::size_t outUnit) noexcept
{
    const KeepErrno keep;
    char* in = const_cast<char*>(static_cast<const char*>(input));
    char* out = static_cast<char*>(output);
    std::size_t inLeft = bytes;
    std::size_t outLeft = room;
    ConvertStop stop = ConvertStop::End;
    if (iconv(conversion, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1))
        stop = errno == E2BIG ? ConvertStop::NoRoom : ConvertStop::BadInput;
    return {(bytes - inLeft) / unit, (room - outLeft) / outUnit, stop};
}

} // namespace

CodePageConverter::CodePageConverter(unsigned codePage, Direction direction) noexcept
    : codePage_(codePage), direction_(direction)
{
    const KeepErrno keep;
    const char* name = NameOf(codePage);
    if (!name)
        return;
    iconv_t conversion = Idle().Take(codePage, direction);
    if (!conversion) {
        const bool decoding = direction == Direction::ToUtf16;
        conversion = iconv_open(decoding ? kUtf16 : name, decoding ? name : kUtf16);
        if (reinterpret_cast<std::intptr_t>(conversion) == -1)
            return;
    }
    handle_ = conversion;
}

CodePageConverter::~CodePageConverter()
{
    if (!handle_)
        return;
    const KeepErrno keep;
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    Idle().Give(handle_, codePage_, direction_);
}

ConvertResult CodePageConverter::Decode(std::string_view bytes, char16_t* out, std::size_t room) noexcept
{
    return Run(handle_, bytes.data(), bytes.size(), 1, out, room * sizeof(char16_t), sizeof(char16_t));
}

ConvertResult CodePageConverter::Encode(std::u16string_view text, char* out, std::size_t room) noexcept
{
    return Run(handle_, text.data(), text.size() * sizeof(char16_t), sizeof(char16_t), out, room, 1);
}

std::size_t CodePageConverter::Finish(char* out, std::size_t room) noexcept
{
    const KeepErrno keep;
    std::size_t left = room;
    iconv(handle_, nullptr, nullptr, &out, &left);
    return room - left;
}

} // namespace zn::platform
