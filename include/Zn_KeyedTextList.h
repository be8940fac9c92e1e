// What the lists of keyed texts (Zn_NamedStrList, Zn_CodeStrList) do alike: copying, comparing, and
// collecting what one list has over another.
//
// List is the concrete class. It says how an item's key is found in it, FindKeyOf(const Item&) -> index or
// -1, and appends a copy with AddCopy(const Item&) -> index or -1; its items have Str().
#pragma once

#include "Zn_TypedList.h"

template <class List, class Base>
class Zn_KeyedTextList : public Base {
public:
    using Item = typename Base::ItemType;
    using Base::Base;
    Zn_KeyedTextList() noexcept = default;

    // Replace by, or append, copies of the items; null changes nothing. Return the count.
    int Assign(const List* other)
    {
        if (other)
            this->AssignList(*other);
        return this->Count();
    }
    int Append(const List* other)
    {
        if (other)
            this->AppendList(*other);
        return this->Count();
    }
    List& operator+=(const List& other) { return Append(&other), Self(); }
    List& operator+=(const List* other) { return Append(other), Self(); }

    // 0 when both hold the same texts under the same keys, in any order. A longer other list gives -1, a shorter
    // one 1, a key that it lacks -1, else the first difference of two texts. A key that stands twice in this list
    // is matched to its first place in the other both times.
    int Compare(const List& other) const
    {
        if (this == &other)
            return 0;
        if (this->Count() != other.Count())
            return other.Count() > this->Count() ? -1 : 1;
        for (const Item& item : *this) {
            const Item* match = other.GetItem(other.FindKeyOf(item));
            if (!match)
                return -1;
            if (const int difference = match->Str().Compare(item.Str()))
                return difference;
        }
        return 0;
    }
    // Callers rely on it: 0, not 1, when the lists are equal.
    friend int operator==(const List& a, const List& b) { return a.Compare(b); }

    // Appends the items of changed that base lacks or has with another text; returns how many.
    int AppendDiffList(const List& base, const List& changed)
    {
        int appended = 0;
        for (int i = 0, n = changed.Count(); i < n; ++i) {
            const Item& item = *changed.GetItemNN(i);
            const Item* known = base.GetItem(base.FindKeyOf(item));
            if ((!known || known->Str().Compare(item.Str()) != 0) && Self().AddCopy(item) >= 0)
                ++appended;
        }
        return appended;
    }

    // The text of an item, empty when out of range.
    const Zn_WString& Str(int index) const noexcept
    {
        const Item* item = this->GetItem(index);
        return item ? item->Str() : Zn_WString::_ZnNullString;
    }

private:
    List& Self() noexcept { return static_cast<List&>(*this); }
};
