// Memory for small things that come in great number, the bodies of texts above all.
//
// A block of up to kLargestSmall bytes is a piece of a slab that holds pieces of its size alone; nothing stands in
// front of it, so its size must be named again when it goes. A slab whose pieces are all back serves any size, and
// memory that nothing lives in any more goes back to the system but for one region for each group of threads.
// Every operation is safe to call from several threads, and a block may be given back by another thread than took it.
#pragma once

#include <cstddef>

namespace zn {

constexpr int kLargestSmall = 256;

// Memory of 1 to kLargestSmall bytes, aligned to 8; null when memory runs out.
void* TakeSmall(int size) noexcept;
void GiveSmall(void* block, int size) noexcept;
// Bytes of the regions that small blocks have now.
std::size_t SmallMemory() noexcept;

// Memory of any size, small or not. With the address sanitizer these are allocations of the system, which
// it watches more closely.
void* TakeBlock(int size) noexcept;
void GiveBlock(void* block, int size) noexcept;
// Changes the size of a block, keeping its bytes (null: takes one); null when it can't, and then the block stays.
void* ResizeBlock(void* block, int size, int newSize) noexcept;

} // namespace zn
