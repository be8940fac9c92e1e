#include "Zn_ErrorMsg.h"

#include "Zn_CodePage.h"
#include "foundation/byteorder.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

struct LocalePage {
    explicit LocalePage(unsigned codePage) { ZnSetLocaleCP(codePage); }
    ~LocalePage() { ZnSetLocaleCP(0); }
};

std::vector<Zn_ErrorMsgRow> Rows(unsigned codePage)
{
    std::vector<Zn_ErrorMsgRow> rows;
    for (const Zn_ErrorMsgRow* row = Zn_ErrorMsg().GetTable(codePage); row->text; ++row)
        rows.push_back(*row);
    return rows;
}

Zn_WString Filled(std::u16string_view text, const std::vector<Zn_MsgParam>& params)
{
    return Zn_ErrorMsg::Fill(text, params);
}

// Programs list the table: 324 codes in the order of default.txt, repeats included.
TEST(Zn_ErrorMsg, DefaultTableHasItsRowsInOrder)
{
    Zn_Buffer codes;
    for (const Zn_ErrorMsgRow& row : Rows(1252))
        zn::AppendBe32(codes, row.code);
    EXPECT_EQ(codes.GetLength(), 4 * 324);
    EXPECT_EQ(zn_crc32(0, codes.GetData(), codes.GetLength()), 0x173555F5u);
}

TEST(Zn_ErrorMsg, KnowsTheTextsThatProgramsCompareWith)
{
    const std::pair<std::uint32_t, const char*> known[] = {
        {0x00000000, "Succeeded."},
        {0xFFFFFFFF, "Failed."},
        {0x81000112, "Fail to alloc Memory."},
        {0x81000111, "Failed to Find the dataset"},
        {0x83B10612, "Fail to Load Commnication Driver."},
        {0x83B10001, "Fail to Load BUSINESS SERVICE [%s/%s]."},
        {0x81A50101, "ocurred DB Error."},
        {0x84A60102, "Fail to send a packet: %s."},
        {0x84A60110, "Fail to connect to specified server: %s."},
        {0x83AA0102, "[%d line]Script Grammer Fail."},
        {0x83AA1001, "No Base URL is specified for script."},
        {0x83B03001, "Fail to Load the Xml File.check the xml file which have the syntax errors."},
        {0x83B04002, "Fail to Open the local file."},
        {0x13B04005, "there isn't the Property.(%s.%s)"},
        {0x21A90000, "%s"},
        {0x21A90001, "%- 14s=[%s]"},
        {0x21A90002, "End ZnWebLsnr [result = %s]!"},
        {0x23AA0000, "Start Scrap."},
        {0x23AA0001, "End Scrap."},
        {0x23AA0002, "Stop scrap by user break."},
        {0x23AA0003, "Too many processing job. Use later, please."},
    };
    const Zn_ErrorMsg texts;
    for (const auto& [code, text] : known)
        EXPECT_STREQ(texts.GetMsgPtr(1252, static_cast<int>(code)), text) << std::hex << code;
}

TEST(Zn_ErrorMsg, TranslationsFollowTheirOriginals)
{
    const std::vector<Zn_ErrorMsgRow> originals = Rows(1252);
    const Zn_ErrorMsg texts;
    for (const auto& [codePage, count] : {std::pair{949u, 223u}, {932u, 195u}}) {
        const std::vector<Zn_ErrorMsgRow> rows = Rows(codePage);
        EXPECT_EQ(rows.size(), count);
        auto original = originals.begin();
        for (const Zn_ErrorMsgRow& row : rows) {
            original = std::find_if(original, originals.end(), [&](const auto& o) { return o.code == row.code; });
            ASSERT_NE(original, originals.end()) << codePage << ' ' << std::hex << row.code;
            const Zn_WString text = texts.GetRowText(codePage, row);
            EXPECT_EQ(text.Find(u'\uFFFD'), -1) << codePage << ' ' << std::hex << row.code;
            EXPECT_EQ(Zn_AString(text, text.GetLength(), codePage), row.text);
        }
    }
}

TEST(Zn_ErrorMsg, ReadsTablesByTheRulesOfGetMsg)
{
    const Zn_ErrorMsg texts;
    Zn_WString out;
    {
        const LocalePage korean(949);
        for (const unsigned codePage : {949u, 0u}) { // found at once, and by way of the locale
            EXPECT_EQ(texts.GetMsg(codePage, out, 0), 1);
            EXPECT_EQ(out, u"성공했습니다.");
        }
        EXPECT_EQ(texts.GetMsg(1252, out, static_cast<int>(0x83B01045)), 1);
        EXPECT_EQ(out, u"서버 인증 정보가 올바르지 않습니다.") << "a Korean row of the default table";
        EXPECT_EQ(texts.GetMsg(0, out, static_cast<int>(0x81A90100)), 0) << "no such row in Korean";
        EXPECT_TRUE(out.IsEmpty());
    }
    const LocalePage utf8(65001);
    EXPECT_EQ(texts.GetMsg(0, out, static_cast<int>(0x83AA1001)), 1);
    EXPECT_EQ(out, u"No Base URL is specified for script.") << "a language without table: the default one's first row";
    EXPECT_EQ(texts.GetMsg(949, out, 0), 1);
    EXPECT_NE(out.Find(u'\uFFFD'), -1) << "Korean bytes read in the locale's code page";
    EXPECT_EQ(texts.GetMsg(1252, out, 0x12345678), 0);
    EXPECT_TRUE(out.IsEmpty());

    EXPECT_NE(texts.GetMsgPtr(949, 0), texts.GetMsgPtr(1252, 0));
    EXPECT_EQ(texts.GetMsgPtr(0, 0), texts.GetMsgPtr(1252, 0)) << "GetMsgPtr does not ask for the locale";
    EXPECT_EQ(texts.GetMsgPtr(1252, 0x12345678), nullptr);
}

TEST(Zn_ErrorMsg, TakesTablesOfTheProgramsOwn)
{
    const Zn_ErrorMsgRow fallback[] = {{1, "one %d"}, {1, "again"}, {0, nullptr}};
    const Zn_ErrorMsgRow empty[] = {{0, nullptr}};
    const Zn_ErrorMsgLanguage languages[] = {{1, nullptr}, {2, empty}, {0, nullptr}};
    const Zn_ErrorMsg texts(fallback, languages);
    Zn_WString out(u"old");
    for (const unsigned codePage : {1u, 2u}) {
        EXPECT_EQ(texts.GetMsg(codePage, out, 1), 0) << "a language without rows";
        EXPECT_TRUE(out.IsEmpty());
        EXPECT_EQ(texts.GetMsgPtr(codePage, 1), nullptr);
        EXPECT_EQ(texts.GetText(codePage, out, 1, Zn_WStrList()), 1);
        EXPECT_EQ(out, u"one ") << "for a person the default table's text is better than none";
        EXPECT_EQ(texts.GetText(codePage, out, 2, Zn_WStrList()), 0);
        EXPECT_TRUE(out.IsEmpty());
    }
    EXPECT_EQ(texts.GetPMsg(3, out, 1, 5), 1);
    EXPECT_EQ(out, u"one 5");
    const Zn_ErrorMsg none(nullptr, nullptr);
    EXPECT_EQ(none.GetMsg(0, out, 1), 0);
}

int GetPMsgv(const Zn_ErrorMsg& texts, Zn_WString& out, int code, ...)
{
    std::va_list args;
    va_start(args, code);
    const int found = texts.GetPMsgv(1252, out, code, args);
    va_end(args);
    return found;
}

TEST(Zn_ErrorMsg, FillsTemplates)
{
    constexpr int service = static_cast<int>(0x83B10001);
    const Zn_ErrorMsg texts;
    Zn_WString out(u"old");
    EXPECT_EQ(texts.GetPMsg(1252, out, 0x12345678, u"x"), 0);
    EXPECT_EQ(GetPMsgv(texts, out, 0x12345678, u"x"), 0);
    EXPECT_EQ(out, u"old") << "an unknown code leaves the text";
    EXPECT_EQ(texts.GetPMsg(1252, out, service, u"order", Zn_WString(u"save")), 1);
    EXPECT_EQ(out, u"Fail to Load BUSINESS SERVICE [order/save].");
    EXPECT_EQ(GetPMsgv(texts, out, service, u"order", u"save"), 1);
    EXPECT_EQ(out, u"Fail to Load BUSINESS SERVICE [order/save].");
    texts.GetPMsg(1252, out, static_cast<int>(0x83AA0102), 12);
    EXPECT_EQ(out, u"[12 line]Script Grammer Fail.");
    texts.GetPMsg(1252, out, 0x21A90001, u"port", u"80");
    EXPECT_EQ(out, u"port          =[80]");

    Zn_WStrList params;
    params.Add(u"주문");
    EXPECT_EQ(texts.GetText(949, out, service, params), 1);
    EXPECT_EQ(out, u"업무 서비스를 불러오지 못했습니다 [주문/].") << "a missing parameter is empty";
    EXPECT_EQ(texts.GetText(1252, out, static_cast<int>(0x83B01200), params), 1);
    EXPECT_EQ(out, u"프로토콜 어댑터의 응답을 해석할 수 없습니다: 주문.");
}

TEST(Zn_ErrorMsg, FillsWhateverTheTemplateHolds)
{
    const struct {
        const char16_t* text;
        std::vector<Zn_MsgParam> params;
        const char16_t* filled;
    } cases[] = {
        {u"%s %s|", {u"a"}, u"a |"},
        {u"none", {u"a"}, u"none"},
        {u"%n%s", {u"a"}, u"na"},
        {u"%*s", {u"a"}, u"*s"},
        {u"100%% %d%", {7}, u"100% 7"},
        {u"%d|%5d|%-5d|%05ld", {-1, 2, 3, 4}, u"-1|    2|3    |00004"},
        {u"%x %X %u", {-1, 255, -1}, u"ffffffff FF 4294967295"},
        {u"%d", {INT64_C(5000000000)}, u"5000000000"},
        {u"%d %x", {u"a", u"b"}, u"a b"},
        {u"%s %s", {42, 2.5}, u"42 2.5"},
        {u"%.2f %f", {2.5, u"x"}, u"2.50 x"},
        {u"%c%c %o", {65, u"b", 8}, u"Ab 10"},
        {u"%.1f|%.1d|%.2s", {123, 45.5, 678}, u"123.0|45.5|678"},
        {u"%3s|%-3s|%.1s", {u"a", u"b", u"cd"}, u"  a|b  |c"},
        {u"%s", {u"%s%n"}, u"%s%n"},
        {u"%hs %ls", {"8", u"16"}, u"8 16"},
        {u"%999999999s|%.99999999f", {u"a", 1.5}, u"a|1.500000"},
        {u"%lls%", {}, u""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Filled(c.text, c.params), c.filled) << Zn_WString(c.text).ToUtf8();
}

TEST(ZnSysErrorStr, GivesTheSameTextEverywhere)
{
    for (const int err : {2,   3,    5,     6,     8,     22,    32,    50,    80,    87,    112,   123,   156,
                          183, 1921, 10013, 10014, 10037, 10047, 10048, 10051, 10054, 10060, 10061, 10093, 11003}) {
        const Zn_WString text = ZnSysErrorStr(err);
        EXPECT_NE(text, u"Unknown error.") << err;
        Zn_WString numbered;
        const char16_t* pointer = ZnSysErrorStr(err, numbered);
        EXPECT_EQ(pointer, numbered.GetText());
        EXPECT_EQ(numbered.ToUtf8(), std::to_string(err) + ":" + text.ToUtf8());
    }
    EXPECT_EQ(ZnSysErrorStr(2), u"The file was not found.");
    for (const int err : {-1, 123456789, INT32_MAX})
        EXPECT_EQ(ZnSysErrorStr(err), u"Unknown error.") << err;
}

TEST(ZnSysErrorStr, CutsToTheBuffer)
{
    char16_t buffer[8] = u"zzzzzzz";
    EXPECT_EQ(zn_syserrstr(2, nullptr, 8), nullptr);
    EXPECT_EQ(zn_syserrstr(2, buffer, 0), nullptr);
    EXPECT_EQ(buffer[0], u'z');
    EXPECT_EQ(zn_syserrstr(2, buffer, 6), buffer);
    EXPECT_EQ(Zn_WString(buffer), u"2:The");
    EXPECT_EQ(buffer[6], u'z') << "nothing behind the size is touched";
    EXPECT_EQ(zn_syserrstr(2, buffer, 1), buffer);
    EXPECT_EQ(buffer[0], 0);
}

} // namespace
