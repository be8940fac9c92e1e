#include "Zn_Config.h"

namespace {

const Zn_WString* ValueOf(const Zn_NamedStr* entry) noexcept
{
    return entry ? &entry->Str() : nullptr;
}

const Zn_WString& OrEmpty(const Zn_WString* value) noexcept
{
    return value ? *value : Zn_WString::_ZnNullString;
}

template <class Number>
Zn_WString TextOf(Number number)
{
    Zn_WString text;
    text.Set(number);
    return text;
}

} // namespace

// ---- sections ---------------------------------------------------------------------------------

int Zn_ConfigSection::SetId(const char16_t* text)
{
    if (!text)
        return -1;
    id = text;
    return 0;
}

int Zn_ConfigSection::SetId(const Zn_WString& text)
{
    id = text;
    return 0;
}

int Zn_ConfigSection::Assign(const Zn_ConfigSection& other)
{
    if (this != &other) {
        id = other.id;
        AssignList(other);
    }
    return 0;
}

int Zn_ConfigSection::SetItem(const Zn_WString& name, const Zn_WString& value)
{
    if (Zn_NamedStr* entry = GetSafeItem(name)) {
        entry->SetStr(value);
        return 0;
    }
    return AddItem(name, value);
}

int Zn_ConfigSectionHandler::_CompareItem(void* a, void* b)
{
    return zn_icompare(static_cast<const Zn_ConfigSection*>(a)->id, static_cast<const Zn_ConfigSection*>(b)->id);
}

Zn_ConfigSectionHandler& Zn_ConfigSectionHandler::Instance()
{
    return Zn_Global<Zn_ConfigSectionHandler>();
}

const Zn_ConfigSection& Zn_ConfigSectionHandler::EmptyItem()
{
    return Zn_Global<Zn_ConfigSection>();
}

int Zn_ConfigSectionList::AddSection(const char16_t* name)
{
    return name ? AddSection(Zn_WString(name)) : -1;
}

int Zn_ConfigSectionList::AddSection(const Zn_WString& name)
{
    if (FindId(name) >= 0)
        return 0;
    Zn_ConfigSection section;
    section.id = name;
    return Add(section);
}

int Zn_ConfigSectionList::Append(const Zn_ConfigSectionList* other)
{
    return other ? AppendList(*other) : 0;
}

// ---- settings ---------------------------------------------------------------------------------

void Zn_Config::Clear() noexcept
{
    ReleaseList();
    reserved_ = 0;
    lastError = 0;
}

int Zn_Config::Assign(const Zn_Config& other)
{
    reserved_ = other.reserved_;
    return this == &other ? Count() : AssignList(other);
}

int Zn_Config::SetItem(Zn_NameArg section, Zn_NameArg name, const Zn_WString& value)
{
    if (section.IsNull() || name.IsEmpty())
        return -1;
    Zn_ConfigSection* there = GetSafeSection(section);
    if (!there)
        there = Base::GetSafeItem(AddSection(Zn_WString(section.GetView())));
    return there ? there->SetItem(name.GetView(), value) : -1;
}

int Zn_Config::SetItem(Zn_NameArg section, Zn_NameArg name, const char16_t* value)
{
    return SetItem(section, name, Zn_WString(value));
}

int Zn_Config::SetItem(Zn_NameArg section, Zn_NameArg name, char16_t value)
{
    return SetItem(section, name, Zn_WString(&value, 1));
}

int Zn_Config::SetItem(Zn_NameArg section, Zn_NameArg name, int value)
{
    return SetItem(section, name, TextOf(value));
}

int Zn_Config::SetItem(Zn_NameArg section, Zn_NameArg name, double value)
{
    return SetItem(section, name, TextOf(value));
}

const Zn_WString* Zn_Config::GetItem(Zn_NameArg section, Zn_NameArg name) const noexcept
{
    const Zn_ConfigSection* there = GetSection(section);
    return there ? ValueOf(there->GetItem(name)) : nullptr;
}

const Zn_WString* Zn_Config::GetItem(int section, int entry) const noexcept
{
    const Zn_ConfigSection* there = GetSection(section);
    return there ? ValueOf(there->GetItem(entry)) : nullptr;
}

const Zn_WString& Zn_Config::GetItemNN(Zn_NameArg section, Zn_NameArg name) const noexcept
{
    return OrEmpty(GetItem(section, name));
}

const Zn_WString& Zn_Config::GetItemNN(int section, int entry) const noexcept
{
    return OrEmpty(GetItem(section, entry));
}

Zn_WString* Zn_Config::GetSafeItem(Zn_NameArg section, Zn_NameArg name) noexcept
{
    Zn_ConfigSection* there = GetSafeSection(section);
    Zn_NamedStr* entry = there ? there->GetSafeItem(name) : nullptr;
    return entry ? &entry->GetSafeStr() : nullptr;
}

int Zn_Config::ChangeSectionId(Zn_NameArg oldName, Zn_NameArg newName)
{
    Zn_ConfigSection* section = GetSafeSection(oldName);
    if (section && !newName.IsNull())
        section->id = newName.GetView();
    return 0;
}

int Zn_Config::ChangeItemId(Zn_NameArg section, Zn_NameArg oldName, Zn_NameArg newName)
{
    Zn_ConfigSection* there = GetSafeSection(section);
    Zn_NamedStr* entry = there ? there->GetSafeItem(oldName) : nullptr;
    if (entry && !newName.IsEmpty())
        entry->SetId(Zn_WString(newName.GetView()));
    return 0;
}

int Zn_Config::DelItem(Zn_NameArg section, Zn_NameArg name)
{
    if (Zn_ConfigSection* there = GetSafeSection(section))
        there->DelStr(name);
    return 0;
}

int Zn_Config::DelSection(Zn_NameArg name)
{
    const int index = FindId(name);
    return index < 0 ? 0 : Delete(index);
}

int Zn_Config::Keep(int result) noexcept
{
    if (result == -1)
        lastError = GetError();
    return result;
}

int Zn_Config::Load(const char16_t* path)
{
    const Zn_WString given(path); // it may be the name that is kept
    fileName_ = given;
    return Keep(Zn_ConfigSectionList::Load(given));
}

int Zn_Config::Save(const char16_t* path)
{
    return Keep(Zn_ConfigSectionList::Save(PathOr(path)));
}

int Zn_Config::SaveWithValues(const char16_t* path, Zn_WString* refused)
{
    return Keep(Zn_ConfigSectionList::SaveWithValues(PathOr(path), refused));
}
