#include "Zn_XmlDOM.h"

#include "markup/charset_declaration.h"

#include <gtest/gtest.h>

namespace {

class Opened : public Zn_XmlDOM {
public:
    using Zn_XmlDOM::FindTag_A;
    using Zn_XmlDOM::GetCharSet_A;
};

TEST(CharsetDeclaration, FindTag)
{
    struct {
        std::string_view text;
        int place;
    } rows[] = {
        {"", -2},
        {"<a>", -1},
        {"<?xml", 0},
        {"ab<?xml ", 2},
        {"ab?xml", 2},   // without "<", but nothing is left behind it
        {"ab?xml ", -1}, // and here nothing is found any more
        // The place is counted from the new start and used from the beginning.
        {"?xml  <?xml ", -1},    // the second stands 3 behind the new start: text[2] is no "<"
        {"?<ml?xml ?xml  ", -1}, // places 4 and 9: then 1 behind 8 and no "<" at 0
        {"<<<<?xml<<<<?xml", 3},
        {"<a<b ?xml  <?xml ", 2}, // found 3 behind the new start 9: text[2] is "<"
        {"?xml ?xml", -1},        // would go round for ever
    };
    for (const auto& row : rows)
        EXPECT_EQ(Opened::FindTag_A("?xml", row.text.data(), static_cast<int>(row.text.size())), row.place) << row.text;
    EXPECT_EQ(Opened::FindTag_A(nullptr, "x", 1), -2);
    EXPECT_EQ(Opened::FindTag_A("x", nullptr, 1), -2);
}

TEST(CharsetDeclaration, NameOfTheEncoding)
{
    struct {
        std::string_view text;
        int result;
        std::string_view name;
    } rows[] = {
        {R"(<?xml version="1.0" encoding="utf-8"?><a/>)", 1, "utf-8"},
        {"<?xml encoding = \r\n 'euc-kr' standalone='no'?>", 1, "euc-kr"},
        {R"(<?xml encoding='a" b'?>)", 1, "a"},
        {"<?xml encoding=utf-8?>", 1, "utf-8"},
        {"<?xml encoding?>", 1, ""},
        {"<?xml version='1.0'?>", 1, ""},
        {"<?xml version='1.0'?><a/>", 1, ""},
        {"<?xml?><?xml encoding='x'?>", 1, "x"},
        {"<a/>", 0, ""},
        {"<?xml encoding='x'", 0, ""},
        {"?xml encoding='x'?>", 0, ""},
        {"", 0, ""},
    };
    for (const auto& row : rows) {
        Zn_AString name("before");
        EXPECT_EQ(Opened::GetCharSet_A(row.text.data(), static_cast<int>(row.text.size()), name), row.result)
            << row.text;
        EXPECT_EQ(name, row.name) << row.text;
    }
    EXPECT_EQ(zn::ReadCharsetName("= utf-8\" />", 1), "utf-8");
}

TEST(CharsetDeclaration, IsXml)
{
    struct {
        std::string_view text;
        int is;
    } rows[] = {{"<?xml ?>", 1}, {"     <?xml", 1}, {"      <?xml", 0}, {"abcdef?xml", 0}, {"<a/>", 0}, {"", 0}};
    for (const auto& row : rows)
        EXPECT_EQ(Zn_XmlDOM::IsXML_A(row.text.data(), static_cast<int>(row.text.size())), row.is) << row.text;
    EXPECT_EQ(Zn_XmlDOM::IsXML_A(nullptr, 10), 0);
}

} // namespace
