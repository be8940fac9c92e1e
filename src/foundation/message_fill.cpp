// Filling a message template with parameters whose number and types need not fit it.
#include "Zn_ErrorMsg.h"
#include "foundation/message_placeholder.h"

namespace {

using zn::messages::IsOneOf;

// Flags, width and precision of a placeholder, unless they ask for a field of more than three digits.
std::u16string_view SafeFlags(std::u16string_view flags) noexcept
{
    int digits = 0;
    for (const char16_t ch : flags) {
        digits = ch >= u'0' && ch <= u'9' ? digits + 1 : 0;
        if (digits > 3)
            return {};
    }
    return flags;
}

Zn_WString SpecOf(std::u16string_view flags, const char16_t* conversion)
{
    Zn_WString spec(u"%");
    spec += flags;
    spec += conversion;
    return spec;
}

Zn_WString FillInteger(std::u16string_view flags, char16_t conversion, std::int64_t number)
{
    Zn_WString out;
    if (conversion == u'c') {
        out.Format(SpecOf(flags, u"c"), static_cast<int>(number));
        return out;
    }
    if (conversion == u'd' || conversion == u'i') {
        out.Format(SpecOf(flags, u"lld"), static_cast<long long>(number));
        return out;
    }
    // A negative number is 32 bits wide, as the values of the library are.
    const auto bits = number < 0 ? static_cast<std::uint32_t>(number) : static_cast<std::uint64_t>(number);
    const char16_t spec[] = {u'l', u'l', conversion, 0};
    out.Format(SpecOf(flags, spec), static_cast<unsigned long long>(bits));
    return out;
}

Zn_WString FillDecimal(std::u16string_view flags, char16_t conversion, double number)
{
    const char16_t spec[] = {conversion, 0};
    Zn_WString out;
    out.Format(SpecOf(flags, spec), number);
    return out;
}

// One parameter in the form its placeholder asks for; one of another type stands there as text.
Zn_WString FillOne(std::u16string_view flags, char16_t conversion, const Zn_MsgParam& param)
{
    using Kind = Zn_MsgParam::Kind;
    if (param.GetKind() == Kind::Integer && IsOneOf(conversion, "cdiuoxX"))
        return FillInteger(flags, conversion, param.GetInteger());
    if (param.GetKind() != Kind::Text && IsOneOf(conversion, "fFeEgGaA"))
        return FillDecimal(flags, conversion,
                           param.GetKind() == Kind::Decimal ? param.GetDecimal()
                                                            : static_cast<double>(param.GetInteger()));
    if (param.GetKind() != Kind::Text || conversion != u's')
        flags = flags.substr(0, flags.find(u'.')); // a number's precision would cut the text
    Zn_WString out;
    out.Format(SpecOf(flags, u"s"), param.GetText().GetText());
    return out;
}

template <class ParamAt>
Zn_WString FillWith(std::u16string_view text, std::size_t count, const ParamAt& paramAt)
{
    Zn_WString out;
    std::size_t used = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto found = zn::messages::NextPlaceholder(text, at);
        out += text.substr(at, found.start - at);
        at = found.end;
        if (IsOneOf(found.conversion, "scdiuoxXfFeEgGaA")) {
            const std::u16string_view flags = SafeFlags(text.substr(found.start + 1, found.flags));
            out += FillOne(flags, found.conversion, used < count ? paramAt(used) : Zn_MsgParam(Zn_WString()));
            ++used;
        } else if (found.conversion) {
            out += found.conversion; // "%%", and what the library's formatting does with unknown conversions
        }
    }
    return out;
}

} // namespace

Zn_WString Zn_MsgParam::GetText() const
{
    if (kind_ == Kind::Text)
        return text_;
    Zn_WString out;
    if (kind_ == Kind::Integer)
        out.Format(u"%lld", static_cast<long long>(integer_));
    else
        out.Set(decimal_);
    return out;
}

Zn_WString Zn_ErrorMsg::Fill(std::u16string_view text, std::span<const Zn_MsgParam> params)
{
    return FillWith(text, params.size(), [&](std::size_t i) { return params[i]; });
}

Zn_WString Zn_ErrorMsg::Fill(std::u16string_view text, const Zn_WStrList& params)
{
    return FillWith(text, static_cast<std::size_t>(params.Count()),
                    [&](std::size_t i) { return Zn_MsgParam(params.GetItemNN(static_cast<int>(i))); });
}
