#include "Zn_Path.h"

#include "Zn_AString.h"

#include <string_view>

namespace {

bool IsEmptyText(const char16_t* text) noexcept
{
    return !text || !*text;
}

Zn_WString Wide(std::string_view bytes)
{
    return {bytes.data(), static_cast<int>(bytes.size()), 0};
}

} // namespace

void Zn_Path::Clear() noexcept
{
    for (Zn_WString* part : {&drive_, &path_, &fileName_, &fileExt_, &fullPath_})
        part->Empty();
}

// Split in the locale's code page: callers rely on getting the parts as that page writes them.
void Zn_Path::Set(const char16_t* text)
{
    const Zn_AString bytes(text, -1, 0);
    Clear();
    std::string_view rest = bytes;
    if (const std::size_t colon = rest.find(':'); colon != std::string_view::npos) {
        drive_ = Wide(rest.substr(0, colon));
        rest.remove_prefix(colon + 1);
    }
    const std::size_t slash = rest.rfind('/');
    path_ = Wide(rest.substr(0, slash));
    if (slash != std::string_view::npos) {
        rest.remove_prefix(slash + 1);
        const std::size_t dot = rest.rfind('.');
        fileName_ = Wide(rest.substr(0, dot));
        if (dot != std::string_view::npos)
            fileExt_ = Wide(rest.substr(dot + 1));
    }
    SetFullPath();
}

void Zn_Path::SetDrive(const char16_t* drive)
{
    if (IsEmptyText(drive))
        return;
    drive_ = drive;
    SetFullPath();
}

void Zn_Path::SetPath(const char16_t* text)
{
    if (IsEmptyText(text))
        return;
    const Zn_WString given(text); // it may be a part of this path
    const std::u16string_view view = given;
    const std::size_t colon = view.find(u':');
    const bool hasDrive = colon != std::u16string_view::npos;
    drive_ = hasDrive ? view.substr(0, colon) : std::u16string_view();
    path_ = hasDrive ? view.substr(colon + 1) : view;
    SetFullPath();
}

void Zn_Path::SetFileName(const char16_t* text)
{
    if (IsEmptyText(text))
        return;
    const Zn_WString given(text);
    const std::u16string_view view = given;
    const std::size_t dot = view.rfind(u'.');
    fileName_ = view.substr(0, dot);
    if (dot != std::u16string_view::npos)
        fileExt_ = view.substr(dot + 1);
    SetFullPath();
}

void Zn_Path::SetFileExt(const char16_t* ext)
{
    if (IsEmptyText(ext))
        return;
    fileExt_ = ext;
    SetFullPath();
}

Zn_WString Zn_Path::GetPurePath() const
{
    Zn_WString joined;
    if (!drive_.IsEmpty()) {
        joined = drive_;
        joined += path_.GetAt(0) == u'/' ? u":" : u":/";
    }
    joined += path_;
    return joined;
}

void Zn_Path::SetFullPath()
{
    fullPath_ = GetPurePath();
    if (!fileName_.IsEmpty()) {
        if (fullPath_.GetAt(fullPath_.GetLength() - 1) != u'/')
            fullPath_ += u'/';
        fullPath_ += fileName_;
    }
    if (!fileExt_.IsEmpty()) {
        fullPath_ += u'.';
        fullPath_ += fileExt_;
    }
}
