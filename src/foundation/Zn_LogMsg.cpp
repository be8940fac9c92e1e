#include "Zn_LogMsg.h"

#include "foundation/encoding.h"

#include <algorithm>
#include <compare>
#include <tuple>

namespace {

constexpr int kFields = 5;

bool IsSurrogate(char16_t ch, char16_t first) noexcept
{
    return ch >= first && ch <= first + 0x3FF;
}

// How many units from a place on make one character; 0 for an unpaired surrogate.
std::size_t CharacterAt(std::u16string_view text, std::size_t at) noexcept
{
    if (IsSurrogate(text[at], 0xD800))
        return at + 1 < text.size() && IsSurrogate(text[at + 1], 0xDC00) ? 2 : 0;
    return IsSurrogate(text[at], 0xDC00) ? 0 : 1;
}

void AppendUnit(Zn_WString& out, char16_t unit)
{
    Zn_WString escape;
    out += escape.Format(u"\\u%04X", static_cast<unsigned>(unit));
}

void AppendField(Zn_WString& out, std::u16string_view field, bool asciiOnly)
{
    out += out.IsEmpty() ? u"\"" : u",\"";
    for (std::size_t at = 0; at < field.size();) {
        const char16_t ch = field[at];
        const std::size_t units = CharacterAt(field, at);
        if (ch == u'"' || ch == u'\\') {
            out += u'\\';
            out += ch;
        } else if (ch == u'\n' || ch == u'\r') {
            out += ch == u'\n' ? u"\\n" : u"\\r";
        } else if (units == 0 || ch < u' ' || ch == 0x7F || (asciiOnly && ch > 0x7F)) {
            AppendUnit(out, ch);
        } else {
            out += field.substr(at, units);
            at += units - 1;
        }
        ++at;
    }
    out += u'"';
}

int HexDigit(char16_t ch) noexcept
{
    if (ch >= u'0' && ch <= u'9')
        return ch - u'0';
    ch |= 0x20;
    return ch >= u'a' && ch <= u'f' ? ch - u'a' + 10 : -1;
}

// Reads hexadecimal digits, at most eight of them; how many there were.
std::size_t ReadHex(std::u16string_view text, std::uint32_t& value) noexcept
{
    std::size_t count = 0;
    for (value = 0; count < text.size() && count < 8 && HexDigit(text[count]) >= 0; ++count)
        value = value << 4 | static_cast<std::uint32_t>(HexDigit(text[count]));
    return count;
}

// Walks the fields of one line.
class FieldReader {
public:
    explicit FieldReader(std::u16string_view line) noexcept : line_(line) {}

    // False behind the last field.
    bool Next(Zn_WString& field)
    {
        if (at_ > line_.size())
            return false;
        field.Empty();
        if (at_ < line_.size() && line_[at_] == u'"') {
            ++at_;
            ReadQuoted(field);
        }
        const std::size_t end = std::min(line_.find(u',', at_), line_.size());
        field += line_.substr(at_, end - at_);
        at_ = end + 1;
        return true;
    }

private:
    void ReadQuoted(Zn_WString& field)
    {
        while (at_ < line_.size()) {
            const std::size_t end = std::min(line_.find_first_of(u"\"\\", at_), line_.size());
            field += line_.substr(at_, end - at_);
            at_ = end + 1;
            if (end < line_.size() && line_[end] == u'"')
                return;
            if (at_ < line_.size())
                ReadEscape(field);
        }
        at_ = std::min(at_, line_.size());
    }

    void ReadEscape(Zn_WString& field)
    {
        const char16_t ch = line_[at_++];
        std::uint32_t unit = 0;
        if (ch == u'u' && ReadHex(line_.substr(at_, 4), unit) == 4) {
            at_ += 4;
            field += static_cast<char16_t>(unit);
        } else {
            field += ch == u'n' ? u'\n' : ch == u'r' ? u'\r' : ch;
        }
    }

    std::u16string_view line_;
    std::size_t at_ = 0;
};

int ReadCode(const Zn_WString& text)
{
    std::uint32_t code = 0;
    const std::u16string_view view = text;
    if (view.starts_with(u"0x") && ReadHex(view.substr(2), code) > 0)
        return static_cast<int>(code);
    return text.ToInteger();
}

} // namespace

void Zn_LogMsg::Set(const Zn_WString& time, int level, const Zn_WString& source, int code, const Zn_WString& text)
{
    time_ = time;
    level_ = level;
    source_ = source;
    code_ = code;
    text_ = text;
}

Zn_WString Zn_LogMsg::FormatLine(bool asciiOnly) const
{
    Zn_WString level;
    level.Set(level_);
    Zn_WString code;
    code.Format(u"0x%08X", static_cast<unsigned>(code_));
    Zn_WString line;
    for (const Zn_WString& field : {time_, level, source_, code, text_})
        AppendField(line, field, asciiOnly);
    return line;
}

int Zn_LogMsg::SetLine(std::u16string_view line)
{
    FieldReader reader(line);
    Zn_WString fields[kFields];
    for (Zn_WString& field : fields) {
        if (!reader.Next(field))
            return 0;
    }
    Set(fields[0], fields[1].ToInteger(), fields[2], ReadCode(fields[3]), fields[4]);
    return 1;
}

int Zn_LogMsgHandler::_CompareItem(void* a, void* b)
{
    const auto fields = [](void* item) {
        const Zn_LogMsg& message = *static_cast<const Zn_LogMsg*>(item);
        return std::make_tuple(message.GetTime().GetView(), message.GetLevel(), message.GetSource().GetView(),
                               message.GetCode(), message.GetText().GetView());
    };
    const auto order = fields(a) <=> fields(b);
    return std::is_lt(order) ? -1 : std::is_gt(order) ? 1 : 0;
}

Zn_LogMsgHandler& Zn_LogMsgHandler::Instance()
{
    return Zn_Global<Zn_LogMsgHandler>();
}

const Zn_LogMsg& Zn_LogMsgHandler::EmptyItem()
{
    return Zn_Global<Zn_LogMsg>();
}

int Zn_LogMsgList::Add(const Zn_WString& time, int level, const Zn_WString& source, int code, const Zn_WString& text)
{
    Zn_LogMsg message;
    message.Set(time, level, source, code, text);
    return Add(message);
}

int Zn_LogMsgList::Load(std::u16string_view text, int clearFirst)
{
    if (clearFirst)
        ReleaseList();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
        Zn_LogMsg message;
        if (message.SetLine(text.substr(0, end)))
            Add(message);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return Count();
}

int Zn_LogMsgList::Load(std::string_view text, int clearFirst, unsigned codePage)
{
    Zn_WString wide;
    zn::AppendWhole(wide, [&](auto& sink) { zn::DecodeText(text, codePage, sink); });
    return Load(wide.GetView(), clearFirst);
}

int Zn_LogMsgList::Save(Zn_WString& out) const
{
    out.Empty();
    for (const Zn_LogMsg& message : *this) {
        out += message.FormatLine(false);
        out += u'\n';
    }
    return Count();
}

int Zn_LogMsgList::Save(Zn_AString& out, unsigned codePage) const
{
    out.Empty();
    for (const Zn_LogMsg& message : *this) {
        const Zn_WString line = message.FormatLine(false) + u"\n";
        Zn_AString bytes(line, line.GetLength(), codePage);
        if (Zn_WString(bytes, bytes.GetLength(), codePage) != line) {
            const Zn_WString ascii = message.FormatLine(true) + u"\n";
            bytes.Set(ascii, ascii.GetLength(), codePage);
        }
        out += bytes;
    }
    return Count();
}
