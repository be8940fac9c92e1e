#include "platform/files.h"
#include "platform/keep_errno.h"

#include "platform/platform.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <new>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zn::platform {

namespace {

template <class Call>
auto CarryOn(Call call) noexcept
{
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR)
            return result;
    }
}

int NumberOf(FileHandle file) noexcept
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(file));
}

FileHandle HandleOf(int number) noexcept
{
    return reinterpret_cast<FileHandle>(static_cast<std::intptr_t>(number));
}

void Close(int number) noexcept
{
    const KeepErrno keep;
    close(number);
}

bool Fail(int error) noexcept
{
    errno = error;
    return false;
}

// The same with a Windows number, where POSIX tells by the call that failed what Windows tells by a number.
bool FailAs(int number) noexcept
{
    SetLastError(number);
    return false;
}
constexpr int kAlreadyExists = 183;
constexpr int kNoFolder = 267;

bool IsUsable(PathText path) noexcept
{
    return path.bytes || Fail(EILSEQ);
}

// Behind a failure: errno says so when not the name but the folder it stands in is missing. Always false.
bool TellMissingFolder(const char* path) noexcept
{
    if (errno != ENOENT)
        return false;
    std::string_view folder = path;
    while (folder.size() > 1 && folder.back() == '/')
        folder.remove_suffix(1);
    const std::size_t slash = folder.rfind('/');
    if (slash == std::string_view::npos || slash == 0)
        return false;
    char above[PATH_MAX];
    if (slash >= sizeof(above))
        return false;
    above[folder.copy(above, slash)] = '\0';
    struct stat found {};
    return Fail(stat(above, &found) == 0 ? ENOENT : ENOTDIR);
}

// A descriptor that stands for an open file and none of the standard streams, whose numbers may be free.
int OpenNumber(const char* path, int flags, mode_t mode) noexcept
{
    const int number = CarryOn([&] { return open(path, flags | O_CLOEXEC | O_NOCTTY, mode); });
    if (number < 0 || number > STDERR_FILENO)
        return number;
    const int moved = fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    Close(number);
    return moved;
}

int OpenFlags(std::uint32_t access, std::uint32_t disposition) noexcept
{
    const bool reads = access & kRead;
    const bool writes = access & kWrite;
    int flags = reads && writes ? O_RDWR : writes ? O_WRONLY : O_RDONLY;
    if (disposition != kOpenExisting)
        flags |= disposition == kCreateNew ? O_CREAT | O_EXCL : O_CREAT;
#ifdef O_PATH
    if (!reads && !writes && disposition == kOpenExisting)
        flags |= O_PATH;
#endif
    return flags;
}

// Writers that do not share writing hold a lock. A file system without locks has none to respect.
bool LockWriting(int number) noexcept
{
    if (CarryOn([&] { return flock(number, LOCK_EX | LOCK_NB); }) == 0 || errno != EWOULDBLOCK)
        return true;
    return Fail(ETXTBSY);
}

// Turns what was opened into what was asked for; false with errno when it can't be.
bool Settle(int number, const char* path, std::uint32_t access, std::uint32_t share, std::uint32_t disposition) noexcept
{
    struct stat found {};
    if (fstat(number, &found) != 0)
        return false;
    if (S_ISDIR(found.st_mode))
        return Fail(EISDIR);
    if (!S_ISREG(found.st_mode))
        return true;
    const bool writes = access & kWrite;
    if (writes && !(share & kShareWrite) && !LockWriting(number))
        return false;
    if (disposition != kCreateAlways)
        return true;
    return CarryOn([&] { return writes ? ftruncate(number, 0) : truncate(path, 0); }) == 0;
}

// A call that has not the access it needs fails as one on a descriptor that is not open.
bool TellMissingAccess(int number) noexcept
{
    if (errno == EBADF)
        errno = fcntl(number, F_GETFD) >= 0 ? EACCES : EBADF;
    return false;
}

} // namespace

bool TakesBytePaths() noexcept
{
    return true;
}

// ---- open files -------------------------------------------------------------------------------

FileHandle OpenFile(PathText path, std::uint32_t access, std::uint32_t share, std::uint32_t disposition) noexcept
{
    if (!IsUsable(path))
        return NoFile();
    constexpr mode_t everyone = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH; // less the process's mask
    const int number = OpenNumber(path.bytes, OpenFlags(access, disposition), everyone);
    if (number < 0) {
        TellMissingFolder(path.bytes);
        return NoFile();
    }
    if (!Settle(number, path.bytes, access, share, disposition)) {
        Close(number);
        return NoFile();
    }
    return HandleOf(number);
}

void CloseFile(FileHandle file) noexcept
{
    Close(NumberOf(file));
}

int ReadBytes(FileHandle file, void* buffer, int length) noexcept
{
    const int number = NumberOf(file);
    int done = 0;
    while (done < length) {
        const auto rest = static_cast<std::size_t>(length - done);
        const ssize_t got = CarryOn([&] { return read(number, static_cast<char*>(buffer) + done, rest); });
        if (got < 0) {
            TellMissingAccess(number);
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
    const int number = NumberOf(file);
    std::string_view rest(static_cast<const char*>(data), length);
    while (!rest.empty()) {
        const ssize_t put = CarryOn([&] { return write(number, rest.data(), rest.size()); });
        if (put < 0)
            return TellMissingAccess(number);
        if (put == 0)
            return Fail(ENOSPC);
        rest.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

bool FlushFile(FileHandle file) noexcept
{
    if (CarryOn([&] { return fsync(NumberOf(file)); }) == 0)
        return true;
    return errno == EINVAL || errno == EROFS || errno == ENOTSUP; // a device or a pipe
}

std::int64_t SeekFile(FileHandle file, std::int64_t offset, int origin) noexcept
{
    constexpr int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    if (origin < 0 || origin > 2 || static_cast<off_t>(offset) != offset) {
        errno = EINVAL;
        return -1;
    }
    const off_t position = lseek(NumberOf(file), static_cast<off_t>(offset), origins[origin]);
    if (position < 0 && errno == EINVAL)
        errno = ESPIPE;
    return position;
}

std::int64_t SizeOfFile(FileHandle file) noexcept
{
    struct stat found {};
    return fstat(NumberOf(file), &found) == 0 ? found.st_size : -1;
}

std::uint64_t LocalWriteTime(FileHandle file) noexcept
{
    struct stat found {};
    if (fstat(NumberOf(file), &found) != 0)
        return 0;
    const KeepErrno keep;
    std::tm local{};
    if (!localtime_r(&found.st_mtime, &local))
        return 0;
    constexpr std::int64_t secondsFrom1601 = 11644473600;
    constexpr std::int64_t stepsPerSecond = 10000000;
    const std::int64_t seconds = static_cast<std::int64_t>(found.st_mtime) + local.tm_gmtoff + secondsFrom1601;
#ifdef __APPLE__
    const long nanoseconds = found.st_mtimespec.tv_nsec;
#else
    const long nanoseconds = found.st_mtim.tv_nsec;
#endif
    return static_cast<std::uint64_t>(seconds * stepsPerSecond + nanoseconds / 100);
}

// ---- files and folders by their names ---------------------------------------------------------

bool PathExists(PathText path) noexcept
{
    struct stat found {};
    return IsUsable(path) && (stat(path.bytes, &found) == 0 || TellMissingFolder(path.bytes));
}

bool IsFolder(PathText path) noexcept
{
    struct stat found {};
    if (!IsUsable(path) || (stat(path.bytes, &found) != 0 && !TellMissingFolder(path.bytes)))
        return false;
    return S_ISDIR(found.st_mode) || FailAs(kNoFolder);
}

bool DropFile(PathText path) noexcept
{
    return IsUsable(path) && (unlink(path.bytes) == 0 || TellMissingFolder(path.bytes));
}

bool MakeFolder(PathText path) noexcept
{
    if (!IsUsable(path))
        return false;
    if (mkdir(path.bytes, S_IRWXU | S_IRWXG | S_IRWXO) == 0)
        return true;
    return errno == EEXIST ? FailAs(kAlreadyExists) : errno == ENOENT ? Fail(ENOTDIR) : false;
}

bool DropFolder(PathText path) noexcept
{
    if (!IsUsable(path))
        return false;
    if (rmdir(path.bytes) == 0)
        return true;
    struct stat found {};
    if (errno == EEXIST)
        return Fail(ENOTEMPTY);
    if (errno == ENOTDIR && stat(path.bytes, &found) == 0)
        return FailAs(kNoFolder);
    return TellMissingFolder(path.bytes);
}

namespace {

// The file that a path leads to through links, or the path itself where there is none yet.
std::string TargetOf(const char* path)
{
    const KeepErrno keep;
    const std::unique_ptr<char, decltype(&std::free)> target(realpath(path, nullptr), &std::free);
    return target ? target.get() : path;
}

// A new file under a name that no file has, in the folder of the one it is to replace.
int OpenBeside(const std::string& folder, mode_t mode, std::string& name)
{
    static std::atomic<unsigned> count{0};
    for (int attempt = 0; attempt < 1000; ++attempt) {
        name = folder + ".zn-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".tmp";
        const int number = OpenNumber(name.c_str(), O_WRONLY | O_CREAT | O_EXCL, mode);
        if (number >= 0 || errno != EEXIST)
            return number;
    }
    return -1;
}

// A name too is on the disk only when its folder is.
void FlushFolder(const std::string& folder) noexcept
{
    const KeepErrno keep;
    const int number = OpenNumber(folder.c_str(), O_RDONLY, 0);
    if (number < 0)
        return;
    fsync(number);
    close(number);
}

// Owner and rights of the file that is replaced; another's file may have to change hands.
bool TakeRights(int number, const struct stat& old) noexcept
{
    constexpr mode_t rights = S_IRWXU | S_IRWXG | S_IRWXO;
    const bool sameOwner = fchown(number, old.st_uid, old.st_gid) == 0;
    return fchmod(number, old.st_mode & (sameOwner ? rights | S_ISUID | S_ISGID : rights)) == 0;
}

bool Replace(const std::string& target, const void* data, std::size_t length)
{
    struct stat old {};
    const bool replaces = stat(target.c_str(), &old) == 0;
    if (replaces && (!S_ISREG(old.st_mode) || faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0))
        return Fail(EACCES);
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "./" : target.substr(0, slash + 1);
    const mode_t mode = S_IRUSR | S_IWUSR | (replaces ? 0 : S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH);
    std::string name;
    const int number = OpenBeside(folder, mode, name);
    if (number < 0)
        return TellMissingFolder(name.c_str());
    const bool whole = WriteBytes(HandleOf(number), data, length) && (!replaces || TakeRights(number, old)) &&
                       FlushFile(HandleOf(number));
    Close(number);
    if (!whole || rename(name.c_str(), target.c_str()) != 0) {
        const KeepErrno keep;
        unlink(name.c_str());
        return false;
    }
    FlushFolder(folder);
    return true;
}

} // namespace

bool StoreFile(PathText path, const void* data, std::size_t length) noexcept
{
    try {
        return IsUsable(path) && Replace(TargetOf(path.bytes), data, length);
    } catch (const std::bad_alloc&) {
        return Fail(ENOMEM);
    }
}

// ---- names in a folder ------------------------------------------------------------------------

FolderSearch::FolderSearch(PathText folder) noexcept
{
    if (!IsUsable(folder))
        return;
    state_ = opendir(folder.bytes);
    struct stat found {};
    if (!state_ && (errno == ENOENT || errno == ENOTDIR))
        static_cast<void>(stat(folder.bytes, &found) == 0 ? FailAs(kNoFolder) : Fail(ENOTDIR));
}

FolderSearch::~FolderSearch()
{
    const KeepErrno keep;
    if (state_)
        closedir(static_cast<DIR*>(state_));
}

FolderSearch::Step FolderSearch::Next(Name& name) noexcept
{
    const int before = errno;
    errno = 0;
    const dirent* entry = readdir(static_cast<DIR*>(state_));
    if (!entry && errno != 0)
        return Step::Failed;
    errno = before;
    if (!entry)
        return Step::End;
    name = {{}, entry->d_name};
    return Step::Found;
}

} // namespace zn::platform
