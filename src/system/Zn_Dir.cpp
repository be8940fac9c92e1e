#include "Zn_Dir.h"

#include "foundation/casefold.h"
#include "platform/platform.h"
#include "system/native_path.h"

namespace {

using zn::NativePath;
using zn::platform::FolderSearch;

bool SameUnit(char16_t unit, char16_t pattern) noexcept
{
    return pattern == u'?' || zn::FoldCase(unit) == zn::FoldCase(pattern);
}

// Whether a text is what a pattern with * and ? describes. Of several ways to fill a * the shortest is tried first,
// and only the last * met can need another.
bool FitsPattern(std::u16string_view text, std::u16string_view pattern) noexcept
{
    std::size_t at = 0, next = 0, star = std::u16string_view::npos, filled = 0;
    while (at < text.size()) {
        if (next < pattern.size() && pattern[next] == u'*') {
            star = next++;
            filled = at;
        } else if (next < pattern.size() && SameUnit(text[at], pattern[next])) {
            ++at, ++next;
        } else if (star != std::u16string_view::npos) {
            at = ++filled;
            next = star + 1;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', next) == std::u16string_view::npos;
}

// Whether a name matches "*." and an extension; "*.*" is every name, with or without a dot.
bool FitsExtension(const Zn_WString& name, std::u16string_view ext)
{
    if (ext == u"*")
        return true;
    if (ext.empty())
        return name.Find(u'.') < 0;
    return FitsPattern(name, u"*." + std::u16string(ext));
}

} // namespace

Zn_Dir::~Zn_Dir() = default;

int Zn_Dir::IsExist(const char16_t* path)
{
    return zn::platform::IsFolder(NativePath(path));
}

int Zn_Dir::MakeDir(const char16_t* path)
{
    return !zn::platform::MakeFolder(NativePath(path));
}

int Zn_Dir::DelDir(const char16_t* path)
{
    return !zn::platform::DropFolder(NativePath(path));
}

int Zn_Dir::MoveDir(const char16_t*, const char16_t*)
{
    return 1;
}

int Zn_Dir::GetList(const char16_t* dir, Zn_WStrList& names, const char16_t* ext)
{
    Zn_WString folder(dir);
    if (dir && folder.GetAt(folder.GetLength() - 1) != u'/')
        folder += u'/';
    FolderSearch search{NativePath(folder)};
    if (!search.IsOpen())
        return -1;
    const std::u16string_view wanted = ext ? ext : u"*";
    bool any = false;
    FolderSearch::Name found;
    FolderSearch::Step step;
    while ((step = search.Next(found)) == FolderSearch::Step::Found) {
        const Zn_WString name = zn::NameOf(found);
        if (!FitsExtension(name, wanted))
            continue;
        any = true;
        if (name != u"." && name != u"..")
            names.Add(name);
    }
    if (step == FolderSearch::Step::Failed)
        return -1;
    if (!any) {
        zn::platform::SetLastError(2);
        return -1;
    }
    return names.Count();
}
