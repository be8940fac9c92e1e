// Named texts and their list: the attributes of an element, the entries of a settings section.
//
//     Zn_NamedStrList list;
//     list.AddStr(u"Name", u"a", 1);
//     list.AddStr(u"NAME", u"b", 1);      // replaces the text: still one item, named "Name"
//     list.Str(u"name");                  // "b"
//
// Names match without regard to case, and look-ups find the first of several. The list neither parses
// nor formats text. Adding gives an index, -1 for an empty name. With ordering option 1 the list keeps
// its items in the order of their names, each name once.
#pragma once

#include "Zn_KeyedTextList.h"

#include <utility>

class ZN_API Zn_NamedStr {
public:
    Zn_NamedStr() noexcept = default;
    Zn_NamedStr(Zn_WString id, Zn_WString str) noexcept : id_(std::move(id)), str_(std::move(str)) {}

    const Zn_WString& Id() const noexcept { return id_; }
    const Zn_WString& Str() const noexcept { return str_; }

    void Set(const Zn_NamedStr& other) { *this = other; }
    void Set(const Zn_WString& id, const Zn_WString& str) { id_ = id, str_ = str; }
    void SetId(const Zn_WString& id) { id_ = id; }
    void SetId(const char16_t* id, int length = -1) { id_.Set(id, length); }
    void SetStr(const Zn_WString& str) { str_ = str; }
    void SetStr(const char16_t* str, int length = -1) { str_.Set(str, length); }
    Zn_WString& GetSafeStr() noexcept { return str_; }

    // With case: by id, then by text.
    int Compare(const Zn_NamedStr& other) const noexcept;
    int Compare(const Zn_NamedStr* other) const noexcept { return Compare(other ? *other : Zn_NamedStr()); }
    // Callers rely on it: both give 0, not 1, when equal. The second compares the id, with case.
    int operator==(const Zn_NamedStr& other) const noexcept { return Compare(other); }
    int operator==(const char16_t* id) const noexcept { return id_.Compare(id); }
    // Without regard to case.
    int CompareId(const char16_t* id) const noexcept;
    int CompareStr(const char16_t* str) const noexcept { return str_.Compare(str); }

    static void InitWithMemory(Zn_NamedStr* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_NamedStr* item) { Zn_FreeInPlace(item); }

private:
    Zn_WString id_;
    Zn_WString str_;
};

class ZN_API Zn_NamedStrHandler final : public Zn_TypedHandler<Zn_NamedStr> {
public:
    Zn_NamedStrHandler() noexcept : Zn_TypedHandler("Zn_NamedStr", 256) {}
    // Ids without regard to case.
    int _CompareItem(void* a, void* b) override;
    static Zn_NamedStrHandler& Instance();
    static const Zn_NamedStr& EmptyItem();
};

struct Zn_NamedStrIdOf {
    std::u16string_view operator()(const Zn_NamedStr& item) const noexcept { return item.Id().GetView(); }
};

class ZN_API Zn_NamedStrList
    : public Zn_KeyedTextList<Zn_NamedStrList, Zn_IdList<Zn_NamedStr, Zn_NamedStrHandler, Zn_NamedStrIdOf>> {
public:
    using Base = Zn_KeyedTextList<Zn_NamedStrList, Zn_IdList<Zn_NamedStr, Zn_NamedStrHandler, Zn_NamedStrIdOf>>;
    using Base::Base;
    Zn_NamedStrList& operator=(const Zn_NamedStrList* other)
    {
        Assign(other);
        return *this;
    }
    using Base::GetItemNN;
    using Base::Str;

    // The shared empty item of look-ups by name is another than that of look-ups by index.
    const Zn_NamedStr* GetItemNN(Zn_NameArg id) const noexcept;

    // Adds a copy unless the name is there. Then replace 1 overwrites that item, spelling of the name
    // included; anything else changes nothing. Returns the index either way.
    int Add(const Zn_NamedStr& item, int replace = 0);
    // Where the name is there and replace is 1, changes the text and keeps the spelling of the name. Else appends,
    // even a second item of that name: callers rely on this difference from Add. Numbers become decimal text.
    int AddStr(const Zn_WString& id, const Zn_WString& value, int replace);
    int AddStr(const Zn_WString& id, int value, int replace);
    int AddStr(const Zn_WString& id, long value, int replace) { return AddStr(id, static_cast<int>(value), replace); }
    int AddStr(const Zn_WString& id, double value, int replace);
    // Deletes the first item of that name and returns the index it had; -1 when there is none.
    int DelStr(Zn_NameArg id);

    // Empty when there is none.
    const Zn_WString& Id(int index) const noexcept;
    const Zn_WString& Str(Zn_NameArg id) const noexcept { return Str(FindId(id)); }

    int FindKeyOf(const Zn_NamedStr& item) const noexcept { return FindId(item.Id()); }
    int AddCopy(const Zn_NamedStr& item) { return AddStr(item.Id(), item.Str(), 0); }
};
