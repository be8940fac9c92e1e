#include "Zn_Compress.h"

#include "foundation/byteorder.h"
#include "stream/lzss.h"

#include <utility>

namespace {

constexpr unsigned kMarker = 0xFFAC;
constexpr unsigned kReversedMarker = 0xACFF; // the words of the head least significant byte first
constexpr int kHead = 6;                     // marker and checksum
constexpr int kShortest = 18;                // of what is compressed, and of a container

using Coder = bool (*)(std::span<const unsigned char> in, Zn_Buffer& out) noexcept;

std::uint32_t Checksum(const Zn_Buffer& container) noexcept
{
    return zn_crc32(zn_crc32(0, nullptr, 0), container.GetData() + kHead, container.GetLength() - kHead);
}

// The head of a container, then the coded stream of in; empty without memory.
Zn_Buffer Contain(const Zn_Buffer& in, Coder code) noexcept
{
    unsigned char head[kHead] = {};
    Zn_Buffer container;
    container.Append(head, kHead);
    if (container.GetLength() != kHead || !code(in.GetSpan(), container))
        return {};
    zn::PutBe16(head, kMarker);
    zn::PutBe32(head + 2, Checksum(container));
    std::memcpy(container.GetSafeBuffer(0), head, kHead);
    return container;
}

void Compress(const Zn_Buffer& in, Zn_Buffer& out, Coder code) noexcept
{
    Zn_Buffer container;
    if (in.GetLength() >= kShortest && !Zn_Compress::IsCompressBuffer(in))
        container = Contain(in, code);
    // A container too short to be known as one would never be restored.
    if (container.GetLength() < kShortest)
        container = in;
    out = std::move(container);
}

} // namespace

std::int32_t Zn_Compress::Encode(const Zn_Buffer& in, Zn_Buffer& out) const noexcept
{
    Compress(in, out, zn::LzssEncode);
    return 0;
}

std::int32_t Zn_Compress::EncodeFast(const Zn_Buffer& in, Zn_Buffer& out) const noexcept
{
    Compress(in, out, zn::LzssEncodeFast);
    return 0;
}

std::int32_t Zn_Compress::Decode(const Zn_Buffer& in, Zn_Buffer& out) const noexcept
{
    Zn_Buffer restored;
    if (!IsCompressBuffer(in) || !zn::LzssDecode(in.GetSpan().subspan(kHead), restored))
        restored = in;
    out = std::move(restored);
    return 0;
}

int Zn_Compress::IsCompressBuffer(const Zn_Buffer& buffer) noexcept
{
    if (buffer.GetLength() < kShortest)
        return 0;
    const unsigned char* bytes = buffer.GetData();
    switch (zn::GetBe16(bytes)) {
    case kMarker:
        return zn::GetBe32(bytes + 2) == Checksum(buffer);
    case kReversedMarker:
        return zn::GetLe32(bytes + 2) == Checksum(buffer);
    default:
        return 0;
    }
}
