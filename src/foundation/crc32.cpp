#include "Zn_Base.h"

#include "foundation/byteorder.h"
#include "foundation/crc32_fold.h"

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

std::uint32_t LookUp(std::uint32_t word, std::size_t first) noexcept
{
    return tables[first][word & 0xFF] ^ tables[first - 1][word >> 8 & 0xFF] ^ tables[first - 2][word >> 16 & 0xFF] ^
           tables[first - 3][word >> 24];
}

// Takes and returns the register, which is the checksum inverted.
std::uint32_t Advance(std::uint32_t crc, const unsigned char* data, int len) noexcept
{
    for (; len >= 8; len -= 8, data += 8)
        crc = LookUp(crc ^ zn::GetLe32(data), 7) ^ LookUp(zn::GetLe32(data + 4), 3);
    for (; len > 0; --len, ++data)
        crc = crc >> 8 ^ tables[0][(crc ^ *data) & 0xFF];
    return crc;
}

// Still null for who asks before the library's own initialisation.
const zn::Crc32Fold foldBytes = zn::FindCrc32Fold();

} // namespace

std::uint32_t zn_crc32(std::uint32_t crc, const unsigned char* data, int len) noexcept
{
    if (!data || len < 1)
        return crc;
    crc = ~crc;
    if (foldBytes && len >= zn::kCrc32FoldBlock) {
        unsigned char rest[zn::kCrc32FoldRest];
        const int folded = foldBytes(crc, data, len, rest);
        crc = Advance(0, rest, zn::kCrc32FoldRest);
        data += folded;
        len -= folded;
    }
    return ~Advance(crc, data, len);
}
