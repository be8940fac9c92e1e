// Doubles to 32-bit integers, defined for every double.
#pragma once

#include <cstdint>

namespace zn {

// Cut toward zero and clamped; NaN is 0.
constexpr std::int32_t ToInt32(double value) noexcept
{
    if (value != value)
        return 0;
    if (value >= 2147483647.0)
        return INT32_MAX;
    if (value <= -2147483648.0)
        return INT32_MIN;
    return static_cast<std::int32_t>(value);
}

} // namespace zn
