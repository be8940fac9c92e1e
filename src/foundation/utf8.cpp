#include "foundation/utf8.h"

#include "foundation/utf8_wide.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

#if defined(__SSE2__) || defined(_M_X64)
#    define ZN_HAS_SSE2 1
#    include <emmintrin.h>
#endif

namespace zn {

namespace {

// Copies a block of units as if all were ASCII and returns how many at its front are: what was written for those
// behind them means nothing. Blocks have 4, 8 or 16 units.
#ifdef ZN_HAS_SSE2
template <std::size_t kCount>
std::size_t CountFront(__m128i marks) noexcept
{
    return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(_mm_movemask_epi8(marks)) | 1u << kCount));
}

// 4, 8 or 16 bytes, without a way through the stack.
template <std::size_t kBytes>
__m128i LoadBlock(const void* in) noexcept
{
    if constexpr (kBytes == 4) {
        std::int32_t bytes;
        std::memcpy(&bytes, in, sizeof bytes);
        return _mm_cvtsi32_si128(bytes);
    } else if constexpr (kBytes == 8) {
        return _mm_loadl_epi64(static_cast<const __m128i*>(in));
    } else {
        return _mm_loadu_si128(static_cast<const __m128i*>(in));
    }
}

template <std::size_t kBytes>
void StoreBlock(__m128i block, void* out) noexcept
{
    if constexpr (kBytes == 4) {
        const std::int32_t bytes = _mm_cvtsi128_si32(block);
        std::memcpy(out, &bytes, sizeof bytes);
    } else if constexpr (kBytes == 8) {
        _mm_storel_epi64(static_cast<__m128i*>(out), block);
    } else {
        _mm_storeu_si128(static_cast<__m128i*>(out), block);
    }
}

template <std::size_t kCount>
std::size_t CopyBlock(const char* in, char16_t* out) noexcept
{
    const __m128i bytes = LoadBlock<kCount>(in);
    const __m128i low = _mm_unpacklo_epi8(bytes, _mm_setzero_si128());
    StoreBlock<kCount == 4 ? 8 : 16>(low, out);
    if constexpr (kCount == 16) {
        const __m128i high = _mm_unpackhi_epi8(bytes, _mm_setzero_si128());
        StoreBlock<16>(high, out + 8);
    }
    return CountFront<kCount>(bytes);
}

template <std::size_t kCount>
std::size_t CopyBlock(const char16_t* in, char* out) noexcept
{
    const __m128i low = LoadBlock<(kCount == 4 ? 8 : 16)>(in);
    const __m128i high = kCount == 16 ? LoadBlock<kCount>(in + kCount / 2) : _mm_setzero_si128();
    StoreBlock<kCount>(_mm_packus_epi16(low, high), out);
    // Sets the highest bit of what is 0x80 or more, and keeps it in the byte.
    const __m128i step = _mm_set1_epi16(0x7F80);
    return CountFront<kCount>(_mm_packs_epi16(_mm_adds_epu16(low, step), _mm_adds_epu16(high, step)));
}
#else
template <std::size_t kCount, class From, class To>
std::size_t CopyBlock(const From* in, To* out) noexcept
{
    From block[kCount]; // a fixed count and local copies are what compilers turn into vector instructions
    std::memcpy(block, in, sizeof block);
    To put[kCount];
    unsigned all = 0;
    for (std::size_t i = 0; i < kCount; ++i) {
        put[i] = static_cast<To>(block[i]);
        all |= static_cast<std::make_unsigned_t<From>>(block[i]);
    }
    std::memcpy(out, put, sizeof put);
    std::size_t front = all < 0x80 ? kCount : 0;
    while (front < kCount && static_cast<std::make_unsigned_t<From>>(block[front]) < 0x80)
        ++front;
    return front;
}
#endif

// A run of at least one block. The last block ends with the text and may copy once more what the one before has.
template <std::size_t kCount, class From, class To>
std::size_t CopyBlocks(const From* in, std::size_t count, To* out) noexcept
{
    for (std::size_t at = 0;;) {
        const std::size_t front = CopyBlock<kCount>(in + at, out + at);
        if (front < kCount || at + kCount == count)
            return at + front;
        at = std::min(at + kCount, count - kCount);
    }
}

template <class From, class To>
std::size_t CopyAsciiRun(const From* in, std::size_t count, To* out) noexcept
{
    if (count >= 16)
        return CopyBlocks<16>(in, count, out);
    if (count >= 8)
        return CopyBlocks<8>(in, count, out);
    if (count >= 4)
        return CopyBlocks<4>(in, count, out);
    std::size_t at = 0;
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

const WideUtf8* const ownWideUtf8 = FindWideUtf8();

// Where wide vectors get no further than that, the next so many units are left to the plain way before they try again.
static constexpr std::size_t kStretch = 64;

Converted DecodeUtf8(std::string_view bytes, char16_t* out, std::size_t room, const WideUtf8* wide) noexcept
{
    const auto* const in = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t at = 0;
    std::size_t put = 0;
    std::size_t wideFrom = 0;
    while (at < bytes.size() && put + 2 <= room) {
        if (wide && at >= wideFrom) {
            const Converted front = wide->decode(bytes.substr(at), out + put, room - put);
            at += front.read;
            put += front.written;
            wideFrom = front.read < kStretch ? at + kStretch : at;
            if (at == bytes.size() || put + 2 > room)
                break;
        }
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

Converted EncodeUtf8(std::u16string_view text, char* out, std::size_t room, const WideUtf8* wide) noexcept
{
    std::size_t at = 0;
    char* put = out;
    char* const end = out + room;
    std::size_t wideFrom = 0;
    while (at < text.size() && end - put >= 4) {
        if (wide && at >= wideFrom) {
            const Converted front = wide->encode(text.substr(at), put, static_cast<std::size_t>(end - put));
            at += front.read;
            put += front.written;
            wideFrom = front.read < kStretch ? at + kStretch : at;
            if (at == text.size() || end - put < 4)
                break;
        }
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
