// An owning list of variants: the value of an ARRAY variant, the arguments of an object's methods, and
// the base of table rows.
//
// Places may be absent: GetItem and [] give null for them, GetItemNN the shared empty variant.
// Variants have no order as items: sorting and look-up by value do not apply.
#pragma once

#include "Zn_TypedList.h"
#include "Zn_Variant.h"

class ZN_API Zn_VariantHandler final : public Zn_TypedHandler<Zn_Variant> {
public:
    Zn_VariantHandler() noexcept : Zn_TypedHandler("Zn_Variant", 256) {}
    // Always -1: no two variants are equal to a list.
    int _CompareItem(void* a, void* b) override;
    static Zn_VariantHandler& Instance();
    static const Zn_Variant& EmptyItem() { return Zn_Variant::_ZnNullVariant; }
};

class ZN_API Zn_VariantList : public Zn_TypedList<Zn_Variant, Zn_VariantHandler> {
public:
    using Base = Zn_TypedList<Zn_Variant, Zn_VariantHandler>;
    using Base::Base;
    Zn_VariantList() noexcept = default;

    const Zn_Variant* operator[](int index) const noexcept { return GetItem(index); }
    using Base::GetSafeItem;
    // With create the list grows to the index and an absent place becomes an empty variant.
    Zn_Variant* GetSafeItem(int index, int create)
    {
        return static_cast<Zn_Variant*>(Zn_ObjList::GetSafeItem(index, create));
    }

    // Replace by, or append, copies; return the count. Null changes nothing.
    int Assign(const Zn_VariantList* source) { return source ? AssignList(*source) : Count(); }
    int Append(const Zn_VariantList* source) { return source ? AppendList(*source) : Count(); }
    Zn_VariantList& operator=(const Zn_VariantList* source)
    {
        Assign(source);
        return *this;
    }
    Zn_VariantList& operator+=(const Zn_VariantList* source)
    {
        Append(source);
        return *this;
    }
    Zn_VariantList& operator+=(const Zn_VariantList& source) { return *this += &source; }

    static void InitWithMemory(Zn_VariantList* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_VariantList* item) { Zn_FreeInPlace(item); }
};
