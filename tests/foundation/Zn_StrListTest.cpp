#include "Zn_StrList.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace {

struct ParseRow {
    const char* name;
    std::string text;
    int trim, skipEmpty, keepQuoted, unquote, limit;
    std::vector<std::string> pieces;
};

// Split at "," and ";" with the backslash as escape.
const ParseRow kParseRows[] = {
    {"nothing", "", 0, 0, 0, 0, 0, {}},
    {"one piece", "name", 0, 0, 0, 0, 0, {"name"}},
    {"any separator", "a,b;c", 0, 0, 0, 0, 0, {"a", "b", "c"}},
    {"empty pieces", ",a,,b,", 0, 0, 0, 0, 0, {"", "a", "", "b", ""}},
    {"empty pieces dropped", ",a,,b,", 0, 1, 0, 0, 0, {"a", "b"}},
    {"white space", " a , b c ,\t", 0, 0, 0, 0, 0, {" a ", " b c ", "\t"}},
    {"trimmed", " a , b c ,\t", 1, 0, 0, 0, 0, {"a", "b c", ""}},
    {"trimmed and dropped", " a , ,\t", 1, 1, 0, 0, 0, {"a"}},
    {"escapes", "a\\,b,\\\\,\\n", 0, 0, 0, 0, 0, {"a,b", "\\", "n"}},
    {"escape at the end", "a\\", 0, 0, 0, 0, 0, {"a\\"}},
    {"escaped blanks stay", "\\ a\\  ,b", 1, 0, 0, 0, 0, {" a ", "b"}},
    {"quotes are plain", "'a,b'", 0, 0, 0, 0, 0, {"'a", "b'"}},
    {"quoted runs", "x='a,b' c,\"d;'\"", 0, 0, 1, 0, 0, {"x='a,b' c", "\"d;'\""}},
    {"lone quotes are plain", "it's,\"b", 0, 0, 1, 0, 0, {"it's", "\"b"}},
    {"escaped quote in a run", "'a\\',b',c", 0, 0, 1, 0, 0, {"'a',b'", "c"}},
    {"escaped quotes start no run", "\\'a,b'", 0, 0, 1, 0, 0, {"'a", "b'"}},
    {"unquoted", "\"a,b\", 'c ' ,d'e'", 1, 0, 1, 1, 0, {"a,b", "c ", "d'e'"}},
    {"unquoted, runs end with their piece", "'a,b','c'", 0, 0, 0, 1, 0, {"'a", "b'", "c"}},
    {"a field and an empty run", "\"-1\",\"p\"\"\",", 0, 0, 1, 1, 0, {"-1", "p", ""}},
    {"empty quotes are a piece", "'',,a", 0, 1, 1, 1, 0, {"", "a"}},
    {"limit", "a,b,c", 0, 0, 0, 0, 2, {"a", "b,c"}},
    {"limit above the count", "a,b", 0, 0, 0, 0, INT_MAX, {"a", "b"}},
    {"limit counts what is kept", ",a,,;b,c", 0, 1, 0, 0, 2, {"a", "b,c"}},
    {"limit, nothing left", "a,,", 0, 1, 0, 0, 2, {"a"}},
};

template <class List, class String, class Char>
void CheckParse(const ParseRow& row)
{
    const auto widen = [](std::string_view text) { return std::basic_string<Char>(text.begin(), text.end()); };
    const auto separators = widen(",;");
    List list;
    list.Add(String());
    const int count = list.Parse(widen(row.text).c_str(), separators.c_str(), Char('\\'), row.trim, row.skipEmpty,
                                 row.keepQuoted, row.unquote, row.limit);
    EXPECT_EQ(count, list.Count());
    ASSERT_EQ(list.Count(), static_cast<int>(row.pieces.size()) + 1);
    for (int i = 1; i < list.Count(); ++i)
        EXPECT_EQ(list.GetItemNN(i), widen(row.pieces[static_cast<std::size_t>(i - 1)]).c_str()) << i;
}

TEST(StrList, Parse)
{
    for (const ParseRow& row : kParseRows) {
        SCOPED_TRACE(row.name);
        CheckParse<Zn_WStrList, Zn_WString, char16_t>(row);
        CheckParse<Zn_AStrList, Zn_AString, char>(row);
    }
}

TEST(StrList, ParsesManyLoneQuotesInLinearTime)
{
    std::string text = "'";
    for (int i = 0; i < 200000; ++i)
        text += i % 2 ? "\"," : "\\',";
    Zn_AStrList list;
    EXPECT_EQ(list.Parse(text, ",", '\\', 1, 0, 0, 1), 200001);
}

TEST(StrList, KeepsItsOwnCopies)
{
    Zn_WStrList list;
    Zn_WString text(u"a");
    EXPECT_EQ(list.Add(text), 0);
    text += u"b";
    EXPECT_EQ(list.Add(u"xyz", 2), 1);
    EXPECT_EQ(list.Append(nullptr), 2);
    EXPECT_EQ(list.Append(&list), 4);
    list.GetSafeItem(2)->Set(u"c");
    EXPECT_EQ(*list.GetItem(0), u"a");
    EXPECT_EQ(*list.GetItem(2), u"c");
    EXPECT_EQ(list.GetItem(4), nullptr);
    EXPECT_EQ(list.GetSafeItem(-1), nullptr);
    EXPECT_EQ(&list.GetItemNN(4), &list.GetItemNN(-1));
    EXPECT_EQ(list.Delete(1, 9), 3);
    EXPECT_EQ(list.Delete(1), 0);
    EXPECT_EQ(list.Count(), 1);
}

} // namespace
