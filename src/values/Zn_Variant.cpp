#include "Zn_Variant.h"

#include "Zn_VarObject.h"
#include "foundation/number_text.h"
#include "values/variant_array.h"
#include "values/variant_types.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

constinit const Zn_Variant Zn_Variant::_ZnNullVariant;

namespace {

Zn_VarObject* NewReference()
{
    void* memory = _zn_malloc(static_cast<int>(sizeof(Zn_VarObject)));
    return memory ? new (memory) Zn_VarObject : nullptr;
}

// Beside the decimal numbers of Zn_AString::ToDouble: hexadecimal ones, infinities and NaN.
double ReadAnyDouble(const Zn_AString& text) noexcept
{
    constexpr std::string_view digits = "0123456789abcdefABCDEF.";
    std::string_view rest = text;
    const bool negative = rest.starts_with('-');
    rest.remove_prefix(negative || rest.starts_with('+') ? 1 : 0);
    const bool hex = (rest.starts_with("0x") || rest.starts_with("0X")) && rest.find_first_of(digits, 2) == 2;
    if (hex)
        rest.remove_prefix(2);
    else if (rest.find_first_of("iInN") != 0)
        return text.ToDouble();
    double value = 0.0;
    const auto format = hex ? std::chars_format::hex : std::chars_format::general;
    if (std::from_chars(rest.data(), rest.data() + rest.size(), value, format).ec == std::errc::result_out_of_range)
        value = rest.find("p-") == rest.find("P-") ? HUGE_VAL : 0.0;
    return negative ? -value : value;
}

} // namespace

// ---- Copying and releasing

// The bits are those of the other.
void Zn_Variant::CopySlow(const Zn_Variant& other)
{
    const bool known = zn::FindType(type) != nullptr;
    if (known && live_ == OddBits)
        return;
    value_.words[0] = 0;
    live_ = None;
    if (!known)
        return;
    switch (other.live_) {
    case Text:
        new (&value_.text) Zn_WString(other.value_.text);
        break;
    case Bytes:
        new (&value_.bytes) Zn_Buffer(other.value_.bytes);
        break;
    case List:
        value_.array = ArrayBox::NewCopy(other.value_.array->list);
        if (!value_.array)
            return;
        break;
    case Reference: {
        value_.object = NewReference();
        if (!value_.object)
            return;
        const ArrayBox::DirectCopies direct;
        value_.object->Set(*other.value_.object);
        break;
    }
    default:
        break;
    }
    live_ = other.live_;
}

void Zn_Variant::AssignSlow(const Zn_Variant& other)
{
    if (IsText() && other.IsText())
        value_.text = other.value_.text;
    else
        *this = Zn_Variant(other); // whole first: the other may be a part of this variant's own array
}

void Zn_Variant::Release() noexcept
{
    if (live_ == Text) {
        value_.text.~Zn_WString();
        Init();
        return;
    }
    // What an object's destructor may see of this variant is empty already.
    Value old(value_);
    const Live live = live_;
    Init();
    switch (live) {
    case Bytes:
        old.bytes.~Zn_Buffer();
        break;
    case List:
        ArrayBox::Free(old.array);
        break;
    case Reference:
        old.object->~Zn_VarObject();
        zn_free(old.object);
        break;
    default:
        break;
    }
}

// Keeps what lives in the value area, under another name.
void Zn_Variant::Relabel(std::uint16_t newType) noexcept
{
    type = newType;
    if (live_ == Bits && !zn::FindType(newType))
        live_ = OddBits;
}

// ---- Setting

Zn_Variant& Zn_Variant::operator=(const Zn_Variant* other)
{
    if (other)
        return *this = *other;
    Clear();
    return *this;
}

void Zn_Variant::Set(const Zn_VariantList& list)
{
    Zn_Variant made;
    made.value_.array = ArrayBox::NewCopy(list);
    if (made.value_.array) {
        made.type = Array;
        made.live_ = List;
    }
    *this = std::move(made);
}

void Zn_Variant::Set(const Zn_VarObject& object)
{
    Zn_Variant made;
    made.type = Object;
    if (Zn_VarObject* reference = made.GetObject())
        reference->Set(object);
    *this = std::move(made);
}

void Zn_Variant::SetObject(Zn_VarObjectCtx* context, Zn_VarObjectBase* component, Zn_VarObjectBase* object)
{
    Zn_Variant made;
    made.type = Object;
    if (Zn_VarObject* reference = made.GetObject())
        reference->Set(context, component, object);
    *this = std::move(made);
}

void Zn_Variant::SetText8(const char* text, int length, unsigned codePage)
{
    *this = Zn_Variant(Zn_WString(text, length, codePage));
}

void Zn_Variant::SetBinary(const unsigned char* bytes, int length)
{
    Zn_Buffer buffer;
    buffer.Set(bytes, length);
    SetBinary(buffer);
}

void Zn_Variant::SetDate(const Zn_WString& text) noexcept
{
    Zn_DateTime date;
    date.SetDateTime(text.GetView());
    Set(date);
}

void Zn_Variant::SetInteger(const char16_t* text) noexcept
{
    Set(text ? zn::ReadInteger(std::u16string_view(text)) : 0);
}

void Zn_Variant::SetDouble(const char16_t* text) noexcept
{
    constexpr unsigned kAscii = 20127;
    Set(ReadAnyDouble(Zn_AString(text, -1, kAscii).Trim()));
}

// ---- Access

Zn_WString* Zn_Variant::GetStr()
{
    if (live_ != Text) {
        if (type != String)
            return nullptr;
        *this = Zn_Variant(Zn_WString());
    }
    return &value_.text;
}

Zn_Buffer* Zn_Variant::GetBinary()
{
    if (live_ != Bytes) {
        if (type != Binary)
            return nullptr;
        *this = Zn_Variant(Zn_Buffer());
    }
    return &value_.bytes;
}

Zn_VariantList* Zn_Variant::GetArray()
{
    if (live_ != List) {
        ArrayBox* box = type == Array ? ArrayBox::New() : nullptr;
        if (!box)
            return nullptr;
        Clear();
        type = Array;
        live_ = List;
        value_.array = box;
    }
    return &value_.array->list;
}

Zn_VarObject* Zn_Variant::GetObject()
{
    if (live_ != Reference) {
        Zn_VarObject* reference = type == Object ? NewReference() : nullptr;
        if (!reference)
            return nullptr;
        Clear();
        type = Object;
        live_ = Reference;
        value_.object = reference;
    }
    return value_.object;
}

Zn_Currency* Zn_Variant::GetCurrency()
{
    if (live_ != Bits) {
        if (type != Currency)
            return nullptr;
        *this = Zn_Variant(Zn_Currency());
    }
    return &value_.currency;
}

Zn_DateTime* Zn_Variant::GetDateTime()
{
    if (live_ != Bits) {
        if (type != Date)
            return nullptr;
        *this = Zn_Variant(Zn_DateTime());
    }
    return &value_.date;
}

const Zn_Buffer* Zn_Variant::GetConstBinary() const noexcept
{
    return live_ == Bytes ? &value_.bytes : &Zn_Global<Zn_Buffer>();
}

const Zn_VariantList* Zn_Variant::GetConstArray() const noexcept
{
    return live_ == List ? &value_.array->list : &Zn_Global<Zn_VariantList>();
}

const Zn_VarObject* Zn_Variant::GetConstObject() const noexcept
{
    return live_ == Reference ? value_.object : &Zn_Global<Zn_VarObject>();
}

const Zn_Currency* Zn_Variant::GetConstCurrency() const noexcept
{
    static constexpr Zn_Currency zero;
    return live_ == Bits ? &value_.currency : &zero;
}

const Zn_DateTime* Zn_Variant::GetConstDateTime() const noexcept
{
    static constexpr Zn_DateTime zero;
    return live_ == Bits ? &value_.date : &zero;
}
