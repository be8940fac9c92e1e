#include "Zn_NamedStr.h"

int Zn_NamedStr::Compare(const Zn_NamedStr& other) const noexcept
{
    const int ids = id_.Compare(other.id_);
    return ids != 0 ? ids : str_.Compare(other.str_);
}

int Zn_NamedStr::CompareId(const char16_t* id) const noexcept
{
    return zn_stricmpW(id_, id);
}

int Zn_NamedStrHandler::_CompareItem(void* a, void* b)
{
    return zn_icompare(static_cast<const Zn_NamedStr*>(a)->Id(), static_cast<const Zn_NamedStr*>(b)->Id());
}

Zn_NamedStrHandler& Zn_NamedStrHandler::Instance()
{
    return Zn_Global<Zn_NamedStrHandler>();
}

const Zn_NamedStr& Zn_NamedStrHandler::EmptyItem()
{
    return Zn_Global<Zn_NamedStr>();
}

const Zn_NamedStr* Zn_NamedStrList::GetItemNN(Zn_NameArg id) const noexcept
{
    struct NotFound : Zn_NamedStr {};
    const Zn_NamedStr* item = GetItem(id);
    return item ? item : &Zn_Global<NotFound>();
}

int Zn_NamedStrList::Add(const Zn_NamedStr& item, int replace)
{
    if (item.Id().IsEmpty())
        return -1;
    const int found = FindId(item.Id());
    if (found < 0)
        return Base::Add(item);
    if (replace == 1)
        GetSafeItem(found)->Set(item);
    return found;
}

int Zn_NamedStrList::AddStr(const Zn_WString& id, const Zn_WString& value, int replace)
{
    if (id.IsEmpty())
        return -1;
    const int found = replace == 1 ? FindId(id) : -1;
    if (found < 0)
        return Base::Add(Zn_NamedStr(id, value));
    GetSafeItem(found)->SetStr(value);
    return found;
}

int Zn_NamedStrList::AddStr(const Zn_WString& id, int value, int replace)
{
    Zn_WString text;
    text.Set(value);
    return AddStr(id, text, replace);
}

int Zn_NamedStrList::AddStr(const Zn_WString& id, double value, int replace)
{
    Zn_WString text;
    text.Set(value);
    return AddStr(id, text, replace);
}

int Zn_NamedStrList::DelStr(Zn_NameArg id)
{
    const int found = id.IsEmpty() ? -1 : FindId(id);
    if (found >= 0)
        Delete(found);
    return found;
}

const Zn_WString& Zn_NamedStrList::Id(int index) const noexcept
{
    const Zn_NamedStr* item = GetItem(index);
    return item ? item->Id() : Zn_WString::_ZnNullString;
}
