#include "Zn_Config.h"

#include "Zn_CodePage.h"
#include "Zn_File.h"
#include "system/scratch.h"

#include <gtest/gtest.h>

namespace {

// "[section] name=value name=value [section] ..."
std::string Dump(const Zn_ConfigSectionList& list)
{
    std::string text;
    for (const Zn_ConfigSection& section : list) {
        text += (text.empty() ? "[" : " [") + section.id.ToUtf8() + "]";
        for (const Zn_NamedStr& entry : section)
            text += " " + entry.Id().ToUtf8() + "=" + entry.Str().ToUtf8();
    }
    return text;
}

Zn_Config Sample()
{
    Zn_Config config;
    config.SetItem(u"server", u"host", u"example.org");
    config.SetItem(u"server", u"port", 5000);
    config.SetItem(u"값", u"이름", u"서울");
    config.SetItem(u"값", u"empty", u"");
    return config;
}

TEST(Config, FileTable)
{
    const struct {
        const char* name;
        std::string text;
        std::string settings;
    } rows[] = {
        {"nothing", "", ""},
        {"sections match in any case", "[A]\nx=1\n[a]\ny=2\n", "[A] x=1 y=2"},
        {"a repeated section goes on with the first", "[B]\n[A]\n[B]\nz=3\n", "[B] z=3 [A]"},
        {"of all", "[A]\n[B]\n[B]\nz=3\n", "[A] z=3 [B]"},
        {"comments", "  # note\n// note\n[A]\n#x=1\n //x=1\nx=#1\ny=//2", "[A] x=#1 y=//2"},
        {"before the first section", "x=1\n[A]\ny=2", "[A] y=2"},
        {"white space", " [ A b ]\t\r\n  k = v w \v\r\n\n \n", "[A b] k=v w"},
        {"values", "[A]\nx=\ny==a=b\nplain\n=5\nz=[1]", "[A] x= y==a=b z=[1]"},
        {"what begins and ends as a section is one", "[A]\n[x=1]\n[]\ny=2\n[B\nz]=3", "[A] [x=1] [] y=2 z]=3"},
        {"entries repeat", "[A]\nx=1\nX=2\n", "[A] x=1 X=2"},
        {"a mark", "\xEF\xBB\xBF[A]\nx=1\n", "[A] x=1"},
        {"a NUL ends a line", std::string("[A]\nx=1\0y=2\nz=3", 15), "[A] x=1 z=3"},
        {"code page", "[A]\nx=값\ny=\xFF", "[A] x=값 y=\uFFFD"},
        {"1022 bytes and a line end", "[A]\nx=" + std::string(1020, 'a') + "\ny=1",
         "[A] x=" + std::string(1020, 'a') + " y=1"},
        {"1023", "[A]\nx=" + std::string(1021, 'a') + "\ny=1", "[A] x=" + std::string(1021, 'a') + " y=1"},
        {"1024 are two lines", "[A]\nx=" + std::string(1021, 'a') + "b=\n", "[A] x=" + std::string(1021, 'a') + " b="},
    };
    const Scratch scratch;
    for (const auto& row : rows) {
        scratch.Put("c", row.text);
        Zn_Config config = Sample();
        const int count = config.Load(scratch.Path(u"c"));
        EXPECT_EQ(count, config.Count()) << row.name;
        EXPECT_EQ(Dump(config), row.settings) << row.name;
    }
}

TEST(Config, SaveWritesNamesWithoutValues)
{
    const Scratch scratch;
    Zn_Config config = Sample();
    EXPECT_EQ(config.Save(nullptr), -1) << "nothing was loaded";
    EXPECT_EQ(config.lastError, 123);
    EXPECT_EQ(config.Save(scratch.Path(u"c")), 2);
    EXPECT_EQ(scratch.Get("c"), "[server]\nhost=\nport=\n\n[값]\n이름=\nempty=\n\n");
    EXPECT_EQ(config.Load(scratch.Path(u"c")), 2);
    EXPECT_EQ(Dump(config), "[server] host= port= [값] 이름= empty=");
    config.DelSection(u"server");
    EXPECT_EQ(config.Save(nullptr), 1);
    EXPECT_EQ(scratch.Get("c"), "[값]\n이름=\nempty=\n\n");
}

TEST(Config, FileFailures)
{
    const Scratch scratch;
    Zn_Config config = Sample();
    const struct {
        Zn_WString path;
        int loadError, saveError;
    } rows[] = {
        {u"", 123, 123},
        {scratch.Path(u"none/c"), 3, 3},
        {scratch.Path(), 5, 5},
        {scratch.Path(u"c"), 2, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path.ToUtf8());
        config = Sample();
        config.lastError = 0;
        EXPECT_EQ(config.Load(row.path), -1);
        EXPECT_EQ(config.lastError, row.loadError);
        EXPECT_EQ(config.GetError(), row.loadError);
        EXPECT_EQ(config.Count(), 0);
        EXPECT_EQ(config.GetFileName(), row.path);
        config = Sample();
        if (row.saveError == 0)
            continue;
        EXPECT_EQ(config.Save(row.path), -1);
        EXPECT_EQ(config.SaveWithValues(row.path), -1);
        EXPECT_EQ(config.lastError, row.saveError);
    }
    EXPECT_EQ(config.Load(nullptr), -1);
}

TEST(Config, SaveWithValuesReadsBackEqual)
{
    const Scratch scratch;
    Zn_Config config = Sample();
    config.AddSection(u"none in it");
    config.SetItem(u"server", u"formula", u"a=b # [c] // d");
    config.SetItem(u"server", u"long", Zn_WString(std::u16string(1017, u'a')));
    Zn_WString refused(u"old");
    EXPECT_EQ(config.SaveWithValues(scratch.Path(u"c"), &refused), 3);
    EXPECT_TRUE(refused.IsEmpty());
    Zn_Config back;
    EXPECT_EQ(back.Load(scratch.Path(u"c")), 3);
    EXPECT_EQ(Dump(back), Dump(config));
    back.SetItem(u"new", u"x", u"y");
    EXPECT_EQ(back.SaveWithValues(nullptr), 4);
    EXPECT_EQ(config.Load(scratch.Path(u"c")), 4);
    EXPECT_EQ(scratch.CountFiles(), 1U);
}

TEST(Config, WhatTheFileFormDoesNotHold)
{
    const struct {
        const char* why;
        Zn_WString section, name, value;
    } rows[] = {
        {"line break", u"s", u"n", u"a\nb"},
        {"line break that makes an entry", u"s", u"n", u"a\nb=c"},
        {"white space at the end", u"s", u"n", u"a "},
        {"white space at the start", u"s", u"n", u"\ta"},
        {"NUL", u"s", u"n", Zn_WString(u"a\0b", 3)},
        {"unpaired surrogate", u"s", u"n", Zn_WString(u"\xD800", 1)},
        {"too long", u"s", u"n", Zn_WString(std::u16string(1022, u'a'))},
        {"name with =", u"s", u"n=", u"a"},
        {"name of a comment", u"s", u"#n", u"a"},
        {"name of another comment", u"s", u"//n", u"a"},
        {"section instead of an entry", u"s", u"[n", u"a]"},
        {"name with a blank", u"s", u"n ", u"a"},
        {"name with a line break", u"s", u"n\nm", u"a"},
    };
    const Scratch scratch;
    const Zn_WString path = scratch.Path(u"c");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        scratch.Put("c", "old");
        Zn_Config config;
        config.SetItem(u"first", u"x", u"1");
        config.SetItem(row.section, u"y", u"2");
        config.SetItem(row.section, row.name, row.value);
        Zn_WString refused;
        EXPECT_EQ(config.SaveWithValues(path, &refused), Zn_Config::CannotKeep);
        EXPECT_EQ(refused, Zn_WString(u"[") + row.section + Zn_WString(u"] ") + row.name);
        EXPECT_EQ(scratch.Get("c"), "old");
        EXPECT_EQ(scratch.CountFiles(), 1U);
        config.DelItem(row.section, row.name);
        EXPECT_EQ(config.SaveWithValues(path, &refused), 2);
    }
    for (const char16_t* name : {u"a\n", u" a", u"a\nb"}) {
        Zn_Config config;
        config.SetItem(name, u"x", u"1");
        EXPECT_EQ(config.SaveWithValues(path), Zn_Config::CannotKeep) << "section";
    }
    Zn_Config twice = Sample();
    const Zn_Config other = Sample();
    twice.Append(&other);
    EXPECT_EQ(twice.SaveWithValues(path), Zn_Config::CannotKeep) << "a section of the same name";
    ZnSetLocaleCP(1252);
    EXPECT_EQ(Sample().SaveWithValues(path), Zn_Config::CannotKeep) << "characters that the code page lacks";
    ZnSetLocaleCP(0);
}

TEST(Config, SectionsAndItems)
{
    Zn_Config config;
    EXPECT_EQ(config.AddSection(u"a"), 0);
    EXPECT_EQ(config.AddSection(Zn_WString(u"b")), 1);
    EXPECT_EQ(config.AddSection(u"B"), 0) << "not 1, which callers rely on";
    EXPECT_EQ(config.AddSection(static_cast<const char16_t*>(nullptr)), -1);
    EXPECT_EQ(config.SetItem(u"b", u"text", Zn_WString(u"x")), 0);
    EXPECT_EQ(config.SetItem(u"B", Zn_WString(u"letter"), u'한'), 1);
    EXPECT_EQ(config.SetItem(u"b", u"int", -7), 2);
    EXPECT_EQ(config.SetItem(u"b", u"long", 70000L), 3);
    EXPECT_EQ(config.SetItem(u"b", u"double", 0.1), 4);
    EXPECT_EQ(config.SetItem(u"b", u"INT", 8), 0) << "was there";
    EXPECT_EQ(config.SetItem(u"new", u"x", u"y"), 0);
    EXPECT_EQ(config.SetItem(u"b", u"", u"x"), -1);
    EXPECT_EQ(config.SetItem(nullptr, u"x", u"y"), -1);
    EXPECT_EQ(config.SetItem(u"b", u"null", static_cast<const char16_t*>(nullptr)), 5);
    EXPECT_EQ(Dump(config), "[a] [b] text=x letter=한 int=8 long=70000 double=0.1 null= [new] x=y");

    EXPECT_EQ(config.GetSectionCount(), 3);
    EXPECT_EQ(config.GetSection(u"NEW"), config.GetSection(2));
    EXPECT_EQ(config.GetItems(1)->Count(), 6);
    EXPECT_EQ(config.GetSafeItems(3), nullptr);
    EXPECT_EQ(*config.GetItem(u"b", u"int"), u"8");
    EXPECT_EQ(*config.GetItem(1, 2), u"8");
    EXPECT_EQ(config.GetItem(u"b", u"none"), nullptr);
    EXPECT_EQ(config.GetItem(u"none", u"int"), nullptr);
    EXPECT_EQ(config.GetItem(9, 9), nullptr);
    EXPECT_EQ(config.GetItemNN(u"b", u"int").ToInteger(), 8);
    EXPECT_EQ(&config.GetItemNN(u"b", u"none"), &config.GetItemNN(5, 5));
    *config.GetSafeItem(u"b", u"text") += u"y";
    EXPECT_EQ(config.GetItemNN(u"b", u"text"), u"xy");
    EXPECT_EQ(config.GetSafeItem(u"b", u"none"), nullptr);

    for (const char16_t* none : {u"none", u"", static_cast<const char16_t*>(nullptr)}) {
        EXPECT_EQ(config.ChangeSectionId(none, u"q"), 0);
        EXPECT_EQ(config.ChangeItemId(none, u"x", u"q"), 0);
        EXPECT_EQ(config.ChangeItemId(u"new", none, u"q"), 0);
        EXPECT_EQ(config.DelItem(none, u"x"), 0);
        EXPECT_EQ(config.DelItem(u"new", none), 0);
        EXPECT_EQ(config.DelSection(none), 0);
    }
    EXPECT_EQ(config.ChangeItemId(u"new", u"x", u""), 0);
    EXPECT_EQ(config.ChangeSectionId(u"new", u"old"), 0);
    EXPECT_EQ(config.ChangeItemId(u"old", u"x", Zn_WString(u"z")), 0);
    EXPECT_EQ(config.DelItem(u"b", u"text"), 0);
    EXPECT_EQ(config.DelSection(u"A"), 1);
    EXPECT_EQ(Dump(config), "[b] letter=한 int=8 long=70000 double=0.1 null= [old] z=y");
    EXPECT_EQ(config.DelSection(u"a"), 0);
}

TEST(Config, CopiesAndSections)
{
    struct Derived : Zn_Config {
        using Zn_Config::reserved_;
    };
    Derived config;
    config.SetItem(u"a", u"x", u"1");
    config.reserved_ = 5;
    config.lastError = 7;
    Derived copy(config);
    EXPECT_EQ(copy.reserved_, 5);
    EXPECT_EQ(copy.lastError, 0);
    EXPECT_EQ(copy.Assign(copy), 1);
    copy.SetItem(u"a", u"x", u"2");
    EXPECT_EQ(Dump(config), "[a] x=1");
    config.Clear();
    EXPECT_EQ(config.Count() + config.reserved_ + config.lastError, 0);
    EXPECT_EQ(config.Append(nullptr), 0);
    EXPECT_EQ(config.Append(&copy), 1);
    EXPECT_EQ(config.Append(&copy), 2);

    Zn_ConfigSection section;
    EXPECT_EQ(section.SetId(static_cast<const char16_t*>(nullptr)), -1);
    EXPECT_EQ(section.SetId(u"s"), 0);
    EXPECT_EQ(section.AddItem(u"x", u"1"), 0);
    EXPECT_EQ(section.AddItem(u"X", u"2"), 1);
    EXPECT_EQ(section.SetItem(u"x", u"3"), 0);
    EXPECT_EQ(section.SetItem(u"y", u"4"), 2);
    Zn_ConfigSection other;
    EXPECT_EQ(other.Assign(section), 0);
    EXPECT_EQ(other.Assign(other), 0);
    EXPECT_EQ(other.id, u"s");
    EXPECT_EQ(other.Str(2), u"4");
}

Zn_Buffer BufferOf(std::string_view bytes)
{
    Zn_Buffer buffer;
    buffer.Set(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    return buffer;
}

TEST(ConfigStream, BytesAndBack)
{
    using namespace std::string_literals;
    Zn_Config config;
    config.SetItem(u"A", u"x", u"값");
    config.SetItem(u"A", u"y", u"");
    config.AddSection(u"B");
    Zn_Buffer out = BufferOf("ab");
    EXPECT_EQ(config.SaveToStream(out), 2);
    EXPECT_EQ(out, BufferOf("ab\0\0\0\2\0\0\0\1A\0\0\0\0\3x\0=\0\x12\xAC\0\0\0\2y\0=\0\0\0\0\0\0\0\0\1B\0"s));
    Zn_Buffer stream;
    config.SaveToStream(stream);
    for (int length = 0; length <= stream.GetLength(); ++length) {
        Zn_Buffer part = stream;
        part.SetSize(length);
        Zn_Config back = Sample();
        EXPECT_EQ(back.LoadFromStream(part), length < 10 ? 0 : length < stream.GetLength() ? 1 : 2);
        EXPECT_EQ(Dump(back), length < 10                   ? ""
                              : length < 20                 ? "[A]"
                              : length < 28                 ? "[A] x=값"
                              : length < stream.GetLength() ? "[A] x=값 y="
                                                            : "[A] x=값 y= [B]");
    }
}

TEST(ConfigStream, ReadingTable)
{
    using namespace std::string_literals;
    const struct {
        const char* name;
        std::string bytes;
        const char* settings;
    } rows[] = {
        {"a section of no name has that of the one before", "\0\0\0\0\0\0\0\1A\0\0\0\0\1\0\0\0\0\0\0\0\2x\0=\0"s,
         "[A] x="},
        {"or none", "\0\0\0\1\0\0\0\0\0\0\0\2x\0=\0"s, "[] x="},
        {"a repeated section is the first", "\0\0\0\0\0\0\0\1A\0\0\0\0\0\0\0\0\1B\0\0\0\0\1\0\0\0\1b\0\0\0\0\2x\0=\0"s,
         "[A] x= [B]"},
        {"negative lengths", "\0\0\0\2\xFF\xFF\xFF\xFF\x80\0\0\0\0\0\0\2x\0=\0"s, "[] x="},
        {"negative count", "\xFF\xFF\xFF\xFF\0\0\0\1A\0"s, "[A]"},
        {"no =", "\0\0\0\2\0\0\0\1A\0\0\0\0\1x\0\0\0\0\2y\0=\0"s, "[A] y="},
        {"a text runs on to a NUL", "\0\0\0\1\0\0\0\1A\0\0\0\0\2x\0=\0a\0b\0c\0"s, "[A] x=ab"},
        {"and over a long record", "\0\0\0\2\0\0\0\1A\0\0\0\0\2x\0=\0\0A\0\0"s, "[A] x=\u4100"},
        {"a NUL in it", "\0\0\0\1\0\0\0\1A\0\0\0\0\3x\0=\0\0\0"s, "[A] x="},
        {"an entry that is not there whole", "\0\0\0\1\0\0\0\1A\0\0\0\0\3x\0=\0"s, "[A]"},
        {"a name that is not there whole",
         "\0\0\0\1\x7F\xFF\xFF\xFF"
         "A\0"s,
         ""},
    };
    for (const auto& row : rows) {
        Zn_Config config;
        const int count = config.LoadFromStream(BufferOf(row.bytes));
        EXPECT_EQ(count, config.Count()) << row.name;
        EXPECT_EQ(Dump(config), row.settings) << row.name;
    }
}

} // namespace
