#include "foundation/base64.h"

#include "Zn_AString.h"
#include "Zn_Buffer.h"

#include <array>
#include <climits>
#include <cstdint>

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kSkip = 0x80; // any value with a bit above the six

constexpr auto values = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(kSkip);
    for (std::uint8_t i = 0; i < 64; ++i)
        table[static_cast<unsigned char>(alphabet[i])] = i;
    return table;
}();

template <class Char>
std::uint32_t ValueOf(Char ch) noexcept
{
    if constexpr (sizeof(Char) == 1)
        return values[static_cast<unsigned char>(ch)];
    else
        return ch < values.size() ? values[ch] : kSkip;
}

template <class Char>
Char DigitOf(std::uint32_t bits) noexcept
{
    return static_cast<Char>(alphabet[bits & 63]);
}

} // namespace

template <class Char>
void zn::Base64Encode(std::span<const unsigned char> bytes, Char* out) noexcept
{
    const unsigned char* p = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= 3; left -= 3, p += 3, out += 4) {
        const auto bits = static_cast<std::uint32_t>(p[0] << 16 | p[1] << 8 | p[2]);
        out[0] = DigitOf<Char>(bits >> 18);
        out[1] = DigitOf<Char>(bits >> 12);
        out[2] = DigitOf<Char>(bits >> 6);
        out[3] = DigitOf<Char>(bits);
    }
    if (left > 0) {
        const auto bits = static_cast<std::uint32_t>(p[0] << 16 | (left > 1 ? p[1] << 8 : 0));
        out[0] = DigitOf<Char>(bits >> 18);
        out[1] = DigitOf<Char>(bits >> 12);
        out[2] = left > 1 ? DigitOf<Char>(bits >> 6) : Char('=');
        out[3] = Char('=');
    }
}

template <class Char>
std::size_t zn::Base64Decode(std::basic_string_view<Char> text, unsigned char* out) noexcept
{
    unsigned char* const start = out;
    std::uint32_t bits = 0;
    int digits = 0; // in bits, not yet written
    for (std::size_t i = 0; i < text.size();) {
        if (digits == 0 && text.size() - i >= 4) {
            const std::uint32_t a = ValueOf(text[i]), b = ValueOf(text[i + 1]);
            const std::uint32_t c = ValueOf(text[i + 2]), d = ValueOf(text[i + 3]);
            if ((a | b | c | d) < 64) {
                const std::uint32_t three = a << 18 | b << 12 | c << 6 | d;
                *out++ = static_cast<unsigned char>(three >> 16);
                *out++ = static_cast<unsigned char>(three >> 8);
                *out++ = static_cast<unsigned char>(three);
                i += 4;
                continue;
            }
        }
        const Char ch = text[i++];
        if (ch == Char('='))
            break;
        const std::uint32_t value = ValueOf(ch);
        if (value >= 64)
            continue;
        bits = bits << 6 | value;
        digits = (digits + 1) & 3;
        if (digits != 1) // the second, third and fourth digit each complete a byte
            *out++ = static_cast<unsigned char>(bits >> (digits == 2 ? 4 : digits == 3 ? 2 : 0));
    }
    return static_cast<std::size_t>(out - start);
}

template void zn::Base64Encode(std::span<const unsigned char>, char*) noexcept;
template void zn::Base64Encode(std::span<const unsigned char>, char16_t*) noexcept;
template std::size_t zn::Base64Decode(std::string_view, unsigned char*) noexcept;
template std::size_t zn::Base64Decode(std::u16string_view, unsigned char*) noexcept;

Zn_AString Zn_Buffer::EncodeBase64() const
{
    Zn_AString text;
    const std::size_t size = zn::Base64TextSize(static_cast<std::size_t>(GetLength()));
    if (size == 0 || size > INT_MAX)
        return text;
    if (char* out = text.GetSafeBuffer(static_cast<int>(size)))
        zn::Base64Encode(GetSpan(), out);
    return text;
}

Zn_Buffer Zn_AString::DecodeBase64() const
{
    Zn_Buffer bytes;
    const std::size_t room = zn::Base64MaxBytes(static_cast<std::size_t>(GetLength()));
    if (IsEmpty())
        return bytes;
    if (unsigned char* out = bytes.GetSafeBuffer(static_cast<int>(room)))
        bytes.SetSize(static_cast<int>(zn::Base64Decode(GetView(), out)));
    return bytes;
}
