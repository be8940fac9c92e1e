// The binary record of a variant (docs/formats/variant-record.md): its type in two bytes, then what the type asks for.
#include "Zn_Variant.h"
#include "foundation/byteorder.h"

#include <bit>
#include <utility>

namespace {

// A length in two bytes and 8-bit text. Callers rely on the low 16 bits of the length being what is written of a
// longer text, and on as many bytes of it.
void AppendText(Zn_Buffer& buffer, const Zn_WString& text, unsigned codePage)
{
    const int start = buffer.AddSize(2);
    if (start < 0)
        return;
    buffer.AppendStr(text.GetText(), text.GetLength(), codePage);
    const auto length = static_cast<std::uint16_t>(buffer.GetLength() - (start + 2));
    buffer.SetSize(start + 2 + length);
    if (unsigned char* bytes = buffer.GetSafeBuffer(buffer.GetLength()))
        zn::PutBe16(bytes + start, length);
}

} // namespace

int Zn_Variant::Save(Zn_Buffer& buffer, unsigned codePage) const
{
    zn::AppendBe16(buffer, type);
    switch (type) {
    case Integer:
        zn::AppendBe32(buffer, static_cast<std::uint32_t>(HeldInteger()));
        break;
    case Decimal:
        zn::AppendBe64(buffer, std::bit_cast<std::uint64_t>(HeldDecimal()));
        break;
    case Currency:
        // Callers rely on the low word standing where Load looks for the high one.
        zn::AppendBe64(buffer, static_cast<std::uint64_t>(GetConstCurrency()->GetRaw()) << 32);
        break;
    case Date:
        AppendText(buffer, live_ == Text ? value_.text : GetConstDateTime()->ToString(), codePage);
        break;
    case String:
        AppendText(buffer, *GetConstStr(), codePage);
        break;
    case Binary:
        zn::AppendBe32(buffer, static_cast<std::uint32_t>(GetConstBinary()->GetLength()));
        buffer.Append(GetConstBinary()->GetData(), GetConstBinary()->GetLength());
        break;
    default:
        break;
    }
    return buffer.GetLength();
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

int Zn_Variant::Load(short recordType, const Zn_Buffer& buffer, int offset, unsigned codePage)
{
    if (live_ > OddBits) { // the buffer may be this variant's own
        Zn_Variant loaded;
        const int end = loaded.Load(recordType, buffer, offset, codePage);
        *this = std::move(loaded);
        return end;
    }
    Init();
    const int left = buffer.GetLength() - offset;
    if (offset < 0 || left <= 0)
        return -1;
    type = static_cast<std::uint16_t>(recordType);
    const unsigned char* bytes = buffer.GetData() + offset;
    switch (type) {
    case Integer:
        if (left < 4)
            return -1;
        live_ = Bits;
        value_.integer = static_cast<std::int32_t>(zn::GetBe32(bytes));
        return offset + 4;
    case Decimal:
        if (left < 8)
            return -1;
        live_ = Bits;
        value_.decimal = std::bit_cast<double>(zn::GetBe64(bytes));
        return offset + 8;
    case Currency:
        if (left < 8)
            return -1;
        live_ = Bits;
        value_.currency = Zn_Currency::FromRaw(static_cast<std::int64_t>(zn::GetBe64(bytes)));
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
        const std::int32_t count = static_cast<std::int32_t>(zn::GetBe32(bytes));
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
