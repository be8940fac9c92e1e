// The coded stream inside a compressed container: LZSS over a ring of 4,096 bytes.
//
// A stream is a row of groups. A flag byte opens each and describes up to eight items, lowest bit first: 1 is a
// literal, one byte that stands for itself; 0 is a reference of two bytes, twelve bits of ring position and four of
// length. Coding and decoding start with a ring of blanks and put the first byte at kFirstPosition. The stream has no
// end mark: it ends where its bytes do.
#pragma once

#include "Zn_Buffer.h"

#include <cstdint>
#include <span>

namespace zn {

inline constexpr int kRingSize = 4096;
inline constexpr int kRingMask = kRingSize - 1;
inline constexpr int kShortestMatch = 3;
inline constexpr int kLongestMatch = 18;
inline constexpr int kFirstPosition = kRingSize - kLongestMatch;
// How far back a reference goes at most. Beyond it stand the bytes that the look-ahead takes the places of.
inline constexpr int kLargestDistance = kRingSize - kLongestMatch;
inline constexpr int kItemsInGroup = 8;
inline constexpr int kLargestGroup = 1 + 2 * kItemsInGroup;
inline constexpr unsigned char kBlank = ' ';

// Each appends to out and returns false when memory ran out; out holds a part then.

// Takes of several longest matches the one that an unbalanced search tree meets first: the stored form.
bool LzssEncode(std::span<const unsigned char> in, Zn_Buffer& out) noexcept;
// Takes any longest match.
bool LzssEncodeFast(std::span<const unsigned char> in, Zn_Buffer& out) noexcept;
// Takes any bytes for a stream; one that is cut off inside a group ends at its last whole item.
bool LzssDecode(std::span<const unsigned char> in, Zn_Buffer& out) noexcept;

} // namespace zn
