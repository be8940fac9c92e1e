// Whether the long forms of randomized tests are asked for (ZN_LONG_TESTS=1 in the environment).
#pragma once

#include <cstdlib>

inline bool LongTests()
{
    return std::getenv("ZN_LONG_TESTS") != nullptr;
}
