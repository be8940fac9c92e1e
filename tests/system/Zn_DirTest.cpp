#include "Zn_Dir.h"

#include "system/scratch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

TEST(Dir, MadeAndRemoved)
{
    const Scratch scratch;
    const Zn_WString folder = scratch.Path(u"s");
    EXPECT_EQ(Zn_Dir::IsExist(folder), 0);
    EXPECT_EQ(Zn_Dir::MakeDir(folder), 0);
    EXPECT_EQ(Zn_Dir::IsExist(folder), 1);
    EXPECT_EQ(Zn_Dir::IsDir(folder), 1);
    EXPECT_EQ(Zn_Dir::MakeDir(folder), 1);
    EXPECT_EQ(zn_getlasterror(), 183);
    EXPECT_EQ(Zn_Dir::MakeDir(scratch.Path(u"none/s")), 1);
    EXPECT_EQ(zn_getlasterror(), 3);

    scratch.Put("s/f", "");
    EXPECT_EQ(Zn_Dir::IsExist(scratch.Path(u"s/f")), 0) << "a file";
    EXPECT_EQ(Zn_Dir::DelDir(folder), 1);
    EXPECT_EQ(zn_getlasterror(), 145);
    EXPECT_EQ(Zn_Dir::DelDir(scratch.Path(u"s/f")), 1);
    EXPECT_EQ(zn_getlasterror(), 267);
    EXPECT_EQ(Zn_Dir::MoveDir(folder, scratch.Path(u"t")), 1);
    EXPECT_EQ(Zn_Dir::IsExist(folder), 1);
    std::filesystem::remove(scratch / "s/f");
    EXPECT_EQ(Zn_Dir::DelDir(folder), 0);
    EXPECT_EQ(Zn_Dir::DelDir(folder), 1);
    EXPECT_EQ(zn_getlasterror(), 2);
    EXPECT_EQ(Zn_Dir::IsExist(nullptr), 0);
}

TEST(Dir, ListTable)
{
    const Scratch scratch;
    for (const char* name : {"a.txt", "B.TXT", "c.tar.gz", "plain", ".rc", "값.log"})
        scratch.Put(reinterpret_cast<const char*>(name), "");
    std::filesystem::create_directory(scratch / "s.txt");
    const struct {
        const char16_t* ext;
        const char* names; // sorted; null for -1
    } rows[] = {
        {nullptr, ".rc B.TXT a.txt c.tar.gz plain s.txt 값.log"},
        {u"*", ".rc B.TXT a.txt c.tar.gz plain s.txt 값.log"},
        {u"txt", "B.TXT a.txt s.txt"},
        {u"t?t", "B.TXT a.txt s.txt"},
        {u"t*", "B.TXT a.txt c.tar.gz s.txt"},
        {u"*g*", "c.tar.gz 값.log"},
        {u"gz", "c.tar.gz"},
        {u"tar.gz", "c.tar.gz"},
        {u"rc", ".rc"},
        {u"", "plain"},
        {u"tx", nullptr},
        {u"text", nullptr},
    };
    for (const auto& row : rows) {
        for (const char16_t* end : {u"", u"/"}) {
            Zn_WStrList names;
            const int count = Zn_Dir::GetList(scratch.Path() + Zn_WString(end), names, row.ext);
            std::vector<std::string> sorted;
            for (const Zn_WString& name : names)
                sorted.push_back(name.ToUtf8());
            std::sort(sorted.begin(), sorted.end());
            std::string shown;
            for (const std::string& name : sorted)
                shown += (shown.empty() ? "" : " ") + name;
            EXPECT_EQ(shown, row.names ? row.names : "");
            EXPECT_EQ(count, row.names ? names.Count() : -1) << shown;
        }
    }
}

TEST(Dir, ListAppends)
{
    const Scratch scratch;
    Zn_WStrList names;
    names.Add(u"kept");
    EXPECT_EQ(Zn_Dir::GetList(scratch.Path(), names, nullptr), 1) << "an empty folder has itself";
    EXPECT_EQ(Zn_Dir::GetList(scratch.Path(), names, u"txt"), -1);
    EXPECT_EQ(zn_getlasterror(), 2);
    scratch.Put("f", "");
    EXPECT_EQ(Zn_Dir::GetList(scratch.Path(), names, nullptr), 2);
    EXPECT_EQ(Zn_Dir::GetList(scratch.Path(u"f"), names, nullptr), -1);
    EXPECT_EQ(Zn_Dir::GetList(scratch.Path(u"none"), names, nullptr), -1);
    EXPECT_EQ(zn_getlasterror(), 3);
    EXPECT_EQ(Zn_Dir::GetList(nullptr, names, nullptr), -1);
    EXPECT_EQ(zn_getlasterror(), 123);
    EXPECT_EQ(names.Count(), 2);
}

} // namespace
