// The binary form of settings: per section the number of entries, the length of the name and the name, then the length
// and the text "name=value" of each entry. Numbers are big-endian, texts UTF-16 little-endian, on every machine.
#include "Zn_Config.h"

#include "foundation/byteorder.h"
#include "system/config_reader.h"

#include <span>

namespace {

constexpr std::size_t kUnit = 2;

class StreamReader {
public:
    explicit StreamReader(std::span<const unsigned char> bytes) noexcept : rest_(bytes) {}

    bool Number(std::int32_t& value) noexcept
    {
        if (rest_.size() < 4)
            return false;
        value = static_cast<std::int32_t>(zn::GetBe32(rest_.data()));
        rest_ = rest_.subspan(4);
        return true;
    }
    // The text that begins here: as many characters as asked for, or fewer before a NUL or at the end of the buffer.
    Zn_WString Text(std::size_t most) const
    {
        std::u16string text;
        for (std::size_t at = 0; text.size() < most && at + kUnit <= rest_.size(); at += kUnit) {
            const auto unit = static_cast<char16_t>(rest_[at] | rest_[at + 1] << 8);
            if (unit == 0)
                break;
            text += unit;
        }
        return {text};
    }
    bool Has(std::int32_t units) const noexcept { return static_cast<std::size_t>(units) <= rest_.size() / kUnit; }
    void Skip(std::int32_t units) noexcept { rest_ = rest_.subspan(static_cast<std::size_t>(units) * kUnit); }

private:
    std::span<const unsigned char> rest_;
};

// False when the buffer ends before the entry does.
bool ReadEntry(StreamReader& in, zn::ConfigBuilder& builder)
{
    std::int32_t length;
    if (!in.Number(length))
        return false;
    if (length < 0)
        return true;
    if (!in.Has(length))
        return false;
    // Callers rely on it: the text may run on into what follows, which as a rule begins with a NUL.
    const Zn_WString text = in.Text(static_cast<std::size_t>(length) * 2);
    in.Skip(length);
    const std::u16string_view view = text;
    const std::size_t equals = view.find(u'=');
    if (equals != std::u16string_view::npos)
        builder.Add(view.substr(0, equals), view.substr(equals + 1));
    return true;
}

// An empty name stands for that of the section before.
bool ReadSection(StreamReader& in, zn::ConfigBuilder& builder, Zn_WString& name)
{
    std::int32_t count;
    std::int32_t length;
    if (!in.Number(count) || !in.Number(length))
        return false;
    if (length > 0) {
        if (!in.Has(length))
            return false;
        name = in.Text(static_cast<std::size_t>(length));
        in.Skip(length);
    }
    builder.Begin(name);
    for (; count > 0; --count) {
        if (!ReadEntry(in, builder))
            return false;
    }
    return true;
}

// Writes the parts of one text behind their length.
void PutText(Zn_Buffer& out, std::initializer_list<std::u16string_view> parts)
{
    std::size_t length = 0;
    for (const std::u16string_view part : parts)
        length += part.size();
    zn::AppendBe32(out, static_cast<std::uint32_t>(length));
    for (const std::u16string_view part : parts) {
        for (const char16_t unit : part) {
            const unsigned char bytes[] = {static_cast<unsigned char>(unit), static_cast<unsigned char>(unit >> 8)};
            out.Append(bytes, sizeof(bytes));
        }
    }
}

} // namespace

int Zn_ConfigSectionList::SaveToStream(Zn_Buffer& out) const
{
    for (const Zn_ConfigSection& section : *this) {
        zn::AppendBe32(out, static_cast<std::uint32_t>(section.Count()));
        PutText(out, {section.id});
        for (const Zn_NamedStr& entry : section)
            PutText(out, {entry.Id(), u"=", entry.Str()});
    }
    return Count();
}

int Zn_ConfigSectionList::LoadFromStream(const Zn_Buffer& in)
{
    Clear();
    StreamReader reader(in.GetSpan());
    zn::ConfigBuilder builder(*this);
    Zn_WString name;
    while (ReadSection(reader, builder, name)) {
    }
    return Count();
}
