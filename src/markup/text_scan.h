// The searches that reading markup spends its time in.
#pragma once

#include <bit>
#include <string_view>

#if defined(__SSE2__) || defined(_M_X64)
#    define ZN_SCAN_SSE2 1
#    include <emmintrin.h>
#else
#    define ZN_SCAN_SSE2 0
#endif

namespace zn {

// First place in [at, end) of any of the given units; end when there is none.
template <class... Units>
const char16_t* FindUnit(const char16_t* at, const char16_t* end, Units... units) noexcept
{
#if ZN_SCAN_SSE2
    for (; end - at >= 8; at += 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        __m128i hits = _mm_setzero_si128();
        ((hits = _mm_or_si128(hits, _mm_cmpeq_epi16(block, _mm_set1_epi16(static_cast<short>(units))))), ...);
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(hits));
        if (mask != 0)
            return at + std::countr_zero(mask) / 2;
    }
#endif
    while (at != end && !((*at == units) || ...))
        ++at;
    return at;
}

// First place in [at, end) of a text of at least two units; end when there is none. The last unit is what
// is searched for, so give texts that end in a rare one.
inline const char16_t* FindText(const char16_t* at, const char16_t* end, std::u16string_view what) noexcept
{
    const auto back = static_cast<std::ptrdiff_t>(what.size()) - 1;
    if (end - at <= back)
        return end;
    for (const char16_t* last = at + back;; ++last) {
        last = FindUnit(last, end, what.back());
        if (last == end)
            return end;
        if (std::u16string_view(last - back, what.size()) == what)
            return last - back;
    }
}

} // namespace zn
