// Text from and to code pages: the one way in and out of UTF-16.
//
// DecodeText and EncodeText append to any sink that has an Append(sink, view) below; text goes
// through in blocks, so nothing but the sink grows. What is malformed becomes U+FFFD; a character
// that a page lacks becomes U+FFFD in the Unicode pages, '?' in the others, or a numeric XML reference.
// Code page 0 is the locale's. An unknown page is treated as ASCII: the rest is malformed or lacking.
//
//     std::string utf8;
//     zn::EncodeText(name.GetView(), 65001, utf8);
#pragma once

#include "Zn_AString.h"
#include "Zn_Buffer.h"
#include "Zn_WString.h"

#include "foundation/view.h"
#include "platform/platform.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace zn {

constexpr unsigned kUtf8 = 65001;
constexpr unsigned kUtf16Le = 1200;
constexpr unsigned kUtf16Be = 1201;
constexpr char16_t kReplacement = 0xFFFD;

// What to write for a character that the target page lacks.
enum class Missing { Replace, XmlReference };

// How a page is converted.
enum class PageKind { Utf8, Utf16Le, Utf16Be, SingleByte, PlatformAscii, PlatformOther };
PageKind KindOfPage(unsigned codePage) noexcept;

class TextDecoder {
public:
    explicit TextDecoder(unsigned codePage) noexcept;
    // Converts from the front of bytes, takes what it converted off it and returns the units written.
    // It makes progress when there is room for at least 4 units.
    std::size_t Next(std::string_view& bytes, char16_t* out, std::size_t room) noexcept;
    // Units that the bytes give: exact for well-formed text of the pages converted here, else an estimate.
    std::size_t CountUnits(std::string_view bytes) const noexcept;

private:
    std::size_t NextOfPlatform(std::string_view& bytes, char16_t* out, std::size_t room) noexcept;

    unsigned codePage_;
    PageKind kind_;
    std::optional<platform::CodePageConverter> converter_;
};

class TextEncoder {
public:
    explicit TextEncoder(unsigned codePage, Missing missing = Missing::Replace) noexcept;
    // As TextDecoder::Next, in bytes; it makes progress when there is room for at least 32.
    std::size_t Next(std::u16string_view& text, char* out, std::size_t room) noexcept;
    // What a page with shift states needs behind its last character; at most 8 bytes.
    std::size_t Finish(char* out) noexcept;
    std::size_t CountBytes(std::u16string_view text) const noexcept;

private:
    std::size_t NextOfPlatform(std::u16string_view& text, char* out, std::size_t room) noexcept;
    // Writes what stands for the missing character at the front of text and takes it off.
    std::size_t PutMissing(std::u16string_view& text, char* out, std::size_t room) noexcept;

    unsigned codePage_;
    PageKind kind_;
    Missing missing_;
    std::optional<platform::CodePageConverter> converter_;
};

// ---- sinks -------------------------------------------------------------------------------------

inline void Append(std::u16string& sink, std::u16string_view text)
{
    sink.append(text);
}
inline void Append(Zn_WString& sink, std::u16string_view text)
{
    sink += text;
}
inline void Append(std::string& sink, std::string_view text)
{
    sink.append(text);
}
inline void Append(Zn_AString& sink, std::string_view text)
{
    sink += text;
}
inline void Append(Zn_Buffer& sink, std::string_view text)
{
    sink.Append(reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
}

// Makes room for a text that is longer than what is there; shorter ones grow with the sink's own step,
// so that many small texts don't move a large sink each time.
template <class Sink>
void ReserveMore(Sink& sink, std::size_t count)
{
    constexpr std::size_t kMost = 0x7FFFFF00;
    if constexpr (requires { sink.GetLength(); }) {
        const auto length = static_cast<std::size_t>(sink.GetLength());
        if (count > length && length + count < kMost)
            sink.Reserve(static_cast<int>(length + count));
    } else if (count > sink.size()) {
        sink.reserve(sink.size() + count);
    }
}

// A sink that notices when its target could not take everything.
template <class Target>
struct CountingSink {
    Target& target;
    std::size_t length = static_cast<std::size_t>(target.GetLength());

    int GetLength() const noexcept { return target.GetLength(); }
    void Reserve(int room) noexcept { target.Reserve(room); }
};
template <class Target, class View>
void Append(CountingSink<Target>& sink, View text)
{
    Append(sink.target, text);
    sink.length += text.size();
}

// Lets write append to a string or a buffer through a sink. When memory runs out on the way, the target is
// left as it was, and the result is false.
template <class Target, class Write>
bool AppendWhole(Target& target, Write write)
{
    const int before = target.GetLength();
    CountingSink<Target> sink{target};
    write(sink);
    if (sink.length == static_cast<std::size_t>(target.GetLength()))
        return true;
    if constexpr (requires { target.FreeExtra(before); })
        target.FreeExtra(before);
    else
        target.SetSize(before);
    return false;
}
// The same for a string that is replaced.
template <class String, class Write>
bool AssignWhole(String& target, Write write)
{
    String text;
    if (!AppendWhole(text, write))
        return false;
    target = std::move(text);
    return true;
}

// ---- whole texts -------------------------------------------------------------------------------

constexpr std::size_t kBlock = 2048;

template <class Sink>
void DecodeText(std::string_view bytes, unsigned codePage, Sink& sink)
{
    TextDecoder decoder(codePage);
    char16_t block[kBlock];
    if (bytes.size() > kBlock)
        ReserveMore(sink, decoder.CountUnits(bytes));
    while (!bytes.empty()) {
        const std::size_t count = decoder.Next(bytes, block, kBlock);
        Append(sink, std::u16string_view(block, count));
    }
}

template <class Sink>
void EncodeText(std::u16string_view text, unsigned codePage, Sink& sink, Missing missing = Missing::Replace)
{
    TextEncoder encoder(codePage, missing);
    char block[kBlock];
    if (text.size() > kBlock)
        ReserveMore(sink, encoder.CountBytes(text));
    while (!text.empty()) {
        const std::size_t count = encoder.Next(text, block, kBlock);
        Append(sink, std::string_view(block, count));
    }
    Append(sink, std::string_view(block, encoder.Finish(block)));
}

} // namespace zn
