#include "foundation/byteorder.h"

#include <bit>

void zn_dtobyte(double value, char bytes[8]) noexcept
{
    zn::PutBe64(reinterpret_cast<unsigned char*>(bytes), std::bit_cast<std::uint64_t>(value));
}

double zn_bytetod(const char bytes[8]) noexcept
{
    return std::bit_cast<double>(zn::GetBe64(reinterpret_cast<const unsigned char*>(bytes)));
}
