// The text of variants, 16 and 8 bits wide.
#include "Zn_VarObject.h"
#include "Zn_Variant.h"
#include "Zn_VariantList.h"
#include "foundation/number_text.h"
#include "values/default_property.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace {

struct WideSink {
    using Char = char16_t;
    // Callers rely on the text of an array beginning with the number of the bracket's character.
    static constexpr std::string_view kArrayStart = "91";

    void Put(const Zn_WString& text) { out += text; }

    Zn_WString& out;
};

struct NarrowSink {
    using Char = char;
    static constexpr std::string_view kArrayStart = "[";

    void Put(const Zn_WString& text) { out += Zn_AString(text.GetText(), text.GetLength(), codePage); }

    Zn_AString& out;
    unsigned codePage;
};

// Writes a variant and what is inside it. Arrays that are begun stand in a list of their own, so that nesting takes
// no stack.
template <class Sink>
class TextWriter {
public:
    explicit TextWriter(const Sink& sink) : sink_(sink) {}

    void Write(const Zn_Variant& variant)
    {
        Begin(variant);
        while (!arrays_.empty()) {
            OpenArray& array = arrays_.back();
            if (array.next == array.list->Count()) {
                PutAscii("]");
                arrays_.pop_back();
                continue;
            }
            if (array.next > 0)
                PutAscii(",");
            if (const Zn_Variant* item = array.list->GetItem(array.next++))
                Begin(*item);
        }
    }

private:
    using Char = typename Sink::Char;

    struct OpenArray {
        Zn_Variant object; // the object whose value the list is, and that value, which holds it; else both empty
        Zn_Variant owner;
        const Zn_VariantList* list;
        int next;
    };

    void PutAscii(std::string_view text)
    {
        for (const char ch : text)
            sink_.out += static_cast<Char>(ch);
    }
    template <class Number>
    void PutNumber(Number number)
    {
        Char room[zn::kNumberRoom];
        int length;
        if constexpr (std::is_same_v<Number, double>)
            length = zn::WriteDouble(number, room);
        else
            length = zn::WriteInteger(number, room);
        sink_.out += std::basic_string_view<Char>(room, static_cast<std::size_t>(length));
    }
    // All of a value but an array's items.
    // NOLINTNEXTLINE(misc-no-recursion): what an object's default property gives is no object
    void Begin(const Zn_Variant& variant);
    void BeginArray(Zn_Variant object, Zn_Variant owner, const Zn_VariantList& list)
    {
        PutAscii(Sink::kArrayStart);
        arrays_.push_back({std::move(object), std::move(owner), &list, 0});
    }
    // Whether an array is open that is this object's value. Objects may hold each other in a circle.
    bool IsOpen(const Zn_Variant& object) const
    {
        const auto* sought = object.GetConstObject()->GetObject();
        return sought && std::ranges::any_of(arrays_, [sought](const OpenArray& array) {
                   return array.object.GetConstObject()->GetObject() == sought;
               });
    }
    // The object's default property; where that can't be read, its id.
    // NOLINTNEXTLINE(misc-no-recursion)
    void BeginObject(const Zn_Variant& object);

    Sink sink_;
    std::vector<OpenArray> arrays_;
};

template <class Sink>
void TextWriter<Sink>::Begin(const Zn_Variant& variant)
{
    switch (variant.type) {
    case Zn_Variant::Integer:
        PutNumber(std::int64_t{variant.ToInteger()});
        break;
    case Zn_Variant::Decimal:
        PutNumber(variant.ToDouble());
        break;
    case Zn_Variant::Currency:
        sink_.Put(variant.GetConstCurrency()->ToString());
        break;
    case Zn_Variant::Date:
        sink_.Put(variant.GetConstDateTime()->ToString());
        break;
    case Zn_Variant::String:
        sink_.Put(*variant.GetConstStr());
        break;
    case Zn_Variant::Binary:
        PutAscii("[binary]");
        break;
    case Zn_Variant::Array:
        BeginArray(Zn_Variant(), Zn_Variant(), *variant.GetConstArray());
        break;
    case Zn_Variant::Object:
        BeginObject(variant);
        break;
    default:
        break;
    }
}

template <class Sink>
void TextWriter<Sink>::BeginObject(const Zn_Variant& object)
{
    // Objects may give themselves, or arrays with themselves inside: both end here.
    auto steps =
        std::ranges::count(arrays_, Zn_Variant::Array, [](const OpenArray& array) { return array.owner.type; });
    Zn_Variant from = object;
    for (; steps < zn::kMaxDefaultSteps && !IsOpen(from); ++steps) {
        Zn_Variant value;
        const zn::DefaultProperty outcome = zn::ReadDefaultProperty(from, value);
        if (outcome == zn::DefaultProperty::NoObject)
            return;
        if (outcome != zn::DefaultProperty::Read) {
            PutAscii("[object:");
            sink_.Put(from.GetConstObject()->GetID());
            PutAscii("]");
            return;
        }
        if (value.type == Zn_Variant::Array) {
            const Zn_VariantList& list = *value.GetConstArray();
            BeginArray(std::move(from), std::move(value), list);
            return;
        }
        if (value.type != Zn_Variant::Object) {
            Begin(value);
            return;
        }
        from = std::move(value);
    }
}

template <class Sink>
void WriteText(const Sink& sink, const Zn_Variant& variant)
{
    try {
        TextWriter<Sink>(sink).Write(variant);
    } catch (const std::bad_alloc&) { // the text is as long as memory went
    }
}

} // namespace

void Zn_Variant::ToString(Zn_WString& out) const
{
    out = ToString();
}

Zn_WString Zn_Variant::ToString() const
{
    if (type == String)
        return *GetConstStr();
    Zn_WString text;
    WriteText(WideSink{text}, *this);
    return text;
}

void Zn_Variant::ToAString(Zn_AString& out, unsigned codePage) const
{
    out = ToAString(codePage);
}

Zn_AString Zn_Variant::ToAString(unsigned codePage) const
{
    Zn_AString text;
    WriteText(NarrowSink{text, codePage}, *this);
    return text;
}
