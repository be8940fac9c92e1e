#include "platform/files.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <windows.h>

namespace zn::platform {

namespace {

constexpr DWORD kMostAtOnce = 1U << 30;

bool Fail(DWORD error) noexcept
{
    ::SetLastError(error);
    return false;
}

bool IsUsable(PathText path) noexcept
{
    return path.wide || Fail(ERROR_INVALID_NAME);
}

const wchar_t* Text(const char16_t* text) noexcept
{
    return reinterpret_cast<const wchar_t*>(text);
}

const wchar_t* Text(const std::u16string& text) noexcept
{
    return Text(text.c_str());
}

// Closing leaves the reason of an earlier failure alone.
void Close(HANDLE handle) noexcept
{
    const DWORD saved = ::GetLastError();
    ::CloseHandle(handle);
    ::SetLastError(saved);
}

std::uint64_t Joined(const FILETIME& time) noexcept
{
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

struct Search {
    HANDLE handle;
    WIN32_FIND_DATAW found;
    bool taken;
};

} // namespace

bool TakesBytePaths() noexcept
{
    return false;
}

// ---- open files -------------------------------------------------------------------------------

FileHandle OpenFile(PathText path, std::uint32_t access, std::uint32_t share, std::uint32_t disposition) noexcept
{
    if (!IsUsable(path))
        return NoFile();
    return ::CreateFileW(Text(path.wide), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

void CloseFile(FileHandle file) noexcept
{
    Close(file);
}

int ReadBytes(FileHandle file, void* buffer, int length) noexcept
{
    int done = 0;
    while (done < length) {
        DWORD got = 0;
        const auto rest = static_cast<DWORD>(length - done);
        if (!::ReadFile(file, static_cast<char*>(buffer) + done, rest, &got, nullptr)) {
            if (::GetLastError() == ERROR_BROKEN_PIPE) // the end of a pipe
                break;
            return -1;
        }
        if (got == 0)
            break;
        done += static_cast<int>(got);
    }
    return done;
}

bool WriteBytes(FileHandle file, const void* data, std::size_t length) noexcept
{
    std::string_view rest(static_cast<const char*>(data), length);
    while (!rest.empty()) {
        DWORD put = 0;
        const auto count = static_cast<DWORD>(std::min<std::size_t>(rest.size(), kMostAtOnce));
        if (!::WriteFile(file, rest.data(), count, &put, nullptr))
            return false;
        if (put == 0)
            return Fail(ERROR_DISK_FULL);
        rest.remove_prefix(put);
    }
    return true;
}

bool FlushFile(FileHandle file) noexcept
{
    if (::FlushFileBuffers(file))
        return true;
    const DWORD error = ::GetLastError();
    return error == ERROR_INVALID_FUNCTION || error == ERROR_INVALID_HANDLE; // a device, such as the console
}

std::int64_t SeekFile(FileHandle file, std::int64_t offset, int origin) noexcept
{
    LARGE_INTEGER distance;
    LARGE_INTEGER position;
    distance.QuadPart = offset;
    return ::SetFilePointerEx(file, distance, &position, static_cast<DWORD>(origin)) ? position.QuadPart : -1;
}

std::int64_t SizeOfFile(FileHandle file) noexcept
{
    LARGE_INTEGER size;
    return ::GetFileSizeEx(file, &size) ? size.QuadPart : -1;
}

std::uint64_t LocalWriteTime(FileHandle file) noexcept
{
    FILETIME written;
    FILETIME wholeUtc;
    FILETIME wholeLocal;
    SYSTEMTIME utc;
    SYSTEMTIME local;
    // By way of the calendar, which knows the summer time of that day. It has milliseconds only.
    if (!::GetFileTime(file, nullptr, nullptr, &written) || !::FileTimeToSystemTime(&written, &utc) ||
        !::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) || !::SystemTimeToFileTime(&utc, &wholeUtc) ||
        !::SystemTimeToFileTime(&local, &wholeLocal))
        return 0;
    return Joined(written) - Joined(wholeUtc) + Joined(wholeLocal);
}

// ---- files and folders by their names ---------------------------------------------------------

bool PathExists(PathText path) noexcept
{
    WIN32_FIND_DATAW found;
    const HANDLE search = IsUsable(path) ? ::FindFirstFileW(Text(path.wide), &found) : INVALID_HANDLE_VALUE;
    return search != INVALID_HANDLE_VALUE && ::FindClose(search);
}

bool IsFolder(PathText path) noexcept
{
    const DWORD attributes = IsUsable(path) ? ::GetFileAttributesW(Text(path.wide)) : INVALID_FILE_ATTRIBUTES;
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return false;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 || Fail(ERROR_DIRECTORY);
}

bool DropFile(PathText path) noexcept
{
    return IsUsable(path) && ::DeleteFileW(Text(path.wide));
}

bool MakeFolder(PathText path) noexcept
{
    return IsUsable(path) && ::CreateDirectoryW(Text(path.wide), nullptr);
}

bool DropFolder(PathText path) noexcept
{
    return IsUsable(path) && ::RemoveDirectoryW(Text(path.wide));
}

namespace {

// A new file under a name that no file has, in the folder of the one it is to replace.
HANDLE OpenBeside(const std::u16string& target, std::u16string& name)
{
    static LONG count = 0;
    const std::size_t slash = target.find_last_of(u"\\/:");
    const std::u16string folder = target.substr(0, slash == std::u16string::npos ? 0 : slash + 1);
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const std::string number =
            std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(::InterlockedIncrement(&count));
        name = folder + u".zn-" + std::u16string(number.begin(), number.end()) + u".tmp";
        const HANDLE file =
            ::CreateFileW(Text(name), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE || ::GetLastError() != ERROR_FILE_EXISTS)
            return file;
    }
    return INVALID_HANDLE_VALUE;
}

bool PutInPlace(const std::u16string& name, const std::u16string& target, bool replaces) noexcept
{
    // The first keeps the rights of the file that is there, on the disks that know such rights.
    return (replaces && ::ReplaceFileW(Text(target), Text(name), nullptr, 0, nullptr, nullptr)) ||
           ::MoveFileExW(Text(name), Text(target), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

bool Replace(const std::u16string& target, const void* data, std::size_t length)
{
    const DWORD old = ::GetFileAttributesW(Text(target));
    const bool replaces = old != INVALID_FILE_ATTRIBUTES;
    if (replaces && (old & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DEVICE)) != 0)
        return Fail(ERROR_ACCESS_DENIED);
    std::u16string name;
    const HANDLE file = OpenBeside(target, name);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool whole = WriteBytes(file, data, length) && FlushFile(file);
    Close(file);
    if (whole && PutInPlace(name, target, replaces))
        return true;
    const DWORD error = ::GetLastError();
    ::DeleteFileW(Text(name));
    return Fail(error);
}

} // namespace

bool StoreFile(PathText path, const void* data, std::size_t length) noexcept
{
    try {
        return IsUsable(path) && Replace(path.wide, data, length);
    } catch (const std::bad_alloc&) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY);
    }
}

// ---- names in a folder ------------------------------------------------------------------------

FolderSearch::FolderSearch(PathText folder) noexcept
{
    if (!IsUsable(folder))
        return;
    try {
        std::u16string pattern = folder.wide;
        if (pattern.empty() || (pattern.back() != u'/' && pattern.back() != u'\\'))
            pattern += u'/';
        pattern += u'*';
        auto search = std::make_unique<Search>();
        search->handle = ::FindFirstFileW(Text(pattern), &search->found);
        if (search->handle != INVALID_HANDLE_VALUE)
            state_ = search.release();
    } catch (const std::bad_alloc&) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
    }
}

FolderSearch::~FolderSearch()
{
    const std::unique_ptr<Search> search(static_cast<Search*>(state_));
    if (!search)
        return;
    const DWORD saved = ::GetLastError();
    ::FindClose(search->handle);
    ::SetLastError(saved);
}

FolderSearch::Step FolderSearch::Next(Name& name) noexcept
{
    auto& search = *static_cast<Search*>(state_);
    if (search.taken && !::FindNextFileW(search.handle, &search.found))
        return ::GetLastError() == ERROR_NO_MORE_FILES ? Step::End : Step::Failed;
    search.taken = true;
    name = {reinterpret_cast<const char16_t*>(search.found.cFileName), {}};
    return Step::Found;
}

} // namespace zn::platform
