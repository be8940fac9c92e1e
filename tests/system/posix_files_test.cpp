// What only a POSIX system lets a test do to files: full disks, refused folders, interrupted calls, rights and links.
#include "Zn_Config.h"
#include "Zn_Dir.h"
#include "Zn_ErrorMsg.h"
#include "Zn_File.h"

#include "platform/files.h"
#include "platform/platform.h"
#include "system/native_path.h"
#include "system/scratch.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <thread>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

using zn::NativePath;

bool Store(const Zn_WString& path, std::string_view bytes)
{
    return zn::platform::StoreFile(NativePath(path), bytes.data(), bytes.size());
}

// No file may grow beyond a size for a while.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &old_);
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;
    ~SizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit old_{};
    void (*handler_)(int);
};

// Not the superuser, whom nothing is refused, for a while.
class PlainUser {
public:
    PlainUser() : was_(geteuid())
    {
        if (was_ == 0)
            static_cast<void>(seteuid(65534));
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;
    ~PlainUser() { static_cast<void>(seteuid(was_)); }

private:
    uid_t was_;
};

TEST(PosixFile, FullDevice)
{
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no /dev/full";
    Zn_File file;
    ASSERT_EQ(file.Open(u"/dev/full", "a"), 0);
    EXPECT_EQ(file.Write("x", 1, 0), -1);
    EXPECT_EQ(file.lastError, 112);
    EXPECT_EQ(Zn_File::WriteFile(u"\\dev\\full", "x", 1), -1);
    EXPECT_EQ(zn_getlasterror(), 112);
    Zn_File other;
    EXPECT_EQ(other.Open(u"/dev/full", "a"), 0) << "a device may have several writers";
    Zn_Config config;
    config.AddSection(u"s");
    EXPECT_EQ(config.Save(u"/dev/full"), -1);
    EXPECT_EQ(config.lastError, 112);
}

TEST(PosixFile, FullDisk)
{
    const Scratch scratch;
    const std::string disk = scratch / "disk";
    std::filesystem::create_directory(disk);
    if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "no file system of 64 KB can be mounted: " << std::strerror(errno);
    const std::string large(100000, 'x');
    Zn_File file(scratch.Path(u"disk/f"), 0x1022);
    EXPECT_EQ(file.Write(large.data(), 100000, 0), -1);
    EXPECT_EQ(file.lastError, 112);
    file.Close();
    std::filesystem::remove(scratch / "disk/f");

    scratch.Put("disk/s", "old");
    EXPECT_FALSE(Store(scratch.Path(u"disk/s"), large));
    EXPECT_EQ(zn_getlasterror(), 112);
    EXPECT_EQ(scratch.Get("disk/s"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1);
    EXPECT_EQ(umount(disk.c_str()), 0);
}

TEST(PosixFile, FileTooLarge)
{
    const Scratch scratch;
    scratch.Put("s", "old");
    const std::string large(5000, 'x');
    const SizeLimit limit(1000);
    Zn_File file(scratch.Path(u"f"), 0x1022);
    EXPECT_EQ(file.Write(large.data(), 5000, 0), -1) << "written in part at first";
    EXPECT_EQ(file.lastError, 223);
    EXPECT_EQ(file.GetSize(), 1000);
    EXPECT_FALSE(Store(scratch.Path(u"s"), large));
    Zn_Config config;
    for (int i = 0; i < 100; ++i)
        config.SetItem(u"section", Zn_WString(std::u16string(static_cast<std::size_t>(i + 1), u'n')), i);
    EXPECT_EQ(config.SaveWithValues(scratch.Path(u"s")), -1);
    EXPECT_EQ(config.lastError, 223);
    EXPECT_EQ(scratch.Get("s"), "old");
    EXPECT_EQ(scratch.CountFiles(), 2U);
}

TEST(PosixFile, RefusedFolder)
{
    const Scratch scratch;
    const std::string folder = scratch / "folder";
    std::filesystem::create_directory(folder);
    scratch.Put("folder/f", "old");
    chmod((scratch / "folder/f").c_str(), 0444);
    chmod(folder.c_str(), 0555);
    const PlainUser user;
    if (geteuid() == 0)
        GTEST_SKIP() << "the superuser can't become another user";
    for (const char16_t* name : {u"folder/new", u"folder/f"}) {
        Zn_File file;
        EXPECT_EQ(file.Open(scratch.Path(name), "w"), -1);
        EXPECT_EQ(file.lastError, 5);
        EXPECT_EQ(Zn_File::WriteFile(scratch.Path(name), "x", 1), -1);
        EXPECT_EQ(zn_getlasterror(), 5);
        EXPECT_FALSE(Store(scratch.Path(name), "x"));
        EXPECT_EQ(zn_getlasterror(), 5);
        EXPECT_EQ(Zn_File::Delete(scratch.Path(u"folder/f")), 0);
        EXPECT_EQ(zn_getlasterror(), 5);
    }
    EXPECT_EQ(Zn_File::MakeDir(scratch.Path(u"folder/a/b")), static_cast<int>(0x80004005));
    EXPECT_EQ(Zn_Dir::MakeDir(scratch.Path(u"folder/a")), 1);
    EXPECT_EQ(zn_getlasterror(), 5);
    EXPECT_EQ(scratch.Get("folder/f"), "old");
}

// A pipe takes and gives what it has; a timer interrupts both sides all the time.
TEST(PosixFile, ReadsAndWritesAreCarriedOn)
{
    const Scratch scratch;
    ASSERT_EQ(mkfifo((scratch / "pipe").c_str(), 0600), 0);
    constexpr int size = 3000000;
    const std::string sent(size, 'z');
    struct sigaction action {};
    struct sigaction old {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, &old);
    const itimerval often{{0, 200}, {0, 200}};
    setitimer(ITIMER_REAL, &often, nullptr);
    int written = 0;
    std::thread writer([&] {
        Zn_File file(scratch.Path(u"pipe"), 0x0012);
        written = file.Write(sent.data(), size, 0);
    });
    std::string got(size + 1, '\0');
    int length = size;
    Zn_File file(scratch.Path(u"pipe"), Zn_File::OpenRead);
    EXPECT_EQ(file.Read(got.data(), length, 0), size);
    writer.join();
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &old, nullptr);
    EXPECT_EQ(written, size);
    EXPECT_EQ(std::string_view(got).substr(0, size), sent);
}

TEST(PosixFile, NamesInTheLocalesCodePage)
{
    const Scratch scratch;
    EXPECT_EQ(Zn_File::WriteFile(scratch.Path(u"값\\f"), "", 0), -1);
    Zn_File file;
    const Zn_WString broken = scratch.Path() + Zn_WString(u"/\xD800");
    EXPECT_EQ(file.Open(broken, "w"), -1);
    EXPECT_EQ(file.lastError, 123) << "no other file is touched instead";
    EXPECT_EQ(Zn_File::WriteFile(broken, "", 0), -1);
    EXPECT_EQ(zn_getlasterror(), 123);
    EXPECT_EQ(scratch.CountFiles(), 0U);
    EXPECT_EQ(Zn_File::WriteFile(scratch.Path() + Zn_WString(u"\\값"), "x", 1), 1);
    EXPECT_EQ(scratch.Get("값"), "x");
}

// A file opened while the standard streams are closed takes none of their numbers.
TEST(PosixFile, HandlesAreNeverNull)
{
    const int kept = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    Zn_File file(u"/dev/null", Zn_File::OpenRead);
    EXPECT_TRUE(file.IsOpen());
    EXPECT_GT(reinterpret_cast<std::intptr_t>(file.GetHandle()), 2);
    EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1);
    dup2(kept, STDIN_FILENO);
    close(kept);
    EXPECT_NE(fcntl(static_cast<int>(reinterpret_cast<std::intptr_t>(file.GetHandle())), F_GETFD) & FD_CLOEXEC, 0);
}

TEST(PosixFile, DateIsLocal)
{
    const Scratch scratch;
    scratch.Put("f", "");
    const timespec times[] = {{0, 0}, {1089860400, 123456700}}; // 2004-07-15 03:00:00 UTC
    utimensat(AT_FDCWD, (scratch / "f").c_str(), times, 0);
    const char* zone = std::getenv("TZ");
    const std::string old = zone ? zone : "";
    setenv("TZ", "KST-9", 1);
    tzset();
    Zn_File file(scratch.Path(u"f"), 0);
    FILETIME date{};
    EXPECT_EQ(file.GetFileDate(date, nullptr), 1);
    if (zone)
        setenv("TZ", old.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
    const std::uint64_t steps = std::uint64_t{date.dwHighDateTime} << 32 | date.dwLowDateTime;
    EXPECT_EQ(steps, (1089860400ULL + 9 * 3600 + 11644473600ULL) * 10000000 + 1234567);
    Zn_File other;
    EXPECT_EQ(other.GetFileDate(date, file.GetHandle()), 1);
}

TEST(PosixFile, StoringKeepsRightsAndLinks)
{
    const Scratch scratch;
    EXPECT_TRUE(Store(scratch.Path(u"f"), "first"));
    EXPECT_EQ(scratch.Get("f"), "first");
    chmod((scratch / "f").c_str(), 0640);
    std::filesystem::create_symlink("f", scratch / "link");
    EXPECT_TRUE(Store(scratch.Path(u"link"), "second"));
    EXPECT_EQ(scratch.Get("f"), "second");
    EXPECT_TRUE(std::filesystem::is_symlink(scratch / "link"));
    struct stat found {};
    stat((scratch / "f").c_str(), &found);
    EXPECT_EQ(found.st_mode & 07777, 0640U);
    EXPECT_FALSE(Store(scratch.Path(), "x")) << "a folder";
    EXPECT_EQ(zn_getlasterror(), 5);
    EXPECT_FALSE(Store(scratch.Path(u"none/f"), "x"));
    EXPECT_EQ(zn_getlasterror(), 3);
    EXPECT_EQ(scratch.CountFiles(), 2U);
}

// Every number of a system error goes both ways, those that files alone tell apart included.
TEST(PosixFile, ErrorNumbers)
{
    for (const int number : {0, 2, 3, 5, 6, 8, 32, 50, 80, 87, 112, 123, 131, 145, 183, 223, 267, 10054, 10061}) {
        zn::platform::SetLastError(number);
        EXPECT_EQ(zn_getlasterror(), number);
        EXPECT_NE(ZnSysErrorStr(number), u"Unknown error.");
    }
}

} // namespace
