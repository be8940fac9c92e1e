#if defined(_WIN32)
#    include <windows.h> // what FILETIME is there
#endif

#include "Zn_File.h"

#include "Zn_CodePage.h"
#include "system/scratch.h"

#include <gtest/gtest.h>

namespace {

constexpr int kNotMade = static_cast<int>(0x80004005);

struct WorkPath {
    explicit WorkPath(const char16_t* path) { Zn_File::SetWorkPath(path); }
    ~WorkPath() { Zn_File::SetWorkPath(nullptr); }
};

// What can be done with a file that holds "old", opened in a mode: reads what is there, then writes "new" at the start.
TEST(File, ModesTable)
{
    const struct {
        const char* mode;
        int error; // 0: it opens
        const char* read;
        int writeError;
        const char* after;
    } rows[] = {
        {"r", 0, "old", 5, "old"},        {"rb", 0, "old", 5, "old"},
        {"w", 0, nullptr, 0, "new"},      {"a", 0, nullptr, 0, "new"}, // at the start, not at the end
        {"rw", 0, "", 0, "new"},          {"rwb", 0, "", 0, "new"},
        {"ra", 0, "old", 0, "new"},       {"a+t", 0, "old", 0, "new"},
        {"b", 0, nullptr, 5, "old"},      {"r+", 80, nullptr, 0, "old"}, // a new file or none
        {"x", 87, nullptr, 0, "old"},     {"+r", 87, nullptr, 0, "old"},
        {"rb+t", 87, nullptr, 0, "old"},  {"tb", 87, nullptr, 0, "old"},
        {"wa", 87, nullptr, 0, "old"},    {"rx", 87, nullptr, 0, "old"},
        {"R", 87, nullptr, 0, "old"},     {"", 87, nullptr, 0, "old"},
        {nullptr, 87, nullptr, 0, "old"},
    };
    const Scratch scratch;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.mode ? row.mode : "null");
        scratch.Put("f", "old");
        Zn_File file;
        ASSERT_EQ(file.Open(scratch.Path(u"f"), row.mode), row.error == 0 ? 0 : -1);
        EXPECT_EQ(file.lastError, row.error);
        EXPECT_EQ(file.IsOpen(), row.error == 0);
        if (row.error == 0) {
            EXPECT_TRUE(std::filesystem::path(file.fileName.GetView()) == scratch / "f");
            char buffer[11];
            int length = 10;
            EXPECT_EQ(file.Read(buffer, length, 0), row.read ? static_cast<int>(std::strlen(row.read)) : -1);
            if (row.read)
                EXPECT_STREQ(buffer, row.read);
            else
                EXPECT_EQ(file.lastError, 5);
            file.Seek(0, Zn_File::Begin);
            file.lastError = 0;
            EXPECT_EQ(file.Write("new", 3, 0), row.writeError == 0 ? 3 : -1);
            EXPECT_EQ(file.lastError, row.writeError);
        }
        file.Close();
        EXPECT_EQ(scratch.Get("f"), row.after);
    }
}

TEST(File, NewFiles)
{
    const Scratch scratch;
    for (const char* mode : {"r+", "w", "a", "rw"}) {
        Zn_File file;
        EXPECT_EQ(file.Open(scratch.Path(u"new"), mode), 0) << mode;
        file.Close();
        EXPECT_EQ(Zn_File::Delete(scratch.Path(u"new")), 1) << mode;
    }
}

TEST(File, WhatCanNotBeOpened)
{
    const Scratch scratch;
    scratch.Put("f", "old");
    std::filesystem::create_directory(scratch / "folder");
    const struct {
        Zn_WString path;
        int flags;
        int error;
    } rows[] = {
        {u"", Zn_File::OpenRead, 123},
        {scratch.Path(u"f"), 0x31, 87},
        {scratch.Path(u"f"), 0x301, 87},
        {u"http://host/f", Zn_File::OpenRead, 50},
        {u"HTTP://", 0x1022, 50},
        {u"ftp://", Zn_File::OpenRead, 50},
        {u"ftp://host/f", Zn_File::OpenRead, 50},
        {u"f", 0x1022, 50}, // no work path
        {scratch.Path(u"none"), Zn_File::OpenRead, 2},
        {scratch.Path(u"none/f"), Zn_File::OpenRead, 3},
        {scratch.Path(u"none/f"), 0x1022, 3},
        {scratch.Path(u"folder"), Zn_File::OpenRead, 5},
        {scratch.Path(u"folder"), 0x1022, 5},
        {scratch.Path(u"none"), 0x0021, 2}, // without write access the file must be there
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path.ToUtf8() + " " + std::to_string(row.flags));
        Zn_File file(row.path, row.flags);
        EXPECT_EQ(file.lastError, row.error);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(file.Open(row.path, row.flags, 1), -1);
        EXPECT_TRUE(file.fileName.IsEmpty());
    }
    Zn_File file;
    EXPECT_EQ(file.Open(nullptr, 1, 0), -1);
    EXPECT_EQ(file.lastError, 123);
    EXPECT_EQ(file.Open(nullptr, "r"), -1);
    EXPECT_EQ(scratch.CountFiles(), 2U);
}

TEST(File, PathsTable)
{
    const Scratch scratch;
    scratch.Put("x.txt", "");
    scratch.Put("y.txt", "");
    const std::u16string here(scratch.Path());
    std::u16string local = here; // with backslashes
    std::replace(local.begin(), local.end(), u'/', u'\\');
    const std::u16string work = local + u"\\sub\\";
    const std::u16string slashed = here + u"/sub/";
    std::filesystem::create_directory(scratch / "sub");
    scratch.Put("sub/x.txt", "");
    const std::u16string none;
    const struct {
        const char* name;
        std::u16string path, work;
        int kindIn, result, kind;
        std::u16string resolved;
    } rows[] = {
        {"http", u"Http://h/\\x", none, -1, 2, 2, u"Http://h/\\x"},
        {"bare ftp", u"ftp://", none, -1, 3, 3, u"ftp://"},
        {"ftp with a host is relative", u"ftp://h", none, -1, -1, -1, u"ftp://h"},
        {"file, three slashes", u"file://" + here + u"/x.txt", none, -1, 0, 0, local + u"\\x.txt"},
        {"file, drive", u"file:///C:/n/x", none, -1, -1, 0, u"C:\\n\\x"},
        {"file, two slashes and drive", u"file://C:/n/x", none, 1, -1, 0, u"C:\\n\\x"},
        {"file, anything else", u"file://n/x", none, 1, -1, 0, u"n/x"},
        {"backslash", local + u"/x.txt", none, 1, 0, 0, local + u"\\x.txt"},
        {"drive", u"Q:a/b", none, -1, -1, 0, u"Q:a\\b"},
        {"missing", u"\\none/x", none, 2, -1, 0, u"\\none\\x"},
        {"relative, not asked for", u"x.txt", work, -1, -1, -1, u"x.txt"},
        {"relative, no work path", u"x.txt", none, 0, -1, 0, u"x.txt"},
        {"relative", u"x.txt", work, 0, 0, 0, work + u"x.txt"},
        {"relative, other kind", u"s/x.txt", work, 7, -1, 0, work + u"s\\x.txt"},
        {"relative, missing", u"y.txt", work, 0, -1, 0, work + u"y.txt"},
        {"this folder", u"./x.txt", work, 0, 0, 0, work + u"x.txt"},
        {"this folder, backslash", u".\\x.txt", work, 0, 0, 0, work + u"x.txt"},
        {"one level up", u"../y.txt", work, 0, 0, 0, local + u"\\y.txt"},
        {"only one level up", u"../../q.txt", work, 0, -1, 0, local + u"\\..\\q.txt"},
        {"dots of a name", u"..x", work, 0, -1, 0, work + u"..x"},
        {"up from nothing", u"..\\q", u"ab", 0, -1, 0, u"q"},
        {"relative with slashes", u"..\\y.txt", slashed, 1, 1, 1, here + u"/y.txt"},
        {"relative URL", u"a\\b", u"http://h/", 2, 2, 2, u"http://h/a/b"},
        {"separators that differ", u"../z", slashed, 0, -1, 0, u"z"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const WorkPath set(row.work.c_str());
        Zn_File file;
        int kind = row.kindIn;
        Zn_WString resolved;
        EXPECT_EQ(file.CheckPath(row.path.c_str(), kind, resolved), row.result);
        EXPECT_EQ(kind, row.kind);
        EXPECT_EQ(resolved.ToUtf8(), Zn_WString(row.resolved).ToUtf8());
    }
    Zn_File file;
    int kind = 0;
    Zn_WString resolved;
    EXPECT_EQ(file.CheckPath(nullptr, kind, resolved), -1);
    EXPECT_EQ(kind, -1);
    kind = -1;
    EXPECT_EQ(file.CheckPath(scratch.Path(u"x.txt"), kind, resolved), kind);
}

TEST(File, OpensBehindTheWorkPath)
{
    const Scratch scratch;
    scratch.Put("f", "here");
    const WorkPath set(scratch.Path() + Zn_WString(u"/"));
    Zn_File file;
    EXPECT_EQ(Zn_WString(file.GetWorkPath()), scratch.Path() + Zn_WString(u"/"));
    EXPECT_EQ(file.Open(u"./f", "r"), 0);
    EXPECT_EQ(file.pathKind, 0);
    EXPECT_EQ(file.GetSize(), 4);
    EXPECT_EQ(file.Open(u"./new", 0x1022, 0), 0);
    EXPECT_TRUE(std::filesystem::exists(scratch / "new"));
    Zn_File::SetWorkPath(u"");
    EXPECT_EQ(file.GetWorkPath(), nullptr);
}

TEST(File, OneWriterAtATime)
{
    const Scratch scratch;
    const Zn_WString path = scratch.Path(u"f");
    Zn_File first(path, 0x1022);
    ASSERT_EQ(first.Write("content", 7, 0), 7);
    Zn_File second;
    EXPECT_EQ(second.Open(path, "w"), -1);
    EXPECT_EQ(second.lastError, 32);
    EXPECT_EQ(scratch.Get("f"), "content") << "nothing is emptied before the file is had";
    EXPECT_EQ(Zn_File::WriteFile(path, "x", 1), -1);
    EXPECT_EQ(zn_getlasterror(), 32);
    EXPECT_EQ(second.Open(path, "r"), 0) << "readers are welcome";

    EXPECT_EQ(second.Open(path, 0x1012, 1), 1) << "opened for reading";
    char buffer[8];
    int length = 7;
    EXPECT_EQ(second.Read(buffer, length, 0), 7);
    EXPECT_STREQ(buffer, "content");
    EXPECT_EQ(second.Write("x", 1, 0), -1);
    EXPECT_EQ(second.lastError, 5);

    EXPECT_EQ(first.Open(path, "a"), 0) << "opening again gives up what was open";
    first.Close();
    EXPECT_EQ(second.Open(path, "a"), 0);
    const Zn_File copy(second);
    EXPECT_FALSE(copy.IsOpen());
    EXPECT_TRUE(copy.fileName.IsEmpty());
}

TEST(File, ReadsAndWrites)
{
    const Scratch scratch;
    scratch.Put("f", "abcd");
    Zn_File file(scratch.Path(u"f"), Zn_File::OpenRead);
    char buffer[11];
    std::fill_n(buffer, 11, '#');
    int length = 10;
    EXPECT_EQ(file.Read(buffer, length, 0), 4);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(std::string(buffer, 6), std::string("abcd\0#", 6));
    EXPECT_EQ(file.Read(buffer, length, 0), 0) << "the end";
    EXPECT_EQ(length, 0);
    for (const int bad : {-1, -100}) {
        EXPECT_EQ(file.Read(buffer, length = bad, 0), -1);
        EXPECT_EQ(file.lastError, 87);
        EXPECT_EQ(file.Write(buffer, bad, 0), -1);
    }
    EXPECT_EQ(file.Read(nullptr, length = 1, 0), -1);
    EXPECT_EQ(file.Write(nullptr, 1, 0), -1);
    EXPECT_EQ(file.Write("", 0, 0), 0) << "also where writing would fail";

    EXPECT_EQ(file.Seek(1, Zn_File::Begin), 1);
    EXPECT_EQ(file.Seek(1, Zn_File::Current), 2);
    EXPECT_EQ(file.Seek(-1, Zn_File::End), 3);
    EXPECT_EQ(file.Seek(-5, Zn_File::End), -1);
    EXPECT_EQ(file.lastError, 131);
    EXPECT_EQ(file.Seek(0, static_cast<Zn_File::Seek_Op>(3)), -1);
    EXPECT_EQ(file.lastError, 87);
    EXPECT_EQ(file.Read(buffer, length = 10, 0), 1) << "the position stayed";

    file.Close();
    EXPECT_EQ(file.GetSize(), 0);
    EXPECT_EQ(file.Read(buffer, length = 1, 0), -1);
    EXPECT_EQ(file.lastError, 6);
    EXPECT_EQ(file.Write("x", 1, 0), -1);
    EXPECT_EQ(file.Seek(0, Zn_File::Begin), -1);
    FILETIME date;
    EXPECT_EQ(file.GetFileDate(date, nullptr), 0);
}

TEST(File, BeyondTwoGigabytes)
{
    const Scratch scratch;
    const Zn_WString path = scratch.Path(u"large");
    Zn_File file(path, 0x1023);
    ASSERT_EQ(file.Write("head", 4, 0), 4);
    EXPECT_EQ(file.Seek(0x7FFFFFFF, Zn_File::Begin), 0x7FFFFFFF);
    EXPECT_EQ(file.Seek(0x7FFFFFFF, Zn_File::Current), -2) << "low 32 bits of 4294967294";
    if (file.Write("tail", 4, 0) != 4)
        GTEST_SKIP() << "no sparse file of 4 GiB here: error " << file.lastError;
    EXPECT_EQ(std::filesystem::file_size(scratch / "large"), 0x100000002U);
    EXPECT_EQ(file.GetSize(), 2);
    EXPECT_EQ(Zn_File::GetFileSize(path), 2);
    EXPECT_EQ(file.Seek(-4, Zn_File::End), -2);
    char buffer[11];
    int length = 10;
    EXPECT_EQ(file.Read(buffer, length, 0), 4);
    EXPECT_STREQ(buffer, "tail");
    EXPECT_EQ(file.Seek(0, Zn_File::Begin), 0);
    EXPECT_EQ(file.Read(buffer, length = 4, 0), 4);
    EXPECT_STREQ(buffer, "head");
    file.Close();

    Zn_Buffer whole;
    whole.SetSize(1);
    EXPECT_EQ(Zn_File::ReadFile(path, whole), -1);
    EXPECT_EQ(zn_getlasterror(), 223);
    EXPECT_EQ(whole.GetLength(), 1);
    std::filesystem::resize_file(scratch / "large", 0xC0000000U);
    EXPECT_EQ(Zn_File::GetFileSize(path), -0x40000000);
}

TEST(File, AskedByName)
{
    const Scratch scratch;
    scratch.Put("f", "four");
    const Zn_WString path = scratch.Path(u"f");
    EXPECT_EQ(Zn_File::IsExist(path), 1);
    EXPECT_EQ(Zn_File::GetFileSize(path), 4);
    Zn_File file(path, Zn_File::OpenRead);
    EXPECT_EQ(Zn_File::GetFileSize(file.GetHandle()), 4);
    EXPECT_EQ(Zn_File::GetFileLinkCnt(file.GetHandle()), 0);
    file.Close();
    EXPECT_EQ(Zn_File::IsExist(scratch.Path()), 0) << "a folder";
    EXPECT_EQ(Zn_File::GetFileSize(scratch.Path(u"none")), 0);
    EXPECT_EQ(Zn_File::Delete(path), 1);
    EXPECT_EQ(Zn_File::IsExist(path), 0);
    EXPECT_EQ(Zn_File::Delete(path), 0);
    EXPECT_EQ(zn_getlasterror(), 2);
    EXPECT_EQ(Zn_File::IsExist(nullptr), 0);
    EXPECT_EQ(zn_getlasterror(), 123);
}

TEST(File, MakesFoldersWithTheirParents)
{
    const Scratch scratch;
    const auto made = [&](const char* name) { return std::filesystem::is_directory(scratch / name); };
    EXPECT_EQ(Zn_File::MakeDir(scratch.Path(u"a/b/c/d")), 0);
    EXPECT_TRUE(made("a/b/c/d"));
    EXPECT_EQ(Zn_File::MakeDir(scratch.Path() + Zn_WString(u"\\p\\q")), 0);
    EXPECT_TRUE(made("p/q"));
    EXPECT_EQ(Zn_File::MakeDir(scratch.Path(u"a/b/e")), 0);
    EXPECT_EQ(Zn_File::MakeDir(scratch.Path(u"a/b")), kNotMade) << "is there";
    EXPECT_EQ(Zn_File::MakeDir(scratch.Path(u"n/m/")), kNotMade) << "callers see an error, the folders are made";
    EXPECT_TRUE(made("n/m"));
    scratch.Put("f", "");
    EXPECT_EQ(Zn_File::MakeDir(scratch.Path(u"f/x/y")), kNotMade);
    EXPECT_EQ(Zn_File::MakeDir(u""), 0) << "no separator: nothing to complain about";
    EXPECT_EQ(Zn_File::MakeDir(nullptr), kNotMade);
    std::u16string deep(scratch.Path());
    for (int i = 0; i < 50; ++i)
        deep += u"/x";
    EXPECT_EQ(Zn_File::MakeDir(deep.c_str()), 0);
}

TEST(File, WholeFiles)
{
    const Scratch scratch;
    const Zn_WString path = scratch.Path(u"f");
    std::string bytes(200000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7 % 251);
    EXPECT_EQ(Zn_File::WriteFile(path, bytes.data(), static_cast<int>(bytes.size())), 200000);
    EXPECT_EQ(scratch.Get("f"), bytes);
    Zn_Buffer buffer;
    EXPECT_EQ(Zn_File::ReadFile(path, buffer), 200000);
    EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(buffer.GetData()), 200000), bytes);
    Zn_AString text;
    EXPECT_EQ(Zn_File::ReadFile(path, text), 200000);
    EXPECT_EQ(text, std::string_view(bytes));

    EXPECT_EQ(Zn_File::WriteFile(path, "abc", -1), 3) << "what was there is gone";
    EXPECT_EQ(scratch.Get("f"), "abc");
    EXPECT_EQ(Zn_File::WriteFile(path, u"서울x", 2), 6);
    Zn_WString wide;
    EXPECT_EQ(Zn_File::ReadFile(path, wide), 2);
    EXPECT_EQ(wide, u"서울");
    ZnSetLocaleCP(949);
    EXPECT_EQ(Zn_File::WriteFile(path, u"서울", -1), 4);
    EXPECT_EQ(Zn_File::ReadFile(path, wide), 2);
    ZnSetLocaleCP(0);
    EXPECT_EQ(wide, u"서울");
    EXPECT_EQ(Zn_File::WriteFile(path, "", 0), 0);
    EXPECT_EQ(Zn_File::ReadFile(path, wide), 0);
    EXPECT_EQ(Zn_File::ReadFile(path, buffer), 0);

    for (const auto& marked :
         {std::string("\xEF\xBB\xBFé"), std::string("\xFF\xFE\xE9\0", 4), std::string("\xFE\xFF\0\xE9", 4)}) {
        scratch.Put("f", marked);
        EXPECT_EQ(Zn_File::ReadFile(path, wide), 1);
        EXPECT_EQ(wide, u"é");
    }
}

TEST(File, WholeFilesThatCanNotBeHad)
{
    const Scratch scratch;
    Zn_WString text(u"kept");
    Zn_WString why;
    EXPECT_EQ(Zn_File::ReadFile(scratch.Path(u"none"), text, &why), -1);
    EXPECT_EQ(why, Zn_WString(u"File Not Exist: ") + scratch.Path(u"none"));
    EXPECT_EQ(zn_getlasterror(), 2);
    EXPECT_EQ(Zn_File::ReadFile(scratch.Path(), text, &why), -1);
    EXPECT_EQ(why.ToUtf8(), "File: " + scratch.Path().ToUtf8() + ", 5:Access is denied.");
    EXPECT_EQ(text, u"kept");
    EXPECT_EQ(Zn_File::WriteFile(scratch.Path(u"none/f"), "x", 1), -1);
    EXPECT_EQ(zn_getlasterror(), 3);
    EXPECT_EQ(Zn_File::WriteFile(scratch.Path(u"f"), static_cast<const char16_t*>(nullptr), 0), -1);
    EXPECT_EQ(zn_getlasterror(), 87);
    EXPECT_EQ(scratch.CountFiles(), 0U);
}

} // namespace
