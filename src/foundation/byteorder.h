// Numbers in network byte order, most significant byte first: the form of every binary encoding.
//
// The readers take a pointer to enough bytes; checking that is the caller's. The Append forms write
// at the end of a buffer.
#pragma once

#include "Zn_Buffer.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace zn {

inline void PutBe16(unsigned char* out, std::uint16_t value) noexcept
{
    out[0] = static_cast<unsigned char>(value >> 8);
    out[1] = static_cast<unsigned char>(value);
}

inline void PutBe32(unsigned char* out, std::uint32_t value) noexcept
{
    PutBe16(out, static_cast<std::uint16_t>(value >> 16));
    PutBe16(out + 2, static_cast<std::uint16_t>(value));
}

inline void PutBe64(unsigned char* out, std::uint64_t value) noexcept
{
    PutBe32(out, static_cast<std::uint32_t>(value >> 32));
    PutBe32(out + 4, static_cast<std::uint32_t>(value));
}

inline std::uint16_t GetBe16(const unsigned char* in) noexcept
{
    return static_cast<std::uint16_t>(in[0] << 8 | in[1]);
}

inline std::uint32_t GetBe32(const unsigned char* in) noexcept
{
    return static_cast<std::uint32_t>(in[0]) << 24 | static_cast<std::uint32_t>(in[1]) << 16 |
           static_cast<std::uint32_t>(in[2]) << 8 | in[3];
}

// The bytes the other way round. Compilers find the one instruction for it in the plain form too, but not everywhere.
inline std::uint64_t SwapBytes(std::uint64_t value) noexcept
{
#if defined(__GNUC__)
    return __builtin_bswap64(value);
#else
    value = (value & 0x00FF00FF00FF00FFU) << 8 | (value >> 8 & 0x00FF00FF00FF00FFU);
    value = (value & 0x0000FFFF0000FFFFU) << 16 | (value >> 16 & 0x0000FFFF0000FFFFU);
    return value << 32 | value >> 32;
#endif
}

inline std::uint64_t GetBe64(const unsigned char* in) noexcept
{
    std::uint64_t value;
    std::memcpy(&value, in, sizeof value);
    return std::endian::native == std::endian::little ? SwapBytes(value) : value;
}

// The other order, which one head of a foreign make has.
inline std::uint32_t GetLe32(const unsigned char* in) noexcept
{
    return in[0] | static_cast<std::uint32_t>(in[1]) << 8 | static_cast<std::uint32_t>(in[2]) << 16 |
           static_cast<std::uint32_t>(in[3]) << 24;
}

inline void AppendBe16(Zn_Buffer& buffer, std::uint16_t value)
{
    unsigned char bytes[2];
    PutBe16(bytes, value);
    buffer.Append(bytes, sizeof bytes);
}

inline void AppendBe32(Zn_Buffer& buffer, std::uint32_t value)
{
    unsigned char bytes[4];
    PutBe32(bytes, value);
    buffer.Append(bytes, sizeof bytes);
}

inline void AppendBe64(Zn_Buffer& buffer, std::uint64_t value)
{
    unsigned char bytes[8];
    PutBe64(bytes, value);
    buffer.Append(bytes, sizeof bytes);
}

} // namespace zn
