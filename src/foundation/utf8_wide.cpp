#include "foundation/utf8_wide.h"

#if defined(__GNUC__) && defined(__x86_64__) && ZN_MAY_USE_WIDE_VECTORS

#    include <algorithm>
#    include <bit>
#    include <cstdint>

#    ifndef __clang__ // GCC 12 finds fault with what its own header leaves open on purpose
#        pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#    endif
#    include <immintrin.h>

namespace zn {
namespace {

#    define ZN_WIDE __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi,avx512vbmi2,bmi2,popcnt")))

// A text that goes on for less is not looked at for runs of ASCII, which cost more than they save where they are short.
constexpr std::size_t kWorthIt = 128;

// A bit for each of the first count places, of which there are 64 at most.
ZN_WIDE inline std::uint64_t First(std::size_t count) noexcept
{
    return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));
}

std::size_t FrontOf(std::uint64_t wrong, std::size_t most) noexcept
{
    return std::min(static_cast<std::size_t>(std::countr_zero(wrong)), most);
}

ZN_WIDE inline __m256i Bytes(int value) noexcept
{
    return _mm256_set1_epi8(static_cast<char>(value));
}

ZN_WIDE inline __m512i Units(int value) noexcept
{
    return _mm512_set1_epi16(static_cast<short>(value));
}

ZN_WIDE inline __m512i Lanes(int value) noexcept
{
    return _mm512_set1_epi32(value);
}

// The bytes that stand so far behind the places, as units.
template <int kDistance>
ZN_WIDE inline __m512i Behind(__m256i block, __m256i places) noexcept
{
    return _mm512_cvtepu8_epi16(_mm256_permutexvar_epi8(_mm256_add_epi8(places, Bytes(kDistance)), block));
}

// 32 bytes a step. Every byte is looked at in the place of its character's first byte, whose number the places of
// these bytes, pressed together, give.
ZN_WIDE Converted DecodeWide(std::string_view bytes, char16_t* out, std::size_t room) noexcept
{
    constexpr std::size_t kStep = 32;
    const __m256i places = _mm256_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20,
                                            21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31);
    std::size_t at = 0;
    std::size_t put = 0;
    while (at < bytes.size()) {
        for (; std::min(bytes.size() - at, room - put) >= kWorthIt; at += kStep, put += kStep) {
            const __m256i ascii = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes.data() + at));
            if (_mm256_movepi8_mask(ascii) != 0)
                break;
            _mm512_storeu_si512(out + put, _mm512_cvtepu8_epi16(ascii));
        }
        std::size_t count = std::min(bytes.size() - at, kStep);
        const __m256i block = _mm256_maskz_loadu_epi8(static_cast<__mmask32>(First(count)), bytes.data() + at);
        const std::uint64_t lead2 = _mm256_cmpge_epu8_mask(block, Bytes(0xC2));
        const std::uint64_t lead3 = _mm256_cmpge_epu8_mask(block, Bytes(0xE0));
        const std::uint64_t trail = _mm256_cmplt_epi8_mask(block, Bytes(0xC0));
        // What is no longer than it need be, no surrogate and no more than three bytes.
        const std::uint64_t upper = _mm256_cmpge_epu8_mask(block, Bytes(0xA0));
        const std::uint64_t narrow = (std::uint64_t{_mm256_cmpeq_epi8_mask(block, Bytes(0xE0))} << 1 & ~upper) |
                                     (std::uint64_t{_mm256_cmpeq_epi8_mask(block, Bytes(0xED))} << 1 & upper);
        const std::uint64_t other = _mm256_cmpge_epu8_mask(block, Bytes(0xF0)) |
                                    _mm256_cmpeq_epi8_mask(_mm256_and_si256(block, Bytes(0xFE)), Bytes(0xC0));
        const std::uint64_t wrong = (trail ^ (lead2 << 1 | lead3 << 2)) | narrow | other;
        if (wrong != 0) { // up to the character that it is in or that goes on behind the block
            count = FrontOf(wrong, count);
            if (count >= 1 && (lead2 >> (count - 1) & 1))
                count -= 1;
            else if (count >= 2 && (lead3 >> (count - 2) & 1))
                count -= 2;
        }
        const std::uint64_t leads = ~trail & First(count);
        const auto units = static_cast<std::size_t>(_mm_popcnt_u64(leads));
        if (units == 0 || units > room - put)
            break;
        const __m256i first = _mm256_maskz_compress_epi8(static_cast<__mmask32>(leads), places);
        const __m512i one = Behind<0>(block, first);
        const __m512i low = _mm512_and_si512(Behind<1>(block, first), Units(0x3F));
        const __m512i two = _mm512_or_si512(_mm512_slli_epi16(_mm512_and_si512(one, Units(0x1F)), 6), low);
        const __m512i three = _mm512_or_si512(_mm512_or_si512(_mm512_slli_epi16(one, 12), _mm512_slli_epi16(low, 6)),
                                              _mm512_and_si512(Behind<2>(block, first), Units(0x3F)));
        __m512i made = _mm512_mask_mov_epi16(one, _mm512_cmpge_epu16_mask(one, Units(0xC0)), two);
        made = _mm512_mask_mov_epi16(made, _mm512_cmpge_epu16_mask(one, Units(0xE0)), three);
        _mm512_mask_storeu_epi16(out + put, static_cast<__mmask32>(First(units)), made);
        at += count;
        put += units;
    }
    return {at, put};
}

// 16 units a step, each spread to the bytes that it may need; those that it does need are pressed together.
ZN_WIDE Converted EncodeWide(std::u16string_view text, char* out, std::size_t room) noexcept
{
    constexpr std::size_t kStep = 16;
    constexpr std::size_t kAscii = 32; // units of a step that has nothing else
    std::size_t at = 0;
    std::size_t put = 0;
    while (at < text.size()) {
        for (; std::min(text.size() - at, room - put) >= kWorthIt; at += kAscii, put += kAscii) {
            const __m512i ascii = _mm512_loadu_si512(text.data() + at);
            if (_mm512_test_epi16_mask(ascii, Units(0xFF80)) != 0)
                break;
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + put), _mm512_cvtepi16_epi8(ascii));
        }
        const std::size_t left = std::min(text.size() - at, kStep);
        const __m512i units =
            _mm512_cvtepu16_epi32(_mm256_maskz_loadu_epi16(static_cast<__mmask16>(First(left)), text.data() + at));
        const std::uint64_t surrogates = _mm512_cmpeq_epi32_mask(_mm512_and_si512(units, Lanes(0xF800)), Lanes(0xD800));
        const std::size_t count = FrontOf(surrogates, left);
        const __m512i sixes = _mm512_srli_epi32(units, 6);
        const __m512i low = _mm512_and_si512(units, Lanes(0x3F));
        const __m512i two = _mm512_or_si512(sixes, _mm512_slli_epi32(low, 8));
        const __m512i three = _mm512_or_si512(_mm512_or_si512(_mm512_srli_epi32(units, 12), _mm512_slli_epi32(low, 16)),
                                              _mm512_slli_epi32(_mm512_and_si512(sixes, Lanes(0x3F)), 8));
        __m512i made = _mm512_mask_or_epi32(units, _mm512_cmpge_epu32_mask(units, Lanes(0x80)), two, Lanes(0x80C0));
        made = _mm512_mask_or_epi32(made, _mm512_cmpge_epu32_mask(units, Lanes(0x800)), three, Lanes(0x8080E0));
        // The first byte is kept even if it is 0.
        const __m512i kept = _mm512_maskz_or_epi32(static_cast<__mmask16>(First(count)), made, Lanes(0xFF));
        const __mmask64 bytes = _mm512_test_epi8_mask(kept, kept);
        const auto length = static_cast<std::size_t>(_mm_popcnt_u64(bytes));
        if (count == 0 || length > room - put)
            break;
        _mm512_mask_storeu_epi8(out + put, First(length), _mm512_maskz_compress_epi8(bytes, made));
        at += count;
        put += length;
    }
    return {at, put};
}

constexpr WideUtf8 kWide = {DecodeWide, EncodeWide};

} // namespace

const WideUtf8* FindWideUtf8() noexcept
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("avx512vbmi") &&
                   __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
                   __builtin_cpu_supports("bmi2")
               ? &kWide
               : nullptr;
}

} // namespace zn

#else

const zn::WideUtf8* zn::FindWideUtf8() noexcept
{
    return nullptr;
}

#endif
