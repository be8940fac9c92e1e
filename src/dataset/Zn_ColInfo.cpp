#include "Zn_ColInfo.h"

#include "Zn_AString.h"
#include "Zn_Variant.h"
#include "dataset/column_order.h"
#include "foundation/byte_writer.h"
#include "foundation/vector_list.h"

#include <iterator>

Zn_ColInfoHandler& Zn_ColInfoHandler::Instance()
{
    return Zn_Global<Zn_ColInfoHandler>();
}

const Zn_ColInfo& Zn_ColInfoHandler::EmptyItem()
{
    return Zn_Global<Zn_ColInfo>();
}

int Zn_ColInfoHandler::_CompareItem(void* a, void* b)
{
    return zn_icompare(static_cast<Zn_ColInfo*>(a)->id, static_cast<Zn_ColInfo*>(b)->id);
}

void Zn_ColInfo::Clear()
{
    *this = Zn_ColInfo();
}

int Zn_ColInfo::Compare(const Zn_ColInfo& other) const noexcept
{
    if (const int order = zn_icompare(id, other.id))
        return order;
    return type != other.type ? type - other.type : size - other.size;
}

const Zn_ColInfo* Zn_ColList::GetItemByOrgIdx(int orgIdx) const noexcept
{
    for (int i = 0, n = Count(); i < n; ++i) {
        const Zn_ColInfo* column = GetItem(i);
        if (column && column->orgIdx == orgIdx)
            return column;
    }
    return nullptr;
}

int Zn_ColList::FindId(Zn_NameArg id) const noexcept
{
    if (id.IsNull())
        return -1;
    if (GetOption() == 1 && !touched_)
        return FindInOrder(id.GetView());
    for (int i = 0, n = Count(); i < n; ++i) {
        const Zn_ColInfo* column = GetItem(i);
        if (column && zn_iequal(column->id, id.GetView()))
            return i;
    }
    return -1;
}

int Zn_ColList::FindInOrder(std::u16string_view id) const noexcept
{
    int low = 0;
    int high = Count();
    while (low < high) {
        const int middle = low + (high - low) / 2;
        const int order = zn_icompare(GetItemNN(middle)->id, id);
        if (order == 0)
            return middle;
        (order < 0 ? low : high) = order < 0 ? middle + 1 : middle;
    }
    return -1;
}

int Zn_ColList::Add(const Zn_ColInfo* column)
{
    return column ? Zn_ObjList::Add(column) : -1;
}

int Zn_ColList::Add(const Zn_ColInfo* column, int& added)
{
    const int before = Count();
    const int position = Add(column);
    added = Count() > before ? 1 : 0;
    return position;
}

int Zn_ColList::AddLink(const Zn_ColInfo* column)
{
    return column ? Base::AddLink(column) : -1;
}

int Zn_ColList::AddLink(const Zn_ColInfo* column, int& added)
{
    const int before = Count();
    const int position = AddLink(column);
    added = Count() > before ? 1 : 0;
    return position;
}

int Zn_ColList::Assign(const Zn_ColList* other)
{
    if (!other)
        return 0;
    *this = *other;
    return Count();
}

void Zn_ColList::TakePlaces(const Zn_ColList& other)
{
    if (GetOption() == other.GetOption()) {
        *this = other;
        return;
    }
    ReleaseList();
    for (const Zn_ColInfo& column : other)
        Insert(Count(), column);
}

int Zn_ColList::Append(const Zn_ColList* other)
{
    return other ? AppendList(*other) : Count();
}

namespace {

struct TypeName {
    short code;
    int prefix; // so many characters decide when a name is read
    const char16_t* name;
};

// In the order in which names are tried. Callers rely on "STRIN" being enough for a STRING.
constexpr TypeName kTypeNames[] = {
    {Zn_ColInfo::String, 5, u"STRING"},     {Zn_ColInfo::Int, 3, u"INT"},   {Zn_ColInfo::Decimal, 7, u"DECIMAL"},
    {Zn_ColInfo::Currency, 8, u"CURRENCY"}, {Zn_ColInfo::Date, 4, u"DATE"}, {Zn_ColInfo::Char, 4, u"CHAR"},
    {Zn_ColInfo::Url, 3, u"URL"},           {Zn_ColInfo::Blob, 4, u"BLOB"},
};

constexpr std::uint16_t kMarker = 0xFF08;
constexpr std::uint16_t kVersion = 2000;

} // namespace

int Zn_ColList::GetTypeNo(const char16_t* name) noexcept
{
    for (const TypeName& entry : kTypeNames) {
        if (zn_strnicmpW(name, entry.name, entry.prefix) == 0)
            return entry.code;
    }
    return Zn_ColInfo::String;
}

const char16_t* Zn_ColList::GetTypeStr(int code) noexcept
{
    for (const TypeName& entry : kTypeNames) {
        if (entry.code == code)
            return entry.name;
    }
    return kTypeNames[0].name;
}

std::uint16_t Zn_ColList::GetValueType(int code) noexcept
{
    switch (code) {
    case Zn_ColInfo::Int:
        return Zn_Variant::Integer;
    case Zn_ColInfo::Decimal:
        return Zn_Variant::Decimal;
    case Zn_ColInfo::Currency:
        return Zn_Variant::Currency;
    case Zn_ColInfo::Blob:
        return Zn_Variant::Binary;
    default:
        return Zn_Variant::String;
    }
}

int Zn_ColList::Save(Zn_Buffer& out, unsigned codePage) const
{
    std::vector<const Zn_ColInfo*> ordered;
    if (!zn::Guarded([&] { ordered = zn::ColumnsInDefinitionOrder(*this); }))
        return -1;
    zn::ByteWriter writer(out, codePage);
    writer.Put16(kMarker);
    writer.Put16(kVersion);
    writer.Put16(static_cast<std::uint16_t>(Count()));
    static const Zn_ColInfo missing = [] {
        Zn_ColInfo column;
        column.type = 0;
        return column;
    }();
    for (const Zn_ColInfo* column : ordered) {
        if (!column)
            column = &missing;
        writer.PutText(column->id);
        writer.Put16(static_cast<std::uint16_t>(column->type));
        writer.Put16(static_cast<std::uint16_t>(column->size));
    }
    return writer.Finish();
}

int Zn_ColList::Load(const Zn_Buffer& in, int offset, unsigned codePage)
{
    ReleaseList();
    const int length = in.GetLength();
    const unsigned char* data = in.GetData();
    if (offset < 0 || length - offset < 2)
        return length;
    if (zn::GetBe16(data + offset) != kMarker)
        return -1;
    if (length - offset < 6)
        return length;
    const int count = zn::GetBe16(data + offset + 4);
    offset += 6;
    for (int k = 0; k < count; ++k) {
        if (length - offset < 2)
            return length;
        const int idLength = zn::GetBe16(data + offset);
        if (length - offset < 2 + idLength + 4)
            return length;
        Zn_ColInfo column(Zn_WString(reinterpret_cast<const char*>(data + offset + 2), idLength, codePage));
        offset += 2 + idLength;
        column.type = static_cast<short>(zn::GetBe16(data + offset));
        column.size = static_cast<short>(zn::GetBe16(data + offset + 2));
        column.orgIdx = static_cast<short>(k);
        offset += 4;
        Add(&column);
    }
    return offset;
}
