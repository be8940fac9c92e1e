// The binary record of a variant (docs/formats/variant-record.md): its type in two bytes, then what the type asks for.
#include "Zn_Variant.h"
#include "foundation/byte_writer.h"

#include <bit>
#include <utility>

void Zn_Variant::SaveTo(zn::ByteWriter& out) const
{
    constexpr std::size_t kMostFixed = 10; // a type and a number
    unsigned char* to = out.Open(kMostFixed);
    if (!to)
        return;
    zn::PutBe16(to, type);
    to += 2;
    switch (type) {
    case Integer:
        zn::PutBe32(to, static_cast<std::uint32_t>(HeldInteger()));
        return out.Close(to + 4);
    case Decimal:
        zn::PutBe64(to, std::bit_cast<std::uint64_t>(HeldDecimal()));
        return out.Close(to + 8);
    case Currency:
        // Callers rely on the low word standing where Load looks for the high one.
        zn::PutBe64(to, static_cast<std::uint64_t>(GetConstCurrency()->GetRaw()) << 32);
        return out.Close(to + 8);
    case Date:
        out.Close(to);
        return out.PutText(live_ == Text ? value_.text : GetConstDateTime()->ToString());
    case String:
        out.Close(to);
        return out.PutText(*GetConstStr());
    case Binary:
        zn::PutBe32(to, static_cast<std::uint32_t>(GetConstBinary()->GetLength()));
        out.Close(to + 4);
        return out.PutBytes(GetConstBinary()->GetSpan());
    default:
        return out.Close(to);
    }
}

int Zn_Variant::Save(Zn_Buffer& buffer, unsigned codePage) const
{
    zn::ByteWriter out(buffer, codePage);
    SaveTo(out);
    return out.Finish();
}

int Zn_Variant::Load(const Zn_Buffer& buffer, int offset, unsigned codePage)
{
    const int length = buffer.GetLength();
    if (offset < 0 || offset > length - 2) {
        Clear();
        return -1;
    }
    const std::uint16_t recordType = zn::GetBe16(buffer.GetData() + offset);
    const int end = Load(static_cast<short>(recordType), buffer, offset + 2, codePage);
    type = recordType;
    return end;
}

// NOLINTNEXTLINE(misc-no-recursion): one level, onto an empty variant
int Zn_Variant::Load(short recordType, const Zn_Buffer& buffer, int offset, unsigned codePage)
{
    if (live_ > OddBits) { // the buffer may be this variant's own
        Zn_Variant loaded;
        const int end = loaded.Load(recordType, buffer, offset, codePage);
        *this = std::move(loaded);
        return end;
    }
    Init();
    if (offset < 0 || offset >= buffer.GetLength())
        return -1;
    const int left = buffer.GetLength() - offset;
    type = static_cast<std::uint16_t>(recordType);
    const unsigned char* bytes = buffer.GetData() + offset;
    switch (type) {
    case Integer:
        if (left < 4)
            return -1;
        new (this) Zn_Variant(static_cast<int>(zn::GetBe32(bytes)));
        return offset + 4;
    case Decimal:
        if (left < 8)
            return -1;
        new (this) Zn_Variant(std::bit_cast<double>(zn::GetBe64(bytes)));
        return offset + 8;
    case Currency:
        if (left < 8)
            return -1;
        new (this) Zn_Variant(Zn_Currency::FromRaw(static_cast<std::int64_t>(zn::GetBe64(bytes))));
        return offset + 8;
    case String:
    case Date: { // a date's text stays text
        if (left < 2)
            return -1;
        const int count = static_cast<std::int16_t>(zn::GetBe16(bytes));
        if (count < 0 || count > left - 2)
            return -1;
        live_ = Text;
        new (&value_.text) Zn_WString(reinterpret_cast<const char*>(bytes + 2), count, codePage);
        return offset + 2 + count;
    }
    case Binary: {
        if (left < 4)
            return -1;
        const auto count = static_cast<std::int32_t>(zn::GetBe32(bytes));
        if (count < 0 || count > left - 4)
            return -1;
        live_ = Bytes;
        new (&value_.bytes) Zn_Buffer;
        value_.bytes.Set(bytes + 4, count);
        return offset + 4 + count;
    }
    default:
        return offset;
    }
}
