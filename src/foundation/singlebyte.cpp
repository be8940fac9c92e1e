#include "foundation/singlebyte.h"

namespace zn {

namespace {

// Windows 1252 from 0x80 to 0x9F; from 0xA0 on it is Latin-1. The five bytes without a character
// stand for the control characters of the same number, as Windows has it, so that they survive.
constexpr char16_t k1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

constexpr unsigned kWindows1252 = 1252;
constexpr unsigned kLatin1 = 28591;
constexpr unsigned kAscii = 20127;

} // namespace

bool IsOwnSingleByte(unsigned codePage) noexcept
{
    return codePage == kWindows1252 || codePage == kLatin1 || codePage == kAscii;
}

char16_t DecodeByte(unsigned codePage, unsigned char byte) noexcept
{
    if (codePage == kLatin1 || (codePage == kWindows1252 && byte >= 0xA0))
        return byte;
    return codePage == kWindows1252 ? k1252[byte - 0x80] : char16_t(0xFFFD);
}

unsigned char EncodeByte(unsigned codePage, char16_t unit) noexcept
{
    if (codePage == kLatin1 || (codePage == kWindows1252 && unit >= 0xA0)) {
        if (unit < 0x100)
            return static_cast<unsigned char>(unit);
    }
    if (codePage == kWindows1252 && unit <= 0x2122) {
        for (unsigned i = 0; i < 32; ++i) {
            if (k1252[i] == unit)
                return static_cast<unsigned char>(0x80 + i);
        }
    }
    return 0;
}

} // namespace zn
