// The file form of settings.
#include "Zn_Config.h"
#include "Zn_File.h"

#include "foundation/encoding.h"
#include "system/config_reader.h"
#include "system/open_file.h"

#include <algorithm>

namespace {

using zn::NativePath;
namespace platform = zn::platform;

enum Error { NoMemory = 8, InvalidName = 123 };

constexpr std::size_t kLongestLine = 1023; // bytes, its end included
constexpr std::string_view kMark = "\xEF\xBB\xBF";

// ---- reading ----------------------------------------------------------------------------------

// Takes the next line off the text, or the next piece of a long one. A NUL ends it early, the rest is lost.
std::string_view TakeLine(std::string_view& text) noexcept
{
    std::string_view line = text.substr(0, kLongestLine);
    line = line.substr(0, std::min(line.find('\n'), line.size() - 1) + 1);
    text.remove_prefix(line.size());
    return line.substr(0, line.find('\0'));
}

template <class Char>
std::basic_string_view<Char> Trimmed(std::basic_string_view<Char> text) noexcept
{
    while (!text.empty() && zn_isspace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && zn_isspace(text.back()))
        text.remove_suffix(1);
    return text;
}

Zn_WString Wide(std::string_view bytes)
{
    Zn_WString text(bytes.data(), static_cast<int>(bytes.size()), 0);
    return text.Trim();
}

void ReadLine(std::string_view line, zn::ConfigBuilder& builder)
{
    line = Trimmed(line);
    if (line.empty() || line.starts_with('#') || line.starts_with("//"))
        return;
    if (line.starts_with('[') && line.ends_with(']'))
        return builder.Begin(Wide(line.substr(1, line.size() - 2)));
    const std::size_t equals = line.find('=');
    if (builder.HasBegun() && equals != std::string_view::npos)
        builder.Add(Wide(line.substr(0, equals)), Wide(line.substr(equals + 1)));
}

void ReadText(std::string_view text, Zn_ConfigSectionList& list)
{
    list.Clear();
    if (text.starts_with(kMark)) // of an editor that marks UTF-8
        text.remove_prefix(kMark.size());
    zn::ConfigBuilder builder(list);
    while (!text.empty())
        ReadLine(TakeLine(text), builder);
}

// ---- writing ----------------------------------------------------------------------------------

template <class Sink>
void WriteText(const Zn_ConfigSectionList& list, bool withValues, Sink& out)
{
    using namespace std::string_view_literals;
    for (const Zn_ConfigSection& section : list) {
        zn::Append(out, "["sv);
        zn::EncodeText(section.id, 0, out);
        zn::Append(out, "]\n"sv);
        for (const Zn_NamedStr& entry : section) {
            zn::EncodeText(entry.Id(), 0, out);
            zn::Append(out, "="sv);
            if (withValues)
                zn::EncodeText(entry.Str(), 0, out);
            zn::Append(out, "\n"sv);
        }
        zn::Append(out, "\n"sv);
    }
}

bool Render(const Zn_ConfigSectionList& list, bool withValues, Zn_AString& out)
{
    if (zn::AssignWhole(out, [&](auto& sink) { WriteText(list, withValues, sink); }))
        return true;
    platform::SetLastError(NoMemory);
    return false;
}

// The place of the first entry that is another one in the list read back: "[section] name", or "[section]" for a
// section as a whole. Empty when all are the same.
Zn_WString FindDifference(const Zn_ConfigSectionList& list, const Zn_ConfigSectionList& back)
{
    for (int i = 0; i < list.Count(); ++i) {
        const Zn_ConfigSection& section = *list.GetItemNN(i);
        const Zn_ConfigSection& other = *back.GetItemNN(i);
        Zn_WString place = Zn_WString(u"[") + section.id + Zn_WString(u"]");
        if (i >= back.Count() || section.id != other.id)
            return place;
        for (int k = 0; k < section.Count(); ++k) {
            if (section.GetItemNN(k)->Compare(other.GetItemNN(k)) != 0)
                return place + Zn_WString(u" ") + section.Id(k);
        }
        if (other.Count() != section.Count())
            return place;
    }
    return {};
}

} // namespace

int Zn_ConfigSectionList::Refuse(int error) noexcept
{
    error_ = error;
    return -1;
}

int Zn_ConfigSectionList::Load(const char16_t* path)
{
    Clear();
    if (!path || !*path)
        return Refuse(InvalidName);
    Zn_AString text;
    if (Zn_File::ReadFile(path, text) < 0)
        return Refuse(zn_getlasterror());
    ReadText(text, *this);
    return Count();
}

int Zn_ConfigSectionList::Save(const char16_t* path)
{
    if (!path || !*path)
        return Refuse(InvalidName);
    Zn_AString text;
    if (!Render(*this, false, text) || Zn_File::WriteFile(path, text.GetText(), text.GetLength()) < 0)
        return Refuse(zn_getlasterror());
    return Count();
}

int Zn_ConfigSectionList::SaveWithValues(const char16_t* path, Zn_WString* refused)
{
    if (!path || !*path)
        return Refuse(InvalidName);
    Zn_AString text;
    if (!Render(*this, true, text))
        return Refuse(zn_getlasterror());
    Zn_ConfigSectionList back;
    ReadText(text, back);
    const Zn_WString difference = FindDifference(*this, back);
    if (refused)
        *refused = difference;
    if (!difference.IsEmpty())
        return CannotKeep;
    if (!platform::StoreFile(NativePath(path), text.GetText(), static_cast<std::size_t>(text.GetLength())))
        return Refuse(zn_getlasterror());
    return Count();
}
