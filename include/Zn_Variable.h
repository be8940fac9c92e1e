// Named typed values: the parameters that travel with tables.
//
//     Zn_VariableList params;
//     params.AddStr(u"user", u"kim");
//     params.AddVariable(u"limit", Zn_Variant(500));
//     params.SetStr(u"a=1 b=2.5 c='7'");          // replaces them all: integer, decimal, string
//
// Zn_VariableListChain looks a name up in several lists in turn. Ids match without regard to case; a list
// that is filled through AddVariable and AddStr holds each id once. -1 means failure or "not found".
#pragma once

#include "Zn_Buffer.h"
#include "Zn_PtrList.h"
#include "Zn_TypedList.h"
#include "Zn_Variant.h"
#include "Zn_WString.h"

#include <concepts>

class Zn_DOMElement;

// What a variant can be made from. A number 0 is one: without this it would be taken for a null pointer.
template <class T>
concept Zn_PlainValue = std::constructible_from<Zn_Variant, const T&> && !std::convertible_to<T, const Zn_Variant*>;

class ZN_API Zn_Variable {
public:
    Zn_Variable() noexcept = default;
    Zn_Variable(const Zn_WString& variableId, const Zn_Variant& variableValue) : id(variableId), value(variableValue) {}
    Zn_Variable(const Zn_WString& variableId, const Zn_WString& text) : id(variableId), value(text) {}

    template <Zn_PlainValue T>
    Zn_Variable(const Zn_WString& variableId, const T& plain) : id(variableId), value(plain)
    {
    }

    void Set(const Zn_Variable& other) { *this = other; }
    void SetId(const Zn_WString& newId) { id = newId; }
    void SetId(const char16_t* newId, int length = -1) { id.Set(newId, length); }
    void SetVar(const Zn_Variant& newValue) { value = newValue; }

    // Callers rely on these three as they are. Two variables whose ids differ (with case) answer non-zero,
    // "equal"; only for equal ids do the values decide. Against a text the answer is 0 when the id equals it.
    int operator==(const Zn_Variable& other) const;
    int operator==(const Zn_Variant& other) const;
    int operator==(const char16_t* text) const;

    static void InitWithMemory(Zn_Variable* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_Variable* item) { Zn_FreeInPlace(item); }

    Zn_WString id;
    Zn_Variant value;
};

class ZN_API Zn_VariableHandler final : public Zn_TypedHandler<Zn_Variable> {
public:
    Zn_VariableHandler() noexcept : Zn_TypedHandler("Zn_Variable", 64) {}
    int _CompareItem(void* a, void* b) override;
    static Zn_VariableHandler& Instance();
    static const Zn_Variable& EmptyItem();
};

struct Zn_VariableIdOf {
    std::u16string_view operator()(const Zn_Variable& item) const noexcept { return item.id.GetView(); }
};

class ZN_API Zn_VariableList : public Zn_IdList<Zn_Variable, Zn_VariableHandler, Zn_VariableIdOf> {
public:
    using Base = Zn_IdList<Zn_Variable, Zn_VariableHandler, Zn_VariableIdOf>;
    using Base::Base;
    Zn_VariableList() noexcept = default;

    // Appends a copy, whether or not the id is there already; -1 for null or an empty id.
    int Add(const Zn_Variable& variable);
    int Add(const Zn_Variable* variable);

    // Replaces the value of the variable with that id, or appends one; returns its index. A null value is an
    // empty one; a null or empty id gives -1.
    int AddVariable(const Zn_WString& id, const Zn_Variant& value) { return AddVariable(id.GetText(), &value); }
    int AddVariable(const Zn_WString& id, const Zn_Variant* value) { return AddVariable(id.GetText(), value); }
    int AddVariable(const char16_t* id, const Zn_Variant& value) { return AddVariable(id, &value); }
    int AddVariable(const char16_t* id, const Zn_Variant* value);
    template <Zn_PlainValue T>
    int AddVariable(const Zn_WString& id, const T& value)
    {
        return AddVariable(id, Zn_Variant(value));
    }
    template <Zn_PlainValue T>
    int AddVariable(const char16_t* id, const T& value)
    {
        return AddVariable(id, Zn_Variant(value));
    }
    int AddStr(const Zn_WString& id, const Zn_WString& value);
    int AddStr(const Zn_WString& id, const char16_t* value, int length = -1);

    // Replaces the value of an existing item; returns the index, -1 when out of range.
    int SetVariant(int index, const Zn_Variant& value);
    int SetVariant(int index, const Zn_Variant* value);
    template <Zn_PlainValue T>
    int SetVariant(int index, const T& value)
    {
        return SetVariant(index, Zn_Variant(value));
    }
    int SetStr(int index, const Zn_WString& value);
    int SetStr(int index, const char16_t* value, int length = -1);
    // Replaces the whole list by the variables of a text of blank-separated id=value pairs. A quoted value is a
    // string; an unquoted number is an integer, or a double when it has a point. Returns the count, -1 for null.
    int SetStr(const char16_t* text);

    // Id or value, empty when missing.
    const Zn_WString& Id(int index) const noexcept;
    const Zn_Variant& Var(int index) const noexcept;
    const Zn_Variant& Var(const char16_t* id) const noexcept;

    int Assign(const Zn_VariableList* other);
    // Appends copies, without merging equal ids.
    int Append(const Zn_VariableList* other);
    Zn_VariableList& operator=(const Zn_VariableList* other)
    {
        Assign(other);
        return *this;
    }
    Zn_VariableList& operator+=(const Zn_VariableList& other)
    {
        Append(&other);
        return *this;
    }
    Zn_VariableList& operator+=(const Zn_VariableList* other)
    {
        Append(other);
        return *this;
    }

    // Appends the binary block and returns the end offset.
    int Save(Zn_Buffer& out, unsigned codePage) const;
    // Empties the list and reads a block at offset; returns the offset behind it, -1 for a wrong marker, the
    // buffer's length for data cut short; a value that can't be read empties the list and gives its negative result.
    int Load(const Zn_Buffer& source, int offset, unsigned codePage);
    // Appends "<params>" as 8-bit text. Nothing is escaped: ids and values stand as they are. Returns the new length.
    int SaveXml(Zn_Buffer& out, int unused, unsigned codePage) const;
    // Clears the element and makes its "params" child (behind an XML declaration when withDeclaration is exactly 1).
    // Returns the count.
    int SaveXml(Zn_DOMElement& element, int withDeclaration) const;
    // Reads a "params" element; returns the count. An existing id is overwritten.
    int LoadXml(const Zn_DOMElement& params, int clear);
};

class ZN_API Zn_VariableListChain : public Zn_PtrList {
public:
    Zn_VariableListChain() = default;
    explicit Zn_VariableListChain(Zn_VariableList* list) { Add(list); }

    // Appends a list that stays the caller's; returns its position, the existing one when it is there already, -1 for
    // null.
    int Add(Zn_VariableList* list);
    // Value of the first match in chain order, or null.
    const Zn_Variant* GetVar(const char16_t* id) const;
    Zn_Variant* GetSafeVar(const char16_t* id);
};
