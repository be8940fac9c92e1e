// The porting contract of files and folders (posix_files.cpp, windows_files.cpp); platform.h says what holds for every
// part of it. Unlike elsewhere, a call that fails leaves the reason as the thread's last error (LastError).
//
// Interrupted calls are carried on, and so are reads and writes that the system does in part.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zn::platform {

// A path in the form that the platform takes, the other one being null. Both null: a path that it can't have, which
// every call refuses with error 123.
struct PathText {
    const char16_t* wide;
    const char* bytes; // in the locale's code page, "/" between folders
};
// Which form that is.
bool TakesBytePaths() noexcept;

// ---- open files -------------------------------------------------------------------------------

// Never null; all bits set for none, which calls refuse with error 6.
using FileHandle = void*;
inline FileHandle NoFile() noexcept
{
    return reinterpret_cast<FileHandle>(~std::uintptr_t{0});
}

// What a file is opened for; 0 is enough to ask for size and time. Numbers as Windows has them, here and below.
enum Access : std::uint32_t { kRead = 0x80000000, kWrite = 0x40000000 };
// What others may do with the file meanwhile. A platform without such a rule keeps at least two writers of this library
// apart where the first does not share writing: the second fails with error 32, and the file stays as it is.
enum Share : std::uint32_t { kShareRead = 1, kShareWrite = 2 };
enum Disposition : std::uint32_t {
    kCreateNew = 1,    // fails with error 80 when the file is there
    kCreateAlways = 2, // empties a file that is there
    kOpenExisting = 3, // fails with error 2, or 3 when its folder is missing too
    kOpenAlways = 4,
};

// Programs that are started do not inherit the handle. A folder is refused with error 5.
FileHandle OpenFile(PathText path, std::uint32_t access, std::uint32_t share, std::uint32_t disposition) noexcept;
void CloseFile(FileHandle file) noexcept;
// Reads length bytes, or fewer when the file ends before; -1 on failure. Error 5 without read access.
int ReadBytes(FileHandle file, void* buffer, int length) noexcept;
// Writes all of it. Error 112 when the disk is full, 5 without write access.
bool WriteBytes(FileHandle file, const void* data, std::size_t length) noexcept;
// Returns when the file's bytes are on the disk; true where there is nothing of that kind to wait for.
bool FlushFile(FileHandle file) noexcept;
// Origin 0 is the start, 1 the present position, 2 the end. Returns the new position; -1 on failure, with error 131 for
// a position before the start.
std::int64_t SeekFile(FileHandle file, std::int64_t offset, int origin) noexcept;
// -1 on failure.
std::int64_t SizeOfFile(FileHandle file) noexcept;
// When the file was last written, in the time zone that the system is set to, as the number of 100 ns since the start
// of the year 1601; 0 on failure.
std::uint64_t LocalWriteTime(FileHandle file) noexcept;

// ---- files and folders by their names ---------------------------------------------------------

// Whether there is a file, a folder or anything else of the name; error 2, or 3 when its folder is missing too.
bool PathExists(PathText path) noexcept;
bool IsFolder(PathText path) noexcept;
bool DropFile(PathText path) noexcept;
// Error 183 when there is something of the name, 3 when the folder above is missing.
bool MakeFolder(PathText path) noexcept;
// Empty folders only: error 145 for others, 267 for what is no folder.
bool DropFolder(PathText path) noexcept;
// Makes data the content of a file, new or not, in one step: whoever looks, also after a failure or a crash, finds
// the old content or the new one. The file keeps its access rights, and a link goes on leading to it. A file that may
// not be written, and what is no file, is refused with error 5.
bool StoreFile(PathText path, const void* data, std::size_t length) noexcept;

// The names in a folder, those of the folder itself and of the one above (".", "..") where the platform lists them.
class FolderSearch {
public:
    // A name in the form that the platform has it; valid until the next call.
    struct Name {
        std::u16string_view wide;
        std::string_view bytes;
    };
    enum class Step { Found, End, Failed };

    explicit FolderSearch(PathText folder) noexcept;
    ~FolderSearch();
    FolderSearch(const FolderSearch&) = delete;
    FolderSearch& operator=(const FolderSearch&) = delete;

    bool IsOpen() const noexcept { return state_ != nullptr; }
    Step Next(Name& name) noexcept;

private:
    void* state_ = nullptr;
};

} // namespace zn::platform
