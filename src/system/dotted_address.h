#pragma once

#include "Zn_WString.h"

namespace zn {

// An IPv4 address as people write it: "127.0.0.1".
inline Zn_WString DottedAddress(std::uint32_t address)
{
    Zn_WString text;
    text.Format(u"%u.%u.%u.%u", address >> 24, address >> 16 & 0xFF, address >> 8 & 0xFF, address & 0xFF);
    return text;
}

} // namespace zn
