// The entry point of a fuzz target and what targets share.
#pragma once

#include "Zn_Buffer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

inline Zn_Buffer BufferOf(const std::uint8_t* data, std::size_t size)
{
    Zn_Buffer buffer;
    buffer.Set(data, static_cast<int>(size));
    return buffer;
}

// A property that must hold for every input; a run that breaks it ends there.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}
