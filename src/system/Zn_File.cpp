#include "Zn_File.h"

#include "Zn_TypedList.h"

#include "platform/files.h"
#include "system/native_path.h"
#include "system/open_file.h"

#include <cstring>
#include <mutex>
#include <vector>

namespace {

using zn::NativePath;
using zn::OpenedFile;
namespace platform = zn::platform;

enum Error { NotSupported = 50, InvalidParameter = 87, InvalidName = 123, SharingViolation = 32 };

constexpr int kNotMade = static_cast<int>(0x80004005);

struct WorkPath {
    std::mutex lock;
    Zn_WString path;
};

bool IsEmptyText(const char16_t* text) noexcept
{
    return !text || !*text;
}

bool BeginsWith(std::u16string_view text, std::u16string_view start) noexcept
{
    return zn_iequal(text.substr(0, start.size()), start);
}

constexpr bool IsSlash(char16_t ch) noexcept
{
    return ch == u'/' || ch == u'\\';
}

int LowWord(std::int64_t size) noexcept
{
    return static_cast<int>(static_cast<std::uint32_t>(size));
}

// What stands behind "file://": a drive, with or without a slash before it, or a path from the root gets backslashes.
Zn_WString LocalPathOfUrl(std::u16string_view rest)
{
    if (rest.size() > 2 && IsSlash(rest[0]) && rest[2] == u':')
        rest.remove_prefix(1);
    Zn_WString path(rest);
    if (IsSlash(path.GetAt(0)) || path.GetAt(1) == u':')
        path.Replace(u'/', u'\\');
    return path;
}

struct ModeLetter {
    char letter;
    int flags;
};

constexpr ModeLetter kModeLetters[] = {
    {'r', Zn_File::OpenRead},
    {'w', Zn_File::OpenWrite | Zn_File::OpenTruncate | Zn_File::OpenAppend},
    {'a', Zn_File::OpenWrite | Zn_File::OpenKeep | Zn_File::OpenAppend},
    {'t', Zn_File::OpenText},
    {'b', Zn_File::OpenBinary},
    {'+', Zn_File::OpenRead | Zn_File::OpenWrite},
};

// The flags of a mode text; 0 for one that is none.
int FlagsOfMode(std::string_view mode) noexcept
{
    if (mode.empty() || mode.size() > 3 || mode[0] == '+')
        return 0;
    int flags = 0;
    for (const char ch : mode) {
        int added = 0;
        for (const ModeLetter& letter : kModeLetters)
            added |= letter.letter == ch ? letter.flags : 0;
        if (added == 0)
            return 0;
        flags |= added;
    }
    return flags;
}

constexpr bool Contradict(int flags) noexcept
{
    constexpr int contents = Zn_File::OpenKeep | Zn_File::OpenTruncate;
    constexpr int form = Zn_File::OpenText | Zn_File::OpenBinary;
    return (flags & contents) == contents || (flags & form) == form;
}

platform::Disposition DispositionOf(int flags) noexcept
{
    if (flags & Zn_File::OpenTruncate)
        return platform::kCreateAlways;
    if (flags & Zn_File::OpenKeep)
        return platform::kOpenAlways;
    return flags & Zn_File::OpenWrite ? platform::kCreateNew : platform::kOpenExisting;
}

bool MakeFolder(std::u16string_view path)
{
    return platform::MakeFolder(NativePath(path));
}

// Where the last separator of a path stands that has no colon behind it; npos for none.
std::size_t LastSeparator(std::u16string_view path) noexcept
{
    const std::size_t at = path.find_last_of(u"\\/:");
    return at != std::u16string_view::npos && path[at] == u':' ? std::u16string_view::npos : at;
}

} // namespace

Zn_File::Zn_File(const char16_t* path, int flags)
{
    Zn_File::Open(path, flags, 0);
}

Zn_File::~Zn_File()
{
    Zn_File::Close();
}

int Zn_File::Refuse(int error) noexcept
{
    lastError = error;
    return -1;
}

int Zn_File::_file_error()
{
    return Refuse(zn_getlasterror());
}

// ---- paths ------------------------------------------------------------------------------------

void Zn_File::SetWorkPath(const char16_t* path)
{
    auto& work = Zn_Global<WorkPath>();
    const Zn_WString text(path);
    const std::lock_guard guard(work.lock);
    work.path = text;
}

const char16_t* Zn_File::GetWorkPath()
{
    auto& work = Zn_Global<WorkPath>();
    const std::lock_guard guard(work.lock);
    workPath_ = work.path;
    return workPath_.IsEmpty() ? nullptr : workPath_.GetText();
}

int Zn_File::CheckPath(const char16_t* path, int& kind, Zn_WString& resolved)
{
    if (!path) {
        kind = NoPath;
        return Refuse(InvalidName);
    }
    const Zn_WString given(path);
    const std::u16string_view view = given;
    resolved = given;
    if (BeginsWith(view, u"http://"))
        return kind = HttpPath;
    if (view == u"ftp://") // and nothing behind it, which callers rely on
        return kind = FtpPath;
    if (BeginsWith(view, u"file://")) {
        resolved = LocalPathOfUrl(view.substr(7));
        kind = LocalPath;
    } else if (given[1] == u':' || given[0] == u'\\') {
        resolved.Replace(u'/', u'\\');
        kind = LocalPath;
    } else if (given[0] == u'/') {
        kind = SlashPath;
    } else if (kind != NoPath && Resolve(given, kind, resolved) < 0) {
        return -1;
    }
    if (kind != LocalPath && kind != SlashPath)
        return kind;
    return platform::PathExists(NativePath(resolved)) ? kind : _file_error();
}

// Puts a relative path behind the work path.
int Zn_File::Resolve(const Zn_WString& path, int& kind, Zn_WString& resolved)
{
    const Zn_WString base(GetWorkPath());
    if (base.IsEmpty())
        return Refuse(NotSupported);
    Zn_WString relative = path;
    if (kind == SlashPath || kind == HttpPath) {
        relative.Replace(u'\\', u'/');
    } else {
        relative.Replace(u'/', u'\\');
        kind = LocalPath;
    }
    std::u16string_view rest = relative;
    resolved = base;
    if (rest.size() >= 2 && rest[0] == u'.' && IsSlash(rest[1])) {
        rest.remove_prefix(2);
    } else if (rest.size() >= 3 && rest.starts_with(u"..") && IsSlash(rest[2])) {
        // The level above: up to the separator before the one that the work path ends with.
        std::u16string_view above = base.GetView();
        above.remove_suffix(1);
        above = above.substr(0, above.rfind(rest[2]) + 1);
        resolved = above;
        rest.remove_prefix(3);
    }
    resolved += rest;
    return 0;
}

// ---- an open file -----------------------------------------------------------------------------

int Zn_File::Open(const char16_t* path, const char* mode)
{
    if (IsEmptyText(path))
        return Refuse(InvalidName);
    const int flags = mode ? FlagsOfMode(mode) : 0;
    if (flags == 0 || Contradict(flags))
        return Refuse(InvalidParameter);
    return Open(path, flags, 0);
}

// NOLINTNEXTLINE(misc-no-recursion): one step, since the second try asks for no third
int Zn_File::Open(const char16_t* path, int flags, int retryReadOnly)
{
    if (IsEmptyText(path))
        return Refuse(InvalidName);
    if (Contradict(flags))
        return Refuse(InvalidParameter);
    const bool writes = flags & OpenWrite;
    Zn_WString resolved;
    pathKind = GetWorkPath() ? LocalPath : NoPath;
    const int found = CheckPath(path, pathKind, resolved);
    if (pathKind != LocalPath && pathKind != SlashPath)
        return Refuse(NotSupported);
    if (found < 0 && !writes)
        return -1;

    access_ = (flags & OpenRead ? platform::kRead : 0U) | (writes ? platform::kWrite : 0U);
    share_ = platform::kShareRead | (writes ? 0U : platform::kShareWrite);
    disposition_ = DispositionOf(flags);
    Close();
    handle_ = platform::OpenFile(NativePath(resolved), access_, share_, disposition_);
    if (IsOpen()) {
        fileName = resolved;
        return 0;
    }
    _file_error();
    if (lastError == SharingViolation && retryReadOnly)
        return Open(path, OpenRead, 0) < 0 ? -1 : 1;
    return -1;
}

void Zn_File::Close()
{
    if (IsOpen())
        platform::CloseFile(handle_);
    handle_ = NoHandle();
}

int Zn_File::Write(const char* data, int length, int)
{
    if (!data || length < 0)
        return Refuse(InvalidParameter);
    if (length == 0)
        return 0;
    if (!platform::WriteBytes(handle_, data, static_cast<std::size_t>(length)) || !platform::FlushFile(handle_))
        return _file_error();
    return length;
}

int Zn_File::Read(char* buffer, int& length, int)
{
    if (!buffer || length < 0)
        return Refuse(InvalidParameter);
    if (length == 0)
        return 0;
    const int count = platform::ReadBytes(handle_, buffer, length);
    if (count < 0)
        return _file_error();
    buffer[count] = '\0';
    return length = count;
}

int Zn_File::Seek(int offset, Seek_Op origin)
{
    const std::int64_t position = platform::SeekFile(handle_, offset, origin);
    return position < 0 ? _file_error() : LowWord(position);
}

int Zn_File::GetSize()
{
    return IsOpen() ? GetFileSize(handle_) : 0;
}

int Zn_File::GetFileDate(FILETIME& out, void* handle)
{
    const std::uint64_t time = platform::LocalWriteTime(handle ? handle : handle_);
    if (time == 0)
        return 0;
    const std::uint32_t words[] = {static_cast<std::uint32_t>(time), static_cast<std::uint32_t>(time >> 32)};
    std::memcpy(static_cast<void*>(&out), words, sizeof(words));
    return 1;
}

// ---- files by their names ---------------------------------------------------------------------

int Zn_File::Delete(const char16_t* path)
{
    return platform::DropFile(NativePath(path));
}

int Zn_File::IsExist(const char16_t* path)
{
    return OpenedFile::ToRead(path).IsOpen();
}

int Zn_File::GetFileSize(const char16_t* path)
{
    const OpenedFile file = OpenedFile::ToRead(path);
    return file.IsOpen() ? GetFileSize(file.Get()) : 0;
}

int Zn_File::GetFileSize(void* handle)
{
    const std::int64_t size = platform::SizeOfFile(handle);
    return size < 0 ? 0 : LowWord(size);
}

int Zn_File::GetFileLinkCnt(void*)
{
    return 0;
}

int Zn_File::MakeDir(const char16_t* path)
{
    if (!path)
        return kNotMade;
    // Upwards to the first folder that can be made, or to the first part, where failing is no matter.
    std::u16string_view folder = path;
    std::vector<std::u16string_view> below;
    while (!MakeFolder(folder)) {
        const std::size_t separator = LastSeparator(folder);
        if (separator == std::u16string_view::npos)
            break;
        below.push_back(folder);
        folder = folder.substr(0, separator);
    }
    for (; !below.empty(); below.pop_back()) {
        if (!MakeFolder(below.back()) && !MakeFolder(below.back()))
            return kNotMade;
    }
    return 0;
}
