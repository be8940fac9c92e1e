#include "foundation/crc32_fold.h"

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))

#    include <immintrin.h>

namespace zn {
namespace {

// The remainder of x^degree by the CRC's polynomial, bits in the reflected order of the checksum, shifted up by the one
// place that a product of two reflected numbers lacks.
constexpr long long Power(int degree) noexcept
{
    std::uint32_t remainder = 0x80000000U; // x^0
    for (int i = 0; i < degree; ++i)
        remainder = remainder >> 1 ^ (remainder & 1 ? 0xEDB88320U : 0U);
    return static_cast<long long>(remainder) << 1;
}

#    define ZN_CLMUL __attribute__((target("pclmul,sse2")))

ZN_CLMUL inline __m128i Load(const unsigned char* data) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
}

// Moves 16 bytes over by as far as the powers say and adds what stands there.
ZN_CLMUL inline __m128i Fold(__m128i bytes, __m128i powers, __m128i there) noexcept
{
    const __m128i low = _mm_clmulepi64_si128(bytes, powers, 0x00);
    const __m128i high = _mm_clmulepi64_si128(bytes, powers, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), there);
}

// The first eight of 16 bytes stand 64 bits further from the end than the others.
template <int bits>
ZN_CLMUL inline __m128i PowersFor() noexcept
{
    constexpr long long first = Power(bits + 32);
    constexpr long long second = Power(bits - 32);
    return _mm_set_epi64x(second, first);
}

ZN_CLMUL int FoldByMultiplying(std::uint32_t crc, const unsigned char* data, int len, unsigned char rest[16]) noexcept
{
    // Four independent rows of 16 bytes, so that multiplications need not wait for one another.
    __m128i rows[4] = {Load(data), Load(data + 16), Load(data + 32), Load(data + 48)};
    rows[0] = _mm_xor_si128(rows[0], _mm_cvtsi32_si128(static_cast<int>(crc)));
    int done = kCrc32FoldBlock;
    for (const __m128i powers = PowersFor<512>(); len - done >= kCrc32FoldBlock; done += kCrc32FoldBlock) {
        for (int i = 0; i < 4; ++i)
            rows[i] = Fold(rows[i], powers, Load(data + done + std::ptrdiff_t{16} * i));
    }
    const __m128i powers = PowersFor<128>();
    __m128i sum = rows[0];
    for (int i = 1; i < 4; ++i)
        sum = Fold(sum, powers, rows[i]);
    for (; len - done >= 16; done += 16)
        sum = Fold(sum, powers, Load(data + done));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(rest), sum);
    return done;
}

} // namespace

Crc32Fold FindCrc32Fold() noexcept
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("pclmul") ? FoldByMultiplying : nullptr;
}

} // namespace zn

#else

zn::Crc32Fold zn::FindCrc32Fold() noexcept
{
    return nullptr;
}

#endif
