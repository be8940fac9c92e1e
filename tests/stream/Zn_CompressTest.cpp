#include "Zn_Compress.h"

#include "foundation/byteorder.h"
#include "foundation/memory.h"
#include "stream/coder_inputs.h"
#include "stream/messages.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using plain::Bytes;

Zn_Buffer BufferOf(const Bytes& bytes)
{
    Zn_Buffer buffer;
    buffer.Set(bytes.data(), static_cast<int>(bytes.size()));
    return buffer;
}

Zn_Buffer Encoded(const Zn_Buffer& in)
{
    Zn_Buffer out;
    EXPECT_EQ(Zn_Compress().Encode(in, out), 0);
    return out;
}

Zn_Buffer FastEncoded(const Zn_Buffer& in)
{
    Zn_Buffer out;
    EXPECT_EQ(Zn_Compress().EncodeFast(in, out), 0);
    return out;
}

Zn_Buffer Decoded(const Zn_Buffer& in)
{
    Zn_Buffer out;
    EXPECT_EQ(Zn_Compress().Decode(in, out), 0);
    return out;
}

// A container of any bytes as its stream.
Zn_Buffer Contained(std::span<const unsigned char> stream, bool isReversed = false)
{
    Bytes bytes = isReversed ? Bytes{0xAC, 0xFF, 0, 0, 0, 0} : Bytes{0xFF, 0xAC, 0, 0, 0, 0};
    bytes.insert(bytes.end(), stream.begin(), stream.end());
    zn::PutBe32(bytes.data() + 2, zn_crc32(0, stream.data(), static_cast<int>(stream.size())));
    if (isReversed)
        std::reverse(bytes.begin() + 2, bytes.begin() + 6);
    return BufferOf(bytes);
}

// What the first coder would have made; of short input and of short containers, the input.
Zn_Buffer PlainEncoded(const Bytes& in)
{
    const Zn_Buffer container = Contained(plain::Encode(in));
    return in.size() < 18 || container.GetLength() < 18 ? BufferOf(in) : container;
}

Bytes Random(std::size_t size)
{
    return InputKinds()[0].Make(size, static_cast<unsigned>(size));
}

const Bytes& Markup()
{
    static const Bytes bytes = InputKinds()[5].Make(100'000, 1);
    return bytes;
}

Bytes Part(const Bytes& bytes, std::size_t size)
{
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)};
}

void ExpectCoded(const Bytes& in)
{
    const Zn_Buffer plain = BufferOf(in);
    const Zn_Buffer small = Encoded(plain);
    ASSERT_TRUE(small == PlainEncoded(in));
    ASSERT_TRUE(Decoded(small) == plain);
    const Zn_Buffer fast = FastEncoded(plain);
    ASSERT_TRUE(Decoded(fast) == plain);
    ASSERT_LE(fast.GetLength(), small.GetLength() * 102 / 100);
}

TEST(Compress, GivesTheBytesOfTheSearchTrees)
{
    const std::vector<InputKind>& kinds = InputKinds();
    for (const InputKind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        for (unsigned size = 0; size <= 80; ++size)
            ASSERT_NO_FATAL_FAILURE(ExpectCoded(kind.Make(size, size))) << size;
        ASSERT_NO_FATAL_FAILURE(ExpectCoded(kind.Make(100'000, 1)));
    }
    for (unsigned size = 81; size <= 5000; ++size) {
        const InputKind& kind = kinds[size % kinds.size()];
        ASSERT_NO_FATAL_FAILURE(ExpectCoded(kind.Make(size, size))) << kind.name << ' ' << size;
    }
    // Each part leaves the window in another state for the next.
    std::mt19937 random(5);
    Bytes mixed;
    for (unsigned i = 0; mixed.size() < 400'000; ++i) {
        const Bytes part = kinds[random() % kinds.size()].Make(random() % 9000, i);
        mixed.insert(mixed.end(), part.begin(), part.end());
    }
    ExpectCoded(mixed);
}

TEST(Compress, GivesTheStoredContainer)
{
    const Zn_Buffer message = MakeBuffer(StoreFile("changes-mode2.bin"));
    const Zn_Buffer stored = MakeBuffer(StoreFile("changes-mode2.bin.lz"));
    ASSERT_GT(stored.GetLength(), 0);
    EXPECT_TRUE(Encoded(message) == stored);
    EXPECT_TRUE(Decoded(stored) == message);
    EXPECT_TRUE(Decoded(FastEncoded(message)) == message);
}

// The example of docs/formats/compressed-container.md.
TEST(Compress, ARunIsOneLiteralAndReferences)
{
    const Bytes container = {0xFF, 0xAC, 0xEA, 0x4A, 0x8B, 0xD9, 0x01, 'a',  0xEE, 0xFF,
                             0x00, 0x0F, 0x12, 0x0F, 0x24, 0x0F, 0x36, 0x0F, 0x40, 0x06};
    EXPECT_TRUE(Encoded(BufferOf(Bytes(100, 'a'))) == BufferOf(container));
}

TEST(Compress, LeavesAloneWhatIsNotToBeCoded)
{
    const Bytes random = Random(100);
    const Zn_Buffer container = Encoded(BufferOf(random));
    EXPECT_EQ(Zn_Compress::IsCompressBuffer(container), 1);
    const Zn_Buffer reversed = Contained(plain::Encode(random), true);
    EXPECT_EQ(Zn_Compress::IsCompressBuffer(reversed), 1);
    EXPECT_TRUE(Decoded(reversed) == BufferOf(random));

    const std::pair<const char*, Zn_Buffer> unchanged[] = {
        {"nothing", {}},
        {"17 bytes", BufferOf(Random(17))},
        {"a container", container},
        {"a reversed container", reversed},
        {"what makes a container of 17 bytes", BufferOf(Bytes(74, 'a'))},
    };
    for (const auto& [name, buffer] : unchanged) {
        EXPECT_TRUE(Encoded(buffer) == buffer) << name;
        EXPECT_TRUE(FastEncoded(buffer) == buffer) << name;
    }
    const std::pair<const char*, Zn_Buffer> coded[] = {
        {"18 bytes", BufferOf(Random(18))},
        {"what makes a container of 18 bytes", BufferOf(Bytes(75, 'a'))},
    };
    for (const auto& [name, buffer] : coded) {
        EXPECT_EQ(Zn_Compress::IsCompressBuffer(Encoded(buffer)), 1) << name;
        EXPECT_TRUE(Decoded(buffer) == buffer) << name;
    }
}

TEST(Compress, DamagedContainersComeBack)
{
    const Zn_Buffer whole = Encoded(BufferOf(Part(Markup(), 300)));
    const Bytes bytes(whole.GetSpan().begin(), whole.GetSpan().end());
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        Bytes damaged = bytes;
        damaged[bit / 8] = static_cast<unsigned char>(damaged[bit / 8] ^ 1 << bit % 8);
        ASSERT_EQ(Zn_Compress::IsCompressBuffer(BufferOf(damaged)), 0) << bit;
        ASSERT_TRUE(Decoded(BufferOf(damaged)) == BufferOf(damaged)) << bit;
    }
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const Zn_Buffer cut = BufferOf(Part(bytes, size));
        ASSERT_TRUE(Decoded(cut) == cut) << size;
    }
}

void ExpectDecoded(const Bytes& stream)
{
    const Zn_Buffer expected = stream.size() < 12 ? Contained(stream) : BufferOf(plain::Decode(stream));
    ASSERT_TRUE(Decoded(Contained(stream)) == expected);
}

TEST(Compress, AnyStreamDecodesItemByItem)
{
    const Bytes coded = plain::Encode(Part(Markup(), 2000));
    for (std::size_t size = 0; size <= coded.size(); ++size)
        ASSERT_NO_FATAL_FAILURE(ExpectDecoded(Part(coded, size)));
    std::mt19937 random(3);
    for (int i = 0; i < 2000; ++i) {
        Bytes mutated = coded;
        for (unsigned n = random() % 8 + 1; n > 0; --n)
            mutated[random() % mutated.size()] = static_cast<unsigned char>(random());
        ASSERT_NO_FATAL_FAILURE(ExpectDecoded(mutated)) << i;
    }
    for (std::size_t size = 0; size < 10'000; size += 99)
        ASSERT_NO_FATAL_FAILURE(ExpectDecoded(Random(size)));
}

// Positions of the whole ring with every length: all distances, those included that run into the bytes they make.
TEST(Compress, CopiesEveryReferenceRight)
{
    Bytes stream;
    std::mt19937 random(9);
    for (unsigned i = 0; i < 4096 * 16; ++i) {
        if (i % 4 == 0)
            stream.push_back(0x11); // a literal and three references, twice
        if (i % 2 == 0)
            stream.push_back(static_cast<unsigned char>(random()));
        stream.insert(stream.end(), {static_cast<unsigned char>(i), static_cast<unsigned char>(i * 31 >> 8)});
    }
    ExpectDecoded(stream);
}

TEST(Compress, InputAndOutputMayBeTheSame)
{
    const Zn_Buffer message = BufferOf(Markup());
    Zn_Buffer buffer = message;
    Zn_Compress().Encode(buffer, buffer);
    EXPECT_TRUE(buffer == Encoded(message));
    Zn_Compress().Decode(buffer, buffer);
    EXPECT_TRUE(buffer == message);
}

TEST(Compress, WithoutMemoryTheOutputIsTheInput)
{
    const Zn_Buffer message = BufferOf(Markup());
    const Zn_Buffer small = Encoded(message);
    int failures = 0;
    const auto run = [&](const Zn_Buffer& in, const Zn_Buffer& expected, auto act) {
        for (int n = 1;; ++n) {
            zn::FailAllocation(n);
            const Zn_Buffer out = act(in);
            const bool failed = zn::AllocationFailed();
            zn::FailAllocation(0);
            ASSERT_TRUE(out == (failed ? in : expected)) << n;
            if (!failed)
                return;
            ++failures;
        }
    };
    run(message, small, Encoded);
    run(message, FastEncoded(message), FastEncoded);
    run(small, message, Decoded);
    EXPECT_GE(failures, 9);
}

} // namespace
