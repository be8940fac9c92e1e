// One typed value of one of ten kinds: what every table cell, parameter and operand is.
//
//     Zn_Variant v(u"42");
//     int n = v.ToInteger();          // 42; v stays a STRING
//     v.ChangeType(Zn_Variant::Decimal);
//     if (v == 42)
//         v = Zn_DateTime(2004, 7, 15, 0, 0, 0);
//
// A variant owns its value. Copies share text and bytes until one side writes; arrays are copied item
// by item; objects are referred to. It is 24 bytes, and zeroed memory is a valid empty variant.
//
// The field `type` is read directly. It is changed by Set..., ChangeType, Load and Clear only. ChangeType and
// Load can leave it naming another kind than the value is of; the variant knows what it really holds, so such
// a value is safe: it reads as zero, or as empty text, bytes, list or object, of the kind that type names.
//
// Nothing here reports an error: a conversion that does not apply gives 0, 0.0, the zero amount, the default
// date or the empty text; only Load answers -1. int and long mean INTEGER, clamped to 32 bits. One variant
// is used by one thread at a time; copies may live in other threads.
#pragma once

#include "Zn_AString.h"
#include "Zn_Base.h"
#include "Zn_Buffer.h"
#include "Zn_Currency.h"
#include "Zn_DateTime.h"
#include "Zn_WString.h"

#include <bit>
#include <new>

namespace zn {
class ByteWriter;
}
class Zn_VariantList;
class Zn_VarObject;
class Zn_VarObjectBase;
class Zn_VarObjectCtx;

class ZN_API Zn_Variant {
public:
    enum : std::uint16_t {
        Empty = 0,
        Null = 1,
        Integer = 3,
        Decimal = 5,
        Currency = 6,
        Date = 7,
        String = 8,
        Binary = 13,
        Array = 0x2000,
        Object = 0x4000
    };

    constexpr Zn_Variant() noexcept = default;
    Zn_Variant(const Zn_Variant& other) : type(other.type), live_(other.live_), value_(other.value_)
    {
        if (other.live_ > Bits)
            CopyHeld(other);
    }
    Zn_Variant(Zn_Variant&& other) noexcept : type(other.type), live_(other.live_), value_(other.value_)
    {
        other.Init();
    }
    Zn_Variant(const Zn_WString& text) noexcept : type(String), live_(Text) { new (&value_.text) Zn_WString(text); }
    Zn_Variant(Zn_WString&& text) noexcept : type(String), live_(Text)
    {
        new (&value_.text) Zn_WString(static_cast<Zn_WString&&>(text));
    }
    // Length in characters; -1 means up to the terminator.
    Zn_Variant(const char16_t* text, int length = -1) : Zn_Variant(Zn_WString(text, length)) {}
    Zn_Variant(std::u16string_view text) : Zn_Variant(Zn_WString(text)) {}
    Zn_Variant(int value) noexcept : type(Integer), live_(Bits), value_(Value::OfInteger(value)) {}
    Zn_Variant(long value) noexcept : Zn_Variant(Clamp(value)) {}
    Zn_Variant(double value) noexcept : type(Decimal), live_(Bits), value_(Value::Of(value)) {}
    Zn_Variant(const Zn_Currency& value) noexcept : type(Currency), live_(Bits), value_(Value::Of(value)) {}
    Zn_Variant(const Zn_DateTime& value) noexcept : type(Date), live_(Bits), value_(Value::Of(value)) {}
    Zn_Variant(const Zn_Buffer& bytes) noexcept : type(Binary), live_(Bytes) { new (&value_.bytes) Zn_Buffer(bytes); }
    Zn_Variant(const Zn_VariantList& list) { Set(list); }
    Zn_Variant(const Zn_VarObject& object) { Set(object); }
    ~Zn_Variant()
    {
        if (live_ > OddBits)
            Release();
    }

    // For raw memory: makes it an empty variant without looking at what is there.
    void Init() noexcept { new (this) Zn_Variant(); }
    void Clear() noexcept
    {
        if (live_ > OddBits)
            Release();
        Init();
    }
    // Construct and destroy in memory of the caller's; null is ignored.
    static void InitWithMemory(Zn_Variant* memory) noexcept
    {
        if (memory)
            memory->Init();
    }
    static void FreeWithMemory(Zn_Variant* item) noexcept
    {
        if (item)
            item->~Zn_Variant();
    }

    // Each releases the old value and takes the new one; the argument may be part of the old value.
    // Of a variant whose type code is unknown only the code is copied.
    void Set(const Zn_Variant& other) { *this = other; }
    void Set(const Zn_WString& text) noexcept { *this = Zn_Variant(text); }
    void Set(const char16_t* text, int length = -1) { *this = Zn_Variant(text, length); }
    void Set(std::u16string_view text) { *this = Zn_Variant(text); }
    void Set(int value) noexcept { *this = Zn_Variant(value); }
    void Set(long value) noexcept { *this = Zn_Variant(value); }
    void Set(double value) noexcept { *this = Zn_Variant(value); }
    void Set(const Zn_Currency& value) noexcept { *this = Zn_Variant(value); }
    void Set(const Zn_DateTime& value) noexcept { *this = Zn_Variant(value); }
    void Set(const Zn_VariantList& list);
    void Set(const Zn_VarObject& object);
    void SetObject(Zn_VarObjectCtx* context, Zn_VarObjectBase* component, Zn_VarObjectBase* object);

    void SetStr(const char16_t* text, int length = -1) { Set(text, length); }
    void SetStr(const Zn_WString& text) noexcept { Set(text); }
    void SetStr(std::u16string_view text) { Set(text); }
    // 8-bit text in a code page (0: the locale's); length in bytes, -1 up to the terminator.
    void SetText8(const char* text, int length, unsigned codePage);
    void SetBinary(const Zn_Buffer& bytes) noexcept { *this = Zn_Variant(bytes); }
    void SetBinary(const unsigned char* bytes, int length);
    // As the Zn_Currency operations of the same name.
    void SetCurrency(std::int32_t units, std::int32_t fraction) noexcept { Set(Zn_Currency(units, fraction)); }
    void SetCurrency(int units) noexcept { Set(Zn_Currency(units)); }
    void SetCurrency(long units) noexcept { Set(Zn_Currency(units)); }
    void SetCurrency(double amount) noexcept { Set(Zn_Currency(amount)); }
    void SetCurrency(const char16_t* text) noexcept { Set(Zn_Currency(text)); }
    // As the Zn_DateTime constructors; a text is read as by Zn_DateTime::SetDateTime and gives the default date
    // when it is no valid one.
    void SetDate(const Zn_DateTime& value) noexcept { Set(value); }
    void SetDate(double days) noexcept { Set(Zn_DateTime(days)); }
    void SetDate(std::integral auto days) noexcept { Set(Zn_DateTime(days)); }
    void SetDate(int year, int month, int day, int hour, int minute, int second) noexcept
    {
        Set(Zn_DateTime(year, month, day, hour, minute, second));
    }
    void SetDate(const Zn_WString& text) noexcept;
    // INTEGER: the leading integer of a text, clamped to 32 bits; null, empty and unreadable texts give 0.
    void SetInteger(const char16_t* text) noexcept;
    // DECIMAL: the leading number of a text, as wcstod of the C locale reads it (exponents, hexadecimal, inf and nan
    // included); 0.0 where there is none.
    void SetDouble(const char16_t* text) noexcept;

    Zn_Variant& operator=(const Zn_Variant& other)
    {
        if (live_ <= Bits && other.live_ <= Bits)
            TakeBits(other);
        else if (this != &other)
            AssignSlow(other);
        return *this;
    }
    Zn_Variant& operator=(Zn_Variant&& other) noexcept
    {
        if (this == &other)
            return *this;
        if (live_ > OddBits) {
            Zn_Variant taken(static_cast<Zn_Variant&&>(other)); // first: the other may be a part of this one's array
            Release();
            TakeBits(taken);
            taken.Init();
        } else {
            TakeBits(other);
            other.Init();
        }
        return *this;
    }
    // Null clears.
    Zn_Variant& operator=(const Zn_Variant* other);
    Zn_Variant& operator=(const Zn_WString& text) noexcept { return *this = Zn_Variant(text); }
    Zn_Variant& operator=(const char16_t* text) { return *this = Zn_Variant(text); }
    Zn_Variant& operator=(std::u16string_view text) { return *this = Zn_Variant(text); }
    Zn_Variant& operator=(int value) noexcept { return *this = Zn_Variant(value); }
    Zn_Variant& operator=(long value) noexcept { return *this = Zn_Variant(value); }
    Zn_Variant& operator=(double value) noexcept { return *this = Zn_Variant(value); }
    Zn_Variant& operator=(const Zn_Currency& value) noexcept { return *this = Zn_Variant(value); }
    Zn_Variant& operator=(const Zn_DateTime& value) noexcept { return *this = Zn_Variant(value); }
    Zn_Variant& operator=(const Zn_Buffer& bytes) noexcept { return *this = Zn_Variant(bytes); }
    Zn_Variant& operator=(const Zn_VariantList& list)
    {
        Set(list);
        return *this;
    }
    // What Var_Add gives (Zn_VariantOp.h): anything a variant can be made from can be added.
    Zn_Variant& operator+=(const Zn_Variant& other);

    // Access without conversion, whatever the type code says: the value itself when it is of that kind. Otherwise
    // the const forms give a shared empty one; the others make an empty one when the type code names that
    // kind, and else give null.
    Zn_WString* GetStr();
    Zn_Buffer* GetBinary();
    Zn_VariantList* GetArray();
    Zn_VarObject* GetObject();
    Zn_Currency* GetCurrency();
    Zn_DateTime* GetDateTime();
    const Zn_WString* GetConstStr() const noexcept { return live_ == Text ? &value_.text : &Zn_WString::_ZnNullString; }
    const Zn_Buffer* GetConstBinary() const noexcept;
    const Zn_VariantList* GetConstArray() const noexcept;
    const Zn_VarObject* GetConstObject() const noexcept;
    const Zn_Currency* GetConstCurrency() const noexcept;
    const Zn_DateTime* GetConstDateTime() const noexcept;
    const Zn_WString* GetStr() const noexcept { return GetConstStr(); }
    const Zn_Buffer* GetBinary() const noexcept { return GetConstBinary(); }
    const Zn_VariantList* GetArray() const noexcept { return GetConstArray(); }
    const Zn_VarObject* GetObject() const noexcept { return GetConstObject(); }
    const Zn_Currency* GetCurrency() const noexcept { return GetConstCurrency(); }
    const Zn_DateTime* GetDateTime() const noexcept { return GetConstDateTime(); }

    // Conversions; the numeric ones allocate nothing. An object gives the value of its default property.
    // Numbers are cut toward zero and clamped to 32 bits, NaN is 0; the texts "true" and "false" are 1 and 0 in any
    // case.
    std::int32_t ToInteger() const { return type == Integer ? HeldInteger() : ConvertToInteger(); }
    double ToDouble() const { return type == Decimal ? HeldDecimal() : ConvertToDouble(); }
    // A text is read as a double first; callers rely on ChangeType reading it by the rules of Zn_Currency instead.
    Zn_Currency ToCurrency() const;
    Zn_DateTime ToDateTime() const;
    // BINARY gives "[binary]", an object without a default property "[object:" id "]". Callers rely on the text of
    // an array beginning with "91" instead of "[": 1 and 2 give "911,2]". The 8-bit form has "[1,2]".
    void ToString(Zn_WString& out) const;
    Zn_WString ToString() const;
    void ToAString(Zn_AString& out, unsigned codePage) const;
    Zn_AString ToAString(unsigned codePage) const;
    // Converts this variant, or makes it the converted source. The targets are INTEGER, DECIMAL, CURRENCY, DATE and
    // STRING; callers rely on any other code only relabelling this variant (doing nothing with a source), and on a
    // DATE turned into STRING doing the same: for a date's text use ToString.
    void ChangeType(std::uint16_t newType, const Zn_Variant* source = nullptr);

    // "INTEGER", "DECIMAL", "CURRENCY", "DATE", "STRING", "BINARY", "ARRAY", "object", "null", or "UNKNOWN".
    const char16_t* GetTypeString() const noexcept;
    // Type code of a name, 0 for none; only the first characters count ("INT" is 3, "Blobby" is 13). Callers rely on
    // the names being others than GetTypeString's: "BLOB" is BINARY; "BINARY" and "object" are unknown.
    static int GetTypeNo(const char16_t* name) noexcept;

    // Below, equal to or above 0. Variants of different types give 1, arrays 0. Callers rely on dates being compared
    // with the other date's bits read as an amount; operator== compares dates properly.
    int Compare(const Zn_Variant& other) const;
    // 1 for two INTEGER, DECIMAL, CURRENCY, DATE or STRING of one type.
    int IsComparable(const Zn_Variant& other) const noexcept;
    // Equal types and values; an array equals nothing, not even itself.
    int operator==(const Zn_Variant& other) const;
    // Against plain values: a text equals a STRING only; a number, an amount or a date equals INTEGER, DECIMAL,
    // CURRENCY or DATE converted to its kind (a whole number ignores the fraction of CURRENCY and DATE).
    int operator==(const char16_t* text) const noexcept;
    int operator==(const Zn_WString& text) const noexcept { return *this == text.GetView(); }
    int operator==(std::u16string_view text) const noexcept;
    int operator==(int value) const { return *this == static_cast<long>(value); }
    int operator==(long value) const;
    int operator==(double value) const;
    int operator==(const Zn_Currency& value) const;
    int operator==(const Zn_DateTime& value) const;
    int operator!=(const Zn_Variant& other) const { return !(*this == other); }
    int operator!=(const char16_t* text) const noexcept { return !(*this == text); }
    int operator!=(const Zn_WString& text) const noexcept { return !(*this == text); }
    int operator!=(std::u16string_view text) const noexcept { return !(*this == text); }
    int operator!=(int value) const { return !(*this == value); }
    int operator!=(long value) const { return !(*this == value); }
    int operator!=(double value) const { return !(*this == value); }
    int operator!=(const Zn_Currency& value) const { return !(*this == value); }
    int operator!=(const Zn_DateTime& value) const { return !(*this == value); }

    // The binary record (docs/formats/variant-record.md). Save appends it and returns the buffer's new length.
    int Save(Zn_Buffer& buffer, unsigned codePage) const;
    // Writes the record where an encoder of the library writes its own.
    void SaveTo(zn::ByteWriter& out) const;
    // Reads a record at an offset and returns the offset behind it; -1 when it does not fit, the variant being empty
    // then but for the record's type code. Callers rely on a record that ends the buffer with its type being refused.
    int Load(const Zn_Buffer& buffer, int offset, unsigned codePage);
    // The same for a record whose type stands elsewhere.
    int Load(short recordType, const Zn_Buffer& buffer, int offset, unsigned codePage);

    // Shared and always empty: what look-ups give instead of null.
    static const Zn_Variant _ZnNullVariant;

    std::uint16_t type = Empty;

private:
    // What really lives in the value area. Up to OddBits nothing needs to be released; OddBits are those of a
    // variant relabelled to an unknown code, which copies leave behind.
    enum Live : std::uint16_t { None, Bits, OddBits, Text, Bytes, List, Reference };
    struct ArrayBox;

    // Every kind lives in the first word; the second stays zero.
    union Value {
        constexpr Value() noexcept : words{} {}
        Value(const Value& other) noexcept : words{other.words[0], 0} {}
        Value& operator=(const Value&) = delete;
        ~Value() {} // NOLINT(modernize-use-equals-default): defaulted, it would be deleted
        // Whole words are written, since what is read in other pieces than it was written in is read slowly.
        template <class Plain>
        static Value Of(const Plain& plain) noexcept
        {
            return Value(std::bit_cast<std::uint64_t>(plain));
        }
        static Value OfInteger(std::int32_t integer) noexcept
        {
            const std::uint64_t word = static_cast<std::uint32_t>(integer);
            return Value(std::endian::native == std::endian::little ? word : word << 32);
        }

        std::uint64_t words[2];
        std::int32_t integer;
        double decimal;
        Zn_Currency currency;
        Zn_DateTime date;
        Zn_WString text;
        Zn_Buffer bytes;
        ArrayBox* array;
        Zn_VarObject* object;

    private:
        explicit Value(std::uint64_t word) noexcept : words{word, 0} {}
    };

    static constexpr std::int32_t Clamp(long value) noexcept
    {
        return value > INT32_MAX ? INT32_MAX : value < INT32_MIN ? INT32_MIN : static_cast<std::int32_t>(value);
    }
    bool IsText() const noexcept { return live_ == Text && type == String; }
    void TakeBits(const Zn_Variant& other) noexcept
    {
        type = other.type;
        live_ = other.live_;
        value_.words[0] = other.value_.words[0];
    }
    // Makes a copy of the other's bits a copy of what they stand for.
    void CopyHeld(const Zn_Variant& other)
    {
        if (other.IsText())
            new (&value_.text) Zn_WString(other.value_.text);
        else
            CopySlow(other);
    }
    std::int32_t HeldInteger() const noexcept { return live_ == Bits ? value_.integer : 0; }
    double HeldDecimal() const noexcept { return live_ == Bits ? value_.decimal : 0.0; }
    std::int32_t ConvertToInteger() const;
    double ConvertToDouble() const;
    void Relabel(std::uint16_t newType) noexcept;
    void CopySlow(const Zn_Variant& other);
    void AssignSlow(const Zn_Variant& other);
    void Release() noexcept;

    Live live_ = None;
    std::uint32_t zero_ = 0; // no byte is left to chance
    alignas(8) Value value_;
};

static_assert(sizeof(Zn_Variant) == 24, "arrays of variants are made by zeroing blocks of 24 bytes");
