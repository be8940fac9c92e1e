#include "Zn_Base.h"

#include <array>
#include <cstddef>

namespace {

// tables[0] advances the checksum by one byte; tables[k] by that byte and k zero bytes behind it, so that
// eight bytes are eight look-ups that do not wait for one another.
using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Tables MakeTables() noexcept
{
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0u);
        tables[0][byte] = crc;
    }
    for (std::size_t k = 1; k < tables.size(); ++k)
        for (std::size_t byte = 0; byte < 256; ++byte)
            tables[k][byte] = tables[k - 1][byte] >> 8 ^ tables[0][tables[k - 1][byte] & 0xFF];
    return tables;
}

constexpr Tables tables = MakeTables();

std::uint32_t LoadLe32(const unsigned char* p) noexcept
{
    return p[0] | static_cast<std::uint32_t>(p[1]) << 8 | static_cast<std::uint32_t>(p[2]) << 16 |
           static_cast<std::uint32_t>(p[3]) << 24;
}

std::uint32_t Fold(std::uint32_t word, std::size_t first) noexcept
{
    return tables[first][word & 0xFF] ^ tables[first - 1][word >> 8 & 0xFF] ^ tables[first - 2][word >> 16 & 0xFF] ^
           tables[first - 3][word >> 24];
}

} // namespace

std::uint32_t zn_crc32(std::uint32_t crc, const unsigned char* data, int len) noexcept
{
    if (!data || len < 1)
        return crc;
    crc = ~crc;
    for (; len >= 8; len -= 8, data += 8)
        crc = Fold(crc ^ LoadLe32(data), 7) ^ Fold(LoadLe32(data + 4), 3);
    for (; len > 0; --len, ++data)
        crc = crc >> 8 ^ tables[0][(crc ^ *data) & 0xFF];
    return ~crc;
}
