// The fast part of CRC-32 on processors that multiply without carries.
#pragma once

#include <cstdint>

namespace zn {

inline constexpr int kCrc32FoldBlock = 64; // fewer bytes are not folded
inline constexpr int kCrc32FoldRest = 16;

// Folds the first bytes of data, a multiple of 16 of them, into 16 that have the same remainder: the checksum of what
// stands in rest, started from a register of 0, is that of the folded bytes, started from the register crc. Registers
// are not inverted. Takes 64 bytes at least; returns the number of bytes folded.
using Crc32Fold = int (*)(std::uint32_t crc, const unsigned char* data, int len,
                          unsigned char rest[kCrc32FoldRest]) noexcept;

// Null on a processor without the instruction.
Crc32Fold FindCrc32Fold() noexcept;

} // namespace zn
