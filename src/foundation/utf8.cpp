#include "foundation/utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zn {

namespace {

template <class Unit, std::size_t kCount>
bool AllAscii(const Unit (&block)[kCount]) noexcept
{
    constexpr std::uint64_t kHigh = sizeof(Unit) == 1 ? 0x8080808080808080u : 0xFF80FF80FF80FF80u;
    std::uint64_t words[(sizeof block + 7) / 8] = {};
    std::memcpy(words, block, sizeof block);
    std::uint64_t all = 0;
    for (const std::uint64_t word : words)
        all |= word;
    return (all & kHigh) == 0;
}

// One step of the ASCII path: copies a block when there is that much and all of it is ASCII. The loop has a fixed
// count and works on local copies, which is what compilers turn into a few vector instructions.
template <std::size_t kCount, class From, class To>
bool CopyAsciiBlock(const From* in, std::size_t left, To* out) noexcept
{
    if (left < kCount)
        return false;
    From block[kCount];
    std::memcpy(block, in, sizeof block);
    if (!AllAscii(block))
        return false;
    To put[kCount];
    for (std::size_t i = 0; i < kCount; ++i)
        put[i] = static_cast<To>(block[i]);
    std::memcpy(out, put, sizeof put);
    return true;
}

template <class From, class To>
std::size_t CopyAsciiRun(const From* in, std::size_t count, To* out) noexcept
{
    std::size_t at = 0;
    while (CopyAsciiBlock<16>(in + at, count - at, out + at))
        at += 16;
    // The rest of the run is shorter than that: most texts of a table are, too.
    if (CopyAsciiBlock<8>(in + at, count - at, out + at))
        at += 8;
    if (CopyAsciiBlock<4>(in + at, count - at, out + at))
        at += 4;
    for (; at < count && static_cast<std::make_unsigned_t<From>>(in[at]) < 0x80; ++at)
        out[at] = static_cast<To>(in[at]);
    return at;
}

// One character beyond ASCII, or one maximal malformed part.
struct Sequence {
    char32_t code;
    std::size_t length;
};

Sequence ReadSequence(const unsigned char* at, std::size_t left) noexcept
{
    constexpr char32_t kBad = 0xFFFD;
    const unsigned char lead = at[0];
    if (lead < 0xC2 || lead > 0xF4)
        return {kBad, 1};
    // The second byte's range rules out what is too long for its value, surrogates and beyond U+10FFFF.
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (left < 2 || at[1] < low || at[1] > high)
        return {kBad, 1};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = static_cast<char32_t>(lead & (0x7F >> length)) << 6 | (at[1] & 0x3F);
    for (std::size_t i = 2; i < length; ++i) {
        if (i >= left || (at[i] & 0xC0) != 0x80)
            return {kBad, i};
        code = code << 6 | (at[i] & 0x3F);
    }
    return {code, length};
}

// Three bytes of a character whose lead byte asks for no narrower range of the second.
bool IsPlainTriple(const unsigned char* at) noexcept
{
    return at[0] > 0xE0 && at[0] < 0xF0 && at[0] != 0xED && (at[1] & 0xC0) == 0x80 && (at[2] & 0xC0) == 0x80;
}

char* PutSequence(char32_t code, char* out) noexcept
{
    if (code < 0x800) {
        *out++ = static_cast<char>(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            *out++ = static_cast<char>(0xE0 | code >> 12);
        } else {
            *out++ = static_cast<char>(0xF0 | code >> 18);
            *out++ = static_cast<char>(0x80 | (code >> 12 & 0x3F));
        }
        *out++ = static_cast<char>(0x80 | (code >> 6 & 0x3F));
    }
    *out++ = static_cast<char>(0x80 | (code & 0x3F));
    return out;
}

// The sum of a small number per unit. Runs this short can't overflow a 16-bit sum, of which a vector holds more.
template <class View, class Count>
std::size_t SumOf(View text, Count count) noexcept
{
    constexpr std::size_t kRun = 1024;
    std::size_t total = 0;
    while (!text.empty()) {
        std::uint16_t sum = 0;
        for (const auto unit : text.substr(0, kRun))
            sum = static_cast<std::uint16_t>(sum + count(unit));
        total += sum;
        text.remove_prefix(std::min(text.size(), kRun));
    }
    return total;
}

} // namespace

std::size_t CopyAscii(std::string_view bytes, char16_t* out, std::size_t room) noexcept
{
    return CopyAsciiRun(bytes.data(), std::min(bytes.size(), room), out);
}

std::size_t CopyAscii(std::u16string_view text, char* out, std::size_t room) noexcept
{
    return CopyAsciiRun(text.data(), std::min(text.size(), room), out);
}

Converted DecodeUtf8(std::string_view bytes, char16_t* out, std::size_t room) noexcept
{
    const auto* const in = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t at = 0;
    std::size_t put = 0;
    while (at < bytes.size() && put + 2 <= room) {
        if (in[at] < 0x80) {
            const std::size_t run = CopyAscii(bytes.substr(at), out + put, room - put);
            at += run;
            put += run;
            continue;
        }
        // Most text beyond ASCII has runs of three bytes each: those that need no closer look are taken here.
        for (; at + 3 <= bytes.size() && put + 2 <= room && IsPlainTriple(in + at); at += 3)
            out[put++] = static_cast<char16_t>((in[at] & 0x0F) << 12 | (in[at + 1] & 0x3F) << 6 | (in[at + 2] & 0x3F));
        if (put + 2 > room || at == bytes.size() || in[at] < 0x80)
            continue;
        const Sequence next = ReadSequence(in + at, bytes.size() - at);
        at += next.length;
        put += PutCodePoint(next.code, out + put);
    }
    return {at, put};
}

Converted EncodeUtf8(std::u16string_view text, char* out, std::size_t room) noexcept
{
    std::size_t at = 0;
    char* put = out;
    char* const end = out + room;
    while (at < text.size() && end - put >= 4) {
        const char16_t unit = text[at];
        if (unit < 0x80) {
            const std::size_t run = CopyAscii(text.substr(at), put, static_cast<std::size_t>(end - put));
            at += run;
            put += run;
        } else if (!IsSurrogate(unit)) {
            put = PutSequence(unit, put);
            ++at;
        } else if (IsHighSurrogate(unit) && at + 1 < text.size() && IsLowSurrogate(text[at + 1])) {
            put = PutSequence(JoinSurrogates(unit, text[at + 1]), put);
            at += 2;
        } else {
            break;
        }
    }
    return {at, static_cast<std::size_t>(put - out)};
}

std::size_t CountUtf16OfUtf8(std::string_view bytes) noexcept
{
    return SumOf(bytes, [](char ch) {
        const auto byte = static_cast<unsigned char>(ch);
        return ((byte & 0xC0) != 0x80) + (byte >= 0xF0);
    });
}

std::size_t CountUtf8OfUtf16(std::u16string_view text) noexcept
{
    return SumOf(text, [](char16_t unit) { return 1 + (unit >= 0x80) + (unit >= 0x800) - IsSurrogate(unit); });
}

} // namespace zn
