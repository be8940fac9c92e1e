// Compressed files as the commands read and write them.
#pragma once

#include "files.h"

namespace zntool {

// What a file holds or, when that is a compressed container, what it was made from; tells the container's size, 0 for
// none.
Zn_Buffer ReadRestored(const std::string& path, long long& compressedBytes);

// Whether the bytes begin as a container does; a damaged one does too.
bool LooksCompressed(const Zn_Buffer& bytes);

// The container of some bytes; of bytes that are too few to gain, or compressed already, themselves.
Zn_Buffer Compressed(const Zn_Buffer& bytes, bool fast = false);

// Whether a file is named as a compressed one: changes.bin.lz.
bool IsNamedCompressed(const std::string& path);
// The part of its name that ends as its form says: changes.bin.
std::string FormName(const std::string& path);

} // namespace zntool
