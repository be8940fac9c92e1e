// Texts under integer codes, and their list: code tables and numbered messages.
//
//     Zn_CodeStrList list;
//     list.AddStr(404, u"not found");
//     list.StrByCode(404);
//
// Look-ups find the first of several equal codes, -1 or the empty text when there is none.
#pragma once

#include "Zn_KeyedTextList.h"

#include <utility>

class ZN_API Zn_CodeStr {
public:
    Zn_CodeStr() noexcept = default;
    Zn_CodeStr(int code, Zn_WString str) noexcept : code_(code), str_(std::move(str)) {}
    Zn_CodeStr(int code, const char16_t* str) : code_(code), str_(str) {}

    int Code() const noexcept { return code_; }
    const Zn_WString& Str() const noexcept { return str_; }

    void Set(const Zn_CodeStr& other) { *this = other; }
    void Set(int code, const Zn_WString& str) { code_ = code, str_ = str; }
    void SetCode(int code) noexcept { code_ = code; }
    void SetStr(const Zn_WString& str) { str_ = str; }
    void SetStr(const char16_t* str, int length = -1) { str_.Set(str, length); }

    // The difference of the codes (32 bits, it wraps); for equal codes the texts decide, with case.
    int Compare(const Zn_CodeStr& other) const noexcept;
    int Compare(const Zn_CodeStr* other) const noexcept { return Compare(other ? *other : Zn_CodeStr()); }
    // Callers rely on both as they are: against an item 0 means equal; against a code 1 does.
    int operator==(const Zn_CodeStr& other) const noexcept { return Compare(other); }
    int operator==(int code) const noexcept { return CompareCode(code); }
    // 1 when the codes are equal, else 0.
    int CompareCode(int code) const noexcept { return code_ == code ? 1 : 0; }
    int CompareStr(const char16_t* str) const noexcept { return str_.Compare(str); }

    static void InitWithMemory(Zn_CodeStr* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_CodeStr* item) { Zn_FreeInPlace(item); }

private:
    std::int32_t code_ = 0;
    Zn_WString str_;
};

class ZN_API Zn_CodeStrHandler final : public Zn_TypedHandler<Zn_CodeStr> {
public:
    Zn_CodeStrHandler() noexcept : Zn_TypedHandler("Zn_CodeStr", 128) {}
    // Callers rely on it: 1 when the codes are equal, else 0, the reverse of every other handler. It orders nothing.
    int _CompareItem(void* a, void* b) override;
    static Zn_CodeStrHandler& Instance();
    static const Zn_CodeStr& EmptyItem();
};

class ZN_API Zn_CodeStrList : public Zn_KeyedTextList<Zn_CodeStrList, Zn_TypedList<Zn_CodeStr, Zn_CodeStrHandler>> {
public:
    using Base = Zn_KeyedTextList<Zn_CodeStrList, Zn_TypedList<Zn_CodeStr, Zn_CodeStrHandler>>;
    // The option is taken and changes nothing: items stand as they were added, repeated codes included.
    explicit Zn_CodeStrList(int /*option*/ = 1) noexcept {}
    Zn_CodeStrList& operator=(const Zn_CodeStrList* other)
    {
        Assign(other);
        return *this;
    }

    int FindCode(int code) const noexcept;
    int FindItem(const Zn_CodeStr& item) const noexcept { return FindCode(item.Code()); }
    // Append, whether or not the code is there; return the new index.
    int AddStr(int code, const Zn_WString& str) { return Add(Zn_CodeStr(code, str)); }
    int AddStr(int code, const char16_t* str) { return Add(Zn_CodeStr(code, str)); }
    // Deletes the first item of that code and returns the index it had; -1 when there is none.
    int DelStr(int code);

    // 0 when out of range.
    int Code(int index) const noexcept { return GetItemNN(index)->Code(); }
    const Zn_WString& StrByCode(int code) const noexcept { return Str(FindCode(code)); }

    int FindKeyOf(const Zn_CodeStr& item) const noexcept { return FindCode(item.Code()); }
    int AddCopy(const Zn_CodeStr& item) { return Add(item); }
};
