#include "Zn_Path.h"

#include "Zn_CodePage.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// "drive|folder|name|extension|joined"
std::string Parts(const Zn_Path& path)
{
    std::string text;
    for (const Zn_WString& part : {path.GetDrive(), path.GetPath(), path.GetFileName(), path.GetFileExt()})
        text += part.ToUtf8() + "|";
    return text + path.GetFullPath().ToUtf8();
}

TEST(Path, SplitsAndJoins)
{
    const struct {
        const char16_t* text;
        const char* parts;
        const char* pure;
    } rows[] = {
        {u"C:/data/log.txt", "C|/data|log|txt|C:/data/log.txt", "C:/data"},
        {u"/a/b", "|/a|b||/a/b", "/a"},
        {u"/b", "||b||/b", ""},
        {u"/a/b/", "|/a/b|||/a/b", "/a/b"},
        {u"/", "||||", ""},
        {u"readme.txt", "|readme.txt|||readme.txt", "readme.txt"},
        {u"C:readme.txt", "C|readme.txt|||C:/readme.txt", "C:/readme.txt"},
        {u"C:\\dir\\f.txt", "C|\\dir\\f.txt|||C:/\\dir\\f.txt", "C:/\\dir\\f.txt"},
        {u"a/b.tar.gz", "|a|b.tar|gz|a/b.tar.gz", "a"},
        {u"a.d/b", "|a.d|b||a.d/b", "a.d"},
        {u"/a/.profile", "|/a||profile|/a.profile", "/a"},
        {u"/a/b.", "|/a|b||/a/b", "/a"},
        {u"a:b:c/d", "a|b:c|d||a:/b:c/d", "a:/b:c"},
        {u":/a/b", "|/a|b||/a/b", "/a"},
        {u"/자료/값.txt", "|/자료|값|txt|/자료/값.txt", "/자료"},
        {u"", "||||", ""},
        {nullptr, "||||", ""},
    };
    for (const auto& row : rows) {
        Zn_Path path(u"x:/old/name.ext");
        path.Set(row.text);
        EXPECT_EQ(Parts(path), row.parts);
        EXPECT_EQ(path.GetPurePath().ToUtf8(), row.pure) << row.parts;
    }
}

TEST(Path, PartsAreWhatTheLocalesCodePageCanWrite)
{
    ZnSetLocaleCP(949);
    const Zn_Path path(u"/값/\u00FC.txt");
    ZnSetLocaleCP(0);
    EXPECT_EQ(Parts(path), "|/값|?|txt|/값/?.txt");
}

TEST(Path, EachPartCanBeReplaced)
{
    const struct {
        void (Zn_Path::*set)(const char16_t*);
        const char16_t* text;
        const char* parts;
    } rows[] = {
        {&Zn_Path::SetDrive, u"D", "D|/a|b|c|D:/a/b.c"},
        {&Zn_Path::SetPath, u"/x", "|/x|b|c|/x/b.c"},
        {&Zn_Path::SetPath, u"E:x/", "E|x/|b|c|E:/x/b.c"},
        {&Zn_Path::SetFileName, u"archive", "C|/a|archive|c|C:/a/archive.c"},
        {&Zn_Path::SetFileName, u"n.tar.gz", "C|/a|n.tar|gz|C:/a/n.tar.gz"},
        {&Zn_Path::SetFileName, u"n.", "C|/a|n||C:/a/n"},
        {&Zn_Path::SetFileExt, u"md", "C|/a|b|md|C:/a/b.md"},
    };
    for (const auto& row : rows) {
        Zn_Path path(u"C:/a/b.c");
        (path.*row.set)(row.text);
        EXPECT_EQ(Parts(path), row.parts);
        (path.*row.set)(u"");
        (path.*row.set)(nullptr);
        EXPECT_EQ(Parts(path), row.parts) << "empty text changes nothing";
    }
    Zn_Path named;
    named.SetFileName(u"log.txt");
    EXPECT_EQ(Parts(named), "||log|txt|/log.txt");
    named.SetPath(named.GetFullPath());
    EXPECT_EQ(Parts(named), "|/log.txt|log|txt|/log.txt/log.txt");
    named.Clear();
    EXPECT_EQ(Parts(named), "||||");
}

} // namespace
