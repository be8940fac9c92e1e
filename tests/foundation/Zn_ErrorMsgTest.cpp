#include "Zn_ErrorMsg.h"

#include "Zn_CodePage.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <map>

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

std::string Placeholders(const char* text)
{
    std::string all;
    for (; *text; ++text) {
        if (*text != '%')
            continue;
        const char* end = text + std::strcspn(text, "sd") + 1;
        all.append(text, end);
        text = end - 1;
    }
    return all;
}

Zn_WString Filled(std::u16string_view text, const std::vector<Zn_MsgParam>& params)
{
    return Zn_ErrorMsg::Fill(text, params);
}

// Runs of codes in the order of the default table; a code alone is a run of one.
constexpr struct {
    std::uint32_t first, last;
} kOrder[] = {
    {0x00000000, 0},          {0xFFFFFFFF, 0},          {0x83B03009, 0},          {0x81000112, 0},
    {0x81000111, 0},          {0x81000113, 0},          {0x83B10612, 0x83B10615}, {0x83B10001, 0},
    {0x83B10617, 0},          {0x83B10002, 0x83B10008}, {0x83B10010, 0x83B10014}, {0x81A50101, 0},
    {0x81A50110, 0x81A50116}, {0x81A50119, 0},          {0x81A50123, 0x81A50124}, {0x81A50126, 0},
    {0x81A50129, 0},          {0x81A50130, 0x81A50139}, {0x81A50140, 0x81A50146}, {0x84A60101, 0x84A60111},
    {0x81A90100, 0x81A90101}, {0x81A90201, 0},          {0x81A90301, 0},          {0x81A90401, 0},
    {0x81A90501, 0x81A90503}, {0x21A90000, 0x21A90002}, {0x81A90102, 0x81A90103}, {0x81A90111, 0x81A90118},
    {0x81A90131, 0x81A90139}, {0x81A90141, 0},          {0x81A90143, 0x81A90148}, {0x81A90151, 0},
    {0x23AA0000, 0x23AA0003}, {0x83AA1001, 0},          {0x83AA1001, 0},          {0x83AA1001, 0},
    {0x83AA0100, 0x83AA0118}, {0x83AA0201, 0},          {0x83AA0201, 0},          {0x83AA0201, 0},
    {0x83AA0201, 0},          {0x83AA0200, 0x83AA0205}, {0x83AA0300, 0x83AA0308}, {0x83AA0400, 0x83AA040B},
    {0x83AA0500, 0x83AA0505}, {0x13B04001, 0x13B04007}, {0x83B04001, 0x83B04003}, {0x00000065, 0},
    {0x83B03001, 0x83B03003}, {0x83B03025, 0},          {0x83B03004, 0x83B03009}, {0x83B04009, 0},
    {0x83B04010, 0x83B04015}, {0x83B04019, 0},          {0x83B04016, 0x83B04018}, {0x83B03016, 0x83B03019},
    {0x83B03020, 0x83B03024}, {0x83B03026, 0x83B03029}, {0x83B03030, 0},          {0x83B0303A, 0},
    {0x83B03031, 0},          {0x83B06000, 0},          {0x83B03033, 0x83B03035}, {0x83B0303C, 0},
    {0x83B0303B, 0},          {0x83B03036, 0x83B03039}, {0x83B03040, 0x83B03041}, {0x83B03043, 0x83B03048},
    {0x83B01020, 0x83B01022}, {0x83B03049, 0},          {0x83B03050, 0x83B03055}, {0x83B01031, 0},
    {0x83B03057, 0},          {0x83B03100, 0x83B03103}, {0x83B03110, 0},          {0x83B03120, 0},
    {0x83B03130, 0},          {0x83B03140, 0},          {0x83B03150, 0},          {0x83B03160, 0},
    {0x83B03210, 0},          {0x83B03056, 0},          {0x83B00001, 0x83B00003}, {0x83B01017, 0x83B01018},
    {0x83B01001, 0},          {0x83B01004, 0},          {0x83B01003, 0},          {0x83B01005, 0},
    {0x83B01008, 0},          {0x83B01006, 0},          {0x83B01041, 0},          {0x83B01016, 0},
    {0x83B01002, 0},          {0x83B01007, 0},          {0x83B01009, 0},          {0x83B01010, 0},
    {0x83B0101A, 0},          {0x83B01011, 0x83B01012}, {0x83B01027, 0x83B01029}, {0x83B01013, 0x83B01015},
    {0x83B01042, 0},          {0x83B01019, 0},          {0x83B01023, 0x83B01026}, {0x83B01030, 0},
    {0x83B01032, 0},          {0x83B01100, 0},          {0x83B01109, 0},          {0x83B01101, 0x83B01108},
    {0x83B01043, 0},          {0x83B01033, 0x83B01039}, {0x83B01040, 0},          {0x83B01044, 0x83B01045},
    {0x83B01200, 0},
};

TEST(Zn_ErrorMsg, DefaultTableHasItsRowsInOrder)
{
    std::vector<std::uint32_t> order;
    for (const auto& run : kOrder) {
        for (std::uint32_t code = run.first; code <= std::max(run.first, run.last); ++code) {
            order.push_back(code);
            if (code == 0xFFFFFFFF)
                break;
        }
    }
    const std::vector<Zn_ErrorMsgRow> rows = Rows(1252);
    ASSERT_EQ(rows.size(), 324u);
    ASSERT_EQ(order.size(), rows.size());
    std::map<std::uint32_t, int> modules, repeats;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ASSERT_EQ(rows[i].code, order[i]) << "row " << i;
        ++modules[rows[i].code >> 16];
        ++repeats[rows[i].code];
    }
    std::erase_if(repeats, [](const auto& entry) { return entry.second == 1; });
    using Counts = std::map<std::uint32_t, int>;
    EXPECT_EQ(repeats, (Counts{{0x83B03009, 2}, {0x83AA1001, 3}, {0x83AA0201, 5}}));
    EXPECT_EQ(modules, (Counts{{0x0000, 2},
                               {0xFFFF, 1},
                               {0x8100, 3},
                               {0x83B0, 139},
                               {0x13B0, 7},
                               {0x83B1, 18},
                               {0x81A5, 30},
                               {0x84A6, 17},
                               {0x81A9, 35},
                               {0x21A9, 3},
                               {0x83AA, 65},
                               {0x23AA, 4}}));
}

TEST(Zn_ErrorMsg, KnowsTheTextsThatProgramsCompareWith)
{
    const struct {
        std::uint32_t code;
        const char* text;
    } known[] = {
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
    for (const auto& row : known) {
        const char* text = texts.GetMsgPtr(1252, static_cast<int>(row.code));
        ASSERT_NE(text, nullptr) << std::hex << row.code;
        EXPECT_STREQ(text, row.text);
    }
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
            EXPECT_EQ(Placeholders(row.text), Placeholders(original->text)) << codePage << ' ' << std::hex << row.code;
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
    for (const int err : {2, 3, 5, 6, 8, 32, 50, 80, 87, 112, 123, 183, 10013, 10048, 10051, 10054, 10060, 10061}) {
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
