#include "Zn_Base.h"

#include "foundation/byteorder.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <numeric>
#include <vector>

namespace {

TEST(Crc32, CheckValues)
{
    const auto crc = [](std::string_view text) {
        return zn_crc32(0, reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    };
    EXPECT_EQ(crc("123456789"), 0xCBF43926u);
    EXPECT_EQ(crc("The quick brown fox jumps over the lazy dog"), 0x414FA339u);
    EXPECT_EQ(crc(std::string(32, '\0')), 0x190A55ADu);
    EXPECT_EQ(crc(std::string(32, '\xFF')), 0xFF6CAB0Bu);
    EXPECT_EQ(zn_crc32(0, nullptr, 0), 0u);
    EXPECT_EQ(zn_crc32(7, nullptr, 5), 7u);
    EXPECT_EQ(zn_crc32(7, reinterpret_cast<const unsigned char*>("x"), 0), 7u);
}

// Single bytes, eight at a time, and folding for long pieces: all splits meet all of them at all alignments.
TEST(Crc32, GoesOnFromAnySplit)
{
    std::vector<unsigned char> bytes(400);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * i >> 3);
    std::vector<std::uint32_t> upTo = {5};
    for (const unsigned char byte : bytes)
        upTo.push_back(zn_crc32(upTo.back(), &byte, 1));
    for (int split = 0; split <= 400; ++split) {
        ASSERT_EQ(zn_crc32(5, bytes.data(), split), upTo[static_cast<std::size_t>(split)]) << split;
        ASSERT_EQ(zn_crc32(upTo[static_cast<std::size_t>(split)], bytes.data() + split, 400 - split), upTo[400])
            << split;
    }
}

TEST(ByteOrder, MostSignificantFirst)
{
    Zn_Buffer buffer;
    zn::AppendBe16(buffer, 0xFF01);
    zn::AppendBe32(buffer, 0x80020304);
    zn::AppendBe64(buffer, 0xF102030405060708);
    const unsigned char expected[] = {0xFF, 1, 0x80, 2, 3, 4, 0xF1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_EQ(std::vector<unsigned char>(buffer.GetSpan().begin(), buffer.GetSpan().end()),
              std::vector<unsigned char>(std::begin(expected), std::end(expected)));
    EXPECT_EQ(zn::GetBe16(expected), 0xFF01);
    EXPECT_EQ(zn::GetBe32(expected + 2), 0x80020304u);
    EXPECT_EQ(zn::GetBe64(expected + 6), 0xF102030405060708u);
}

TEST(ByteOrder, DoublesKeepEveryBit)
{
    char bytes[8];
    zn_dtobyte(-1.5, bytes);
    EXPECT_EQ(std::string(bytes, 8), std::string("\xBF\xF8\0\0\0\0\0\0", 8));
    for (double value : {0.0, -0.0, 1e-310, 3.141592653589793, -std::numeric_limits<double>::infinity(),
                         std::bit_cast<double>(std::uint64_t{0x7FF8000000000123})}) {
        zn_dtobyte(value, bytes);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(zn_bytetod(bytes)), std::bit_cast<std::uint64_t>(value));
    }
}

TEST(Memory, RefusesWhatIsNoSize)
{
    EXPECT_EQ(_zn_malloc(0), nullptr);
    EXPECT_EQ(_zn_malloc(-1), nullptr);
    zn_free(nullptr);
}

} // namespace
