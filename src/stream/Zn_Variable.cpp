// Variables, their lists and chains, and the binary block.

#include "Zn_Variable.h"

#include "foundation/byte_writer.h"

Zn_VariableHandler& Zn_VariableHandler::Instance()
{
    return Zn_Global<Zn_VariableHandler>();
}

const Zn_Variable& Zn_VariableHandler::EmptyItem()
{
    return Zn_Global<Zn_Variable>();
}

int Zn_VariableHandler::_CompareItem(void* a, void* b)
{
    return zn_icompare(static_cast<Zn_Variable*>(a)->id, static_cast<Zn_Variable*>(b)->id);
}

int Zn_Variable::operator==(const Zn_Variable& other) const
{
    if (const int order = zn_compare(id, other.id))
        return order;
    return value == other.value;
}

int Zn_Variable::operator==(const Zn_Variant& other) const
{
    return value == other;
}

int Zn_Variable::operator==(const char16_t* text) const
{
    return zn_strcmpW(id, text);
}

int Zn_VariableList::Add(const Zn_Variable& variable)
{
    return variable.id.IsEmpty() ? -1 : Base::Add(variable);
}

int Zn_VariableList::Add(const Zn_Variable* variable)
{
    return variable ? Add(*variable) : -1;
}

int Zn_VariableList::AddVariable(const char16_t* id, const Zn_Variant* value)
{
    const Zn_Variant& given = value ? *value : Zn_Variant::_ZnNullVariant;
    if (!id || !*id)
        return -1;
    if (const int place = FindId(id); place >= 0)
        return SetVariant(place, given);
    return Base::Add(Zn_Variable(id, given));
}

int Zn_VariableList::AddStr(const Zn_WString& id, const Zn_WString& value)
{
    return AddVariable(id, Zn_Variant(value));
}

int Zn_VariableList::AddStr(const Zn_WString& id, const char16_t* value, int length)
{
    return AddStr(id, Zn_WString(value, length));
}

int Zn_VariableList::SetVariant(int index, const Zn_Variant& value)
{
    Zn_Variable* variable = GetSafeItem(index);
    if (!variable)
        return -1;
    variable->value = value;
    return index;
}

int Zn_VariableList::SetVariant(int index, const Zn_Variant* value)
{
    return SetVariant(index, value ? *value : Zn_Variant::_ZnNullVariant);
}

int Zn_VariableList::SetStr(int index, const Zn_WString& value)
{
    return SetVariant(index, Zn_Variant(value));
}

int Zn_VariableList::SetStr(int index, const char16_t* value, int length)
{
    return SetStr(index, Zn_WString(value, length));
}

const Zn_WString& Zn_VariableList::Id(int index) const noexcept
{
    const Zn_Variable* variable = GetItem(index);
    return variable ? variable->id : Zn_WString::_ZnNullString;
}

const Zn_Variant& Zn_VariableList::Var(int index) const noexcept
{
    const Zn_Variable* variable = GetItem(index);
    return variable ? variable->value : Zn_Variant::_ZnNullVariant;
}

const Zn_Variant& Zn_VariableList::Var(const char16_t* id) const noexcept
{
    return Var(FindId(id));
}

int Zn_VariableList::Assign(const Zn_VariableList* other)
{
    return other ? AssignList(*other) : Count();
}

int Zn_VariableList::Append(const Zn_VariableList* other)
{
    return other ? AppendList(*other) : Count();
}

namespace {

constexpr std::uint16_t kMarker = 0xFF10;
constexpr std::uint16_t kVersion = 2000;

} // namespace

int Zn_VariableList::Save(Zn_Buffer& out, unsigned codePage) const
{
    zn::ByteWriter writer(out, codePage);
    writer.Put16(kMarker);
    writer.Put16(kVersion);
    writer.Put16(static_cast<std::uint16_t>(Count()));
    for (const Zn_Variable& variable : *this) {
        writer.PutText(variable.id);
        variable.value.SaveTo(writer);
    }
    return writer.Finish();
}

int Zn_VariableList::Load(const Zn_Buffer& source, int offset, unsigned codePage)
{
    // It may be one of the values, which go now.
    const Zn_Buffer in(source); // NOLINT(performance-unnecessary-copy-initialization)
    ReleaseList();
    const int length = in.GetLength();
    const unsigned char* data = in.GetData();
    if (offset < 0 || length - offset <= 2)
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
        offset += 2;
        if (idLength == 0) {
            // Save writes an item without an id too: its value is read and dropped to stay in step.
            Zn_Variant dropped;
            const int next = dropped.Load(in, offset, codePage);
            if (next < 0)
                return length;
            offset = next;
            continue;
        }
        if (offset >= length)
            return length;
        if (length - offset < idLength) {
            ReleaseList();
            return -1;
        }
        Zn_Variable variable;
        variable.id.Set(reinterpret_cast<const char*>(data + offset), idLength, codePage);
        const int next = variable.value.Load(in, offset + idLength, codePage);
        if (next < 0) {
            ReleaseList();
            return next;
        }
        Add(variable);
        offset = next;
    }
    return offset;
}

int Zn_VariableListChain::Add(Zn_VariableList* list)
{
    if (!list)
        return -1;
    const int place = IndexOf(list);
    return place >= 0 ? place : Zn_PtrList::Add(list);
}

const Zn_Variant* Zn_VariableListChain::GetVar(const char16_t* id) const
{
    for (void* pointer : *this) {
        const auto* list = static_cast<const Zn_VariableList*>(pointer);
        if (const Zn_Variable* variable = list->GetItem(id))
            return &variable->value;
    }
    return nullptr;
}

Zn_Variant* Zn_VariableListChain::GetSafeVar(const char16_t* id)
{
    return const_cast<Zn_Variant*>(GetVar(id));
}
