#include "foundation/encoding.h"

#include "Zn_CodePage.h"

#include "foundation/singlebyte.h"
#include "foundation/utf8.h"
#include "foundation/xml_escape.h"

#include <algorithm>
#include <iterator>

namespace zn {

namespace {

using platform::CodePageConverter;
using platform::ConvertResult;
using platform::ConvertStop;

bool IsOfPlatform(PageKind kind) noexcept
{
    return kind == PageKind::PlatformAscii || kind == PageKind::PlatformOther;
}

// What an unknown page is taken as.
constexpr unsigned kAscii = 20127;

// Whether a byte is always a character of its own in the multi-byte pages built on ASCII: it can't be
// the second, third or fourth byte of one.
bool StandsAlone(unsigned char byte) noexcept
{
    return byte < 0x30 || (byte >= 0x3A && byte < 0x40);
}

// Units handed to the platform at once. Few, since what follows a malformed or missing character is handed over
// once more, and time must stay in step with the text.
constexpr std::size_t kRun = 128;
constexpr std::size_t kLongestCharacter = 16; // with its escape sequences

// The bytes up to the next place where a run of ASCII may be told from the inside of a character.
std::string_view MultiByteRun(std::string_view bytes) noexcept
{
    std::size_t length = 0;
    while (length < std::min(bytes.size(), kRun) && !StandsAlone(static_cast<unsigned char>(bytes[length])))
        ++length;
    return bytes.substr(0, length);
}

// The units to hand over: whole characters, and where ascii says so, up to the next one of ASCII.
std::u16string_view RunOfCharacters(std::u16string_view text, bool ascii) noexcept
{
    std::size_t length = 0;
    while (length < std::min(text.size(), kRun) && !(ascii && text[length] < 0x80))
        ++length;
    return text.substr(0, length + (length == kRun && IsHighSurrogate(text[kRun - 1])));
}

// Whether the bytes below 0x80 are ASCII outside of a page's multi-byte characters, and never before 0x30
// or from 0x3A to 0x3F within one. Of the others all bytes go to the platform.
bool IsBuiltOnAscii(unsigned codePage) noexcept
{
    constexpr unsigned kSingle[] = {10000, 20866, 20932, 20936, 21866, 51932, 51936, 51949, 54936};
    return (codePage >= 437 && codePage <= 950 && codePage != 500 && codePage != 864) ||
           (codePage >= 1250 && codePage <= 1258) || (codePage >= 28592 && codePage <= 28606) ||
           std::find(std::begin(kSingle), std::end(kSingle), codePage) != std::end(kSingle);
}

// How much of malformed multi-byte text one U+FFFD stands for: a lead byte takes a second byte with
// it unless that is ASCII.
std::size_t MalformedLength(std::string_view bytes) noexcept
{
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const bool two = bytes.size() > 1 && lead > 0x80 && lead < 0xFF && static_cast<unsigned char>(bytes[1]) >= 0x80;
    return two ? 2 : 1;
}

Converted DecodeUtf16(std::string_view bytes, bool bigEndian, char16_t* out, std::size_t room) noexcept
{
    const std::size_t count = std::min(bytes.size() / 2, room);
    for (std::size_t i = 0; i < count; ++i) {
        const auto first = static_cast<unsigned char>(bytes[2 * i]);
        const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
        out[i] = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    if (bytes.size() % 2 == 1 && count == bytes.size() / 2 && count < room) {
        out[count] = kReplacement;
        return {bytes.size(), count + 1};
    }
    return {2 * count, count};
}

Converted EncodeUtf16(std::u16string_view text, bool bigEndian, char* out, std::size_t room) noexcept
{
    const std::size_t count = std::min(text.size(), room / 2);
    for (std::size_t i = 0; i < count; ++i) {
        out[2 * i] = static_cast<char>(bigEndian ? text[i] >> 8 : text[i] & 0xFF);
        out[2 * i + 1] = static_cast<char>(bigEndian ? text[i] & 0xFF : text[i] >> 8);
    }
    return {count, 2 * count};
}

Converted DecodeSingleByte(std::string_view bytes, unsigned codePage, char16_t* out, std::size_t room) noexcept
{
    const std::size_t count = std::min(bytes.size(), room);
    std::size_t at = 0;
    while (at < count) {
        at += CopyAscii(bytes.substr(at), out + at, count - at);
        for (; at < count && static_cast<unsigned char>(bytes[at]) >= 0x80; ++at)
            out[at] = DecodeByte(codePage, static_cast<unsigned char>(bytes[at]));
    }
    return {count, count};
}

// Stops in front of a character that the page lacks.
Converted EncodeSingleByte(std::u16string_view text, unsigned codePage, char* out, std::size_t room) noexcept
{
    const std::size_t count = std::min(text.size(), room);
    std::size_t at = 0;
    while (at < count) {
        at += CopyAscii(text.substr(at), out + at, count - at);
        for (; at < count && text[at] >= 0x80; ++at) {
            const unsigned char byte = EncodeByte(codePage, text[at]);
            if (byte == 0)
                return {at, at};
            out[at] = static_cast<char>(byte);
        }
    }
    return {at, at};
}

} // namespace

PageKind KindOfPage(unsigned codePage) noexcept
{
    switch (codePage) {
    case kUtf8:
        return PageKind::Utf8;
    case kUtf16Le:
        return PageKind::Utf16Le;
    case kUtf16Be:
        return PageKind::Utf16Be;
    default:
        break;
    }
    if (IsOwnSingleByte(codePage))
        return PageKind::SingleByte;
    return IsBuiltOnAscii(codePage) ? PageKind::PlatformAscii : PageKind::PlatformOther;
}

// ---- decoding ----------------------------------------------------------------------------------

TextDecoder::TextDecoder(unsigned codePage) noexcept
    : codePage_(zn_activecodepage(codePage)), kind_(KindOfPage(codePage_))
{
    if (!IsOfPlatform(kind_))
        return;
    converter_.emplace(codePage_, CodePageConverter::Direction::ToUtf16);
    if (!converter_->IsOpen()) {
        codePage_ = kAscii;
        kind_ = PageKind::SingleByte;
    }
}

std::size_t TextDecoder::Next(std::string_view& bytes, char16_t* out, std::size_t room) noexcept
{
    Converted done{};
    switch (kind_) {
    case PageKind::Utf8:
        done = DecodeUtf8(bytes, out, room);
        break;
    case PageKind::Utf16Le:
    case PageKind::Utf16Be:
        done = DecodeUtf16(bytes, kind_ == PageKind::Utf16Be, out, room);
        break;
    case PageKind::SingleByte:
        done = DecodeSingleByte(bytes, codePage_, out, room);
        break;
    default:
        return NextOfPlatform(bytes, out, room);
    }
    bytes.remove_prefix(done.read);
    return done.written;
}

std::size_t TextDecoder::NextOfPlatform(std::string_view& bytes, char16_t* out, std::size_t room) noexcept
{
    const bool ascii = kind_ == PageKind::PlatformAscii;
    std::size_t put = 0;
    while (!bytes.empty() && put + 4 <= room) {
        if (ascii) {
            const std::size_t run = CopyAscii(bytes, out + put, room - put);
            bytes.remove_prefix(run);
            put += run;
        }
        const std::string_view run = ascii ? MultiByteRun(bytes) : bytes.substr(0, kRun);
        const ConvertResult done = converter_->Decode(run, out + put, room - put);
        bytes.remove_prefix(done.read);
        put += done.written;
        if (done.stop == ConvertStop::NoRoom || put == room)
            break;
        const bool cut = done.read > 0 && run.size() == kRun && run.size() - done.read < kLongestCharacter;
        if (done.stop == ConvertStop::BadInput && !cut && done.read < run.size()) {
            bytes.remove_prefix(MalformedLength(run.substr(done.read)));
            out[put++] = kReplacement;
        }
    }
    return put;
}

std::size_t TextDecoder::CountUnits(std::string_view bytes) const noexcept
{
    switch (kind_) {
    case PageKind::Utf8:
        return CountUtf16OfUtf8(bytes);
    case PageKind::Utf16Le:
    case PageKind::Utf16Be:
        return (bytes.size() + 1) / 2;
    default:
        return bytes.size();
    }
}

// ---- encoding ----------------------------------------------------------------------------------

TextEncoder::TextEncoder(unsigned codePage, Missing missing) noexcept
    : codePage_(zn_activecodepage(codePage)), kind_(KindOfPage(codePage_)), missing_(missing)
{
    if (!IsOfPlatform(kind_))
        return;
    converter_.emplace(codePage_, CodePageConverter::Direction::FromUtf16);
    if (!converter_->IsOpen()) {
        converter_.reset();
        codePage_ = kAscii;
        kind_ = PageKind::SingleByte;
    }
}

std::size_t TextEncoder::Next(std::u16string_view& text, char* out, std::size_t room) noexcept
{
    std::size_t put = 0;
    while (!text.empty() && put + 32 <= room) {
        Converted done{};
        switch (kind_) {
        case PageKind::Utf8:
            done = EncodeUtf8(text, out + put, room - put);
            break;
        case PageKind::Utf16Le:
        case PageKind::Utf16Be:
            done = EncodeUtf16(text, kind_ == PageKind::Utf16Be, out + put, room - put);
            break;
        case PageKind::SingleByte:
            done = EncodeSingleByte(text, codePage_, out + put, room - put);
            break;
        default:
            return put + NextOfPlatform(text, out + put, room - put);
        }
        text.remove_prefix(done.read);
        put += done.written;
        if (!text.empty() && put + 32 <= room)
            put += PutMissing(text, out + put, room - put);
    }
    return put;
}

std::size_t TextEncoder::NextOfPlatform(std::u16string_view& text, char* out, std::size_t room) noexcept
{
    std::size_t put = 0;
    while (!text.empty() && put + 32 <= room) {
        const bool ascii = kind_ == PageKind::PlatformAscii;
        if (ascii) {
            const std::size_t count = CopyAscii(text, out + put, room - put);
            text.remove_prefix(count);
            put += count;
        }
        const ConvertResult done = converter_->Encode(RunOfCharacters(text, ascii), out + put, room - put);
        text.remove_prefix(done.read);
        put += done.written;
        if (done.stop == ConvertStop::NoRoom || put + 32 > room)
            break;
        if (done.stop == ConvertStop::BadInput)
            put += PutMissing(text, out + put, room - put);
    }
    return put;
}

std::size_t TextEncoder::PutMissing(std::u16string_view& text, char* out, std::size_t room) noexcept
{
    const bool pair = text.size() > 1 && IsHighSurrogate(text[0]) && IsLowSurrogate(text[1]);
    const char32_t code = pair ? JoinSurrogates(text[0], text[1]) : text[0];
    text.remove_prefix(pair ? 2 : 1);
    char16_t substitute[16];
    std::size_t length = 1;
    if (missing_ == Missing::XmlReference)
        length = WriteXmlReference(code, substitute);
    else
        substitute[0] = kind_ == PageKind::Utf8 ? kReplacement : u'?';
    const std::u16string_view view(substitute, length);
    if (kind_ == PageKind::PlatformOther)
        return converter_->Encode(view, out, room).written;
    return kind_ == PageKind::Utf8 ? EncodeUtf8(view, out, room).written : CopyAscii(view, out, room);
}

std::size_t TextEncoder::Finish(char* out) noexcept
{
    return kind_ == PageKind::PlatformOther ? converter_->Finish(out, 8) : 0;
}

std::size_t TextEncoder::CountBytes(std::u16string_view text) const noexcept
{
    switch (kind_) {
    case PageKind::Utf8:
        return CountUtf8OfUtf16(text);
    case PageKind::Utf16Le:
    case PageKind::Utf16Be:
        return 2 * text.size();
    default:
        return text.size();
    }
}

} // namespace zn
