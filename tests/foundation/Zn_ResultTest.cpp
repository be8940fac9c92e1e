#include "Zn_Result.h"

#include "Zn_CodePage.h"

#include <gtest/gtest.h>

namespace {

constexpr int kOpenError = static_cast<int>(0x83B04002);
constexpr int kWarning = 0x13B04005;

Zn_Result WithCodes(std::initializer_list<int> codes)
{
    Zn_Result result;
    for (const int code : codes)
        result.AddMsg(code, __FILE__, __LINE__, nullptr);
    return result;
}

Zn_Result WithParams(int code, std::initializer_list<const char16_t*> params)
{
    Zn_Result result = WithCodes({code});
    for (const char16_t* param : params)
        result.GetSafeMessage(0)->params.Add(param);
    return result;
}

TEST(Zn_Result, ReportsItsCodeOnlyWithMessages)
{
    Zn_Result result;
    result = 5;
    EXPECT_EQ(int(result), 5);
    EXPECT_EQ(result.GetLastCode(), 5);
    EXPECT_EQ(result.GetCode(), 0);
    EXPECT_EQ(result.Mask(-1), 0);
    result.AddMsg(0x23AA0001, "file", 1, nullptr);
    result = 0x1234;
    EXPECT_EQ(result.GetCode(), 0x1234);
    EXPECT_EQ(result.Mask(0xFF), 0x34);
    result.Clear();
    EXPECT_EQ(int(result), 0);
    EXPECT_EQ(result.GetMessageList(), nullptr);
}

TEST(Zn_Result, TakesParametersUpToTheFirstNull)
{
    Zn_Result result;
    const Zn_WString second(u"b");
    result.AddMsg(kOpenError, "file", 1, u"a", second, nullptr, u"c");
    result.AddMsg(-1, "file", 2);
    result.AddMsg(-2, "file", 3, u"x", NULL);
    EXPECT_EQ(int(result), -2);
    ASSERT_EQ(result.Count(), 3);
    EXPECT_EQ(result[0]->code, kOpenError);
    ASSERT_EQ(result[0]->params.Count(), 2);
    EXPECT_EQ(result[0]->params.GetItemNN(1), second);
    EXPECT_EQ(result[1]->params.Count(), 0);
    EXPECT_EQ(result[2]->params.Count(), 1);
}

TEST(Zn_Result, LooksUpMessages)
{
    const Zn_Result none;
    Zn_Result one = WithCodes({-1});
    for (const int index : {-1, 1}) {
        EXPECT_EQ(one.GetMessageW(index), nullptr);
        EXPECT_EQ(one.GetSafeMessage(index), nullptr);
        EXPECT_EQ(one[index], none[0]) << "the shared empty message";
    }
    EXPECT_EQ(one.GetMessage(0), one.GetSafeMessage(0));
}

TEST(Zn_Result, SharesItsListWithCopies)
{
    Zn_Result first = WithCodes({-1});
    {
        Zn_Result second(first);
        second.AddMsg(-2, "file", 1, nullptr);
        EXPECT_EQ(first.Count(), 2);
        EXPECT_EQ(int(first), -1) << "the code is each result's own";
        Zn_Result third;
        third = second;
        EXPECT_EQ(third.GetMessageList(), first.GetMessageList());
        const Zn_Result moved(std::move(third));
        EXPECT_EQ(moved.Count(), 2);
    }
    first.Set(first);
    EXPECT_EQ(first.Count(), 2);
    EXPECT_EQ(int(first), -1);
}

TEST(Zn_Result, AssignmentAppendsToAListThatIsThere)
{
    Zn_Result target = WithCodes({-1});
    const Zn_MessageList* list = target.GetMessageList();
    target = WithCodes({-2, -3});
    EXPECT_EQ(target.Count(), 3);
    EXPECT_EQ(target.GetMessageList(), list);
    EXPECT_EQ(int(target), -3);

    target = Zn_Result(7);
    EXPECT_EQ(target.Count(), 3) << "a source without list adds nothing";
    EXPECT_EQ(int(target), 7);

    const Zn_Result& same = target;
    target = same;
    EXPECT_EQ(target.Count(), 3);
    const Zn_Result sharing(target);
    target = sharing;
    EXPECT_EQ(target.Count(), 6) << "one list, appended to itself";

    target.Set(WithCodes({-9}));
    EXPECT_EQ(target.Count(), 1);
}

TEST(Zn_Result, FindsErrors)
{
    constexpr int mark = Zn_MessageList::kStartMark;
    struct Case {
        const char* name;
        std::vector<int> codes;
        int first, last, start, startMessage;
    } const cases[] = {
        {"mark between errors", {kOpenError, mark, -1}, kOpenError, -1, -1, -1},
        {"no error", {kWarning, 0}, 0, 0, 0, 0},
        {"no mark", {kWarning, -5, -6}, -5, -6, -5, -5},
        {"mark first", {mark, -5}, -5, -5, -5, -5},
        {"two marks", {-1, mark, -2, mark, -3}, -1, -3, -3, -3},
        {"mark last: the two searches differ", {-1, mark, -2, mark}, -1, -2, 0, -2},
        {"only mark last", {-1, mark}, -1, -1, 0, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Zn_Result result;
        for (const int code : c.codes) {
            result = 7;
            if (code == mark && result.Count() > 0)
                result.MarkStart();
            else
                result.AddMsg(code, "file", 1, nullptr);
            EXPECT_EQ(int(result), code == mark && result.Count() > 1 ? 7 : code) << "a mark leaves the code";
        }
        EXPECT_EQ(result.GetFirstError(), c.first);
        EXPECT_EQ(result.GetLastError(), c.last);
        EXPECT_EQ(result.GetStartError(), c.start);
        const Zn_Message* message = result.GetStartErrorMsg();
        EXPECT_EQ(message ? message->code : 0, c.startMessage);
    }
    Zn_Result none(-1);
    none.MarkStart();
    EXPECT_EQ(none.Count(), 0) << "a mark stands only behind messages";
    EXPECT_EQ(none.GetFirstError(), 0);
    EXPECT_EQ(none.GetLastErrorMsg(), nullptr);
    EXPECT_EQ(none.GetStartErrorMsg(), nullptr);
}

TEST(Zn_Result, WritesItsTextForms)
{
    struct Case {
        const char* name;
        Zn_Result result;
        const char* saved;
        const char16_t* messages;
        const char16_t* formatted;
        const char16_t* last;
    } const cases[] = {
        {"nothing", Zn_Result(-1), "", u"", u"", u""},
        {"no parameters", WithCodes({-1}), R"("","0","0","0","0","0","-1")", u"\"0xffffffff\",\"0\"\n",
         u"\"-1\",\"0\",\"\",\"0\",\"\"\n", u""},
        {"parameters", WithParams(kOpenError, {u"a", u""}), R"("","0","0","0","0","0","-2085601278","a""","""",)",
         u"\"0x83b04002\",\"2\",\"a\",\"\"\n", u"\"-2085601278\",\"0\",\"\",\"0\",\"a,\"\n", u"a,"},
        {"quotes and backslashes", WithParams(1, {u"\"\\"}), "\"\",\"0\",\"0\",\"0\",\"0\",\"0\",\"1\",\"\"\\\"\"\",",
         u"\"0x1\",\"1\",\"\\\"\\\\\"\n", u"\"1\",\"0\",\"\",\"0\",\"\\\"\\\\\"\n", u"\\\"\\\\"},
        {"two messages", WithCodes({-1, 2}),
         "\"\",\"0\",\"0\",\"0\",\"0\",\"0\",\"-1\"\n\"\",\"0\",\"0\",\"0\",\"0\",\"0\",\"2\"",
         u"\"0xffffffff\",\"0\"\n\"0x2\",\"0\"\n", u"\"-1\",\"0\",\"\",\"0\",\"\"\n\"2\",\"0\",\"\",\"0\",\"\"\n", u""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Zn_AString saved("old");
        const int length = c.result.Save(saved, 65001);
        EXPECT_EQ(saved, c.saved);
        EXPECT_EQ(length, saved.GetLength());
        EXPECT_EQ(c.result.GetMessageStr(), c.messages);
        EXPECT_EQ(c.result.GetMsgWithFormat(65001), c.formatted);
        EXPECT_EQ(c.result.GetLastMsg(), c.last);
    }
    EXPECT_EQ(WithCodes({-1}).GetMessageStr(1, 0), u"No Message");
    EXPECT_EQ(Zn_Result().GetMessageStr(0, 0), u"No Message");
}

TEST(Zn_Result, FormatsTheHeaderThatAnApplicationFills)
{
    Zn_Result result = WithParams(-1, {u"p"});
    result.GetSafeMessage(0)->SetHeader(1089, "form.cpp", 42);
    EXPECT_EQ(result.GetMsgWithFormat(0), u"\"-1\",\"1089\",\"form.cpp\",\"42\",\"p\"\n");
    Zn_Message copy;
    copy.Set(*result[0]);
    copy.Clear();
    EXPECT_EQ(copy.code, 0);
    EXPECT_EQ(copy.params.Count(), 0);
    EXPECT_EQ(copy.GetLine(), 42) << "clearing leaves the header";
}

TEST(Zn_Result, LoadsLines)
{
    struct Case {
        const char* name;
        const char* text;
        std::vector<int> codes;
        std::vector<std::u16string> params; // of the last message
    } const cases[] = {
        {"one", R"("","0","0","0","0","0","-1")", {-1}, {}},
        {"six fields", R"("","0","0","0","0","0")", {}, {}},
        {"null", nullptr, {}, {}},
        {"lines and blank lines", "1,2,3,4,5,6,7\r\n\r\nx\n1,2,3,4,5,6,8,a", {7, 8}, {u"a"}},
        {"quoted parameters", R"("","0","0","0","0","0","5","a,b",""," c")", {5}, {u"a,b", u"", u" c"}},
        {"code beyond 32 bits", "0,0,0,0,0,0,99999999999", {INT32_MAX}, {}},
        {"no number", "0,0,0,0,0,0,x,p", {0}, {u"p"}},
        {"UTF-8", "0,0,0,0,0,0,1,\xED\x95\x9C", {1}, {u"한"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Zn_Result result(3);
        EXPECT_EQ(result.Load(c.text, 0, 65001), static_cast<int>(c.codes.size()));
        EXPECT_EQ(int(result), 3) << "the code of the result stays";
        for (int i = 0; i < result.Count(); ++i)
            EXPECT_EQ(result[i]->code, c.codes[static_cast<std::size_t>(i)]);
        const Zn_WStrList& params = result[result.Count() - 1]->params;
        ASSERT_EQ(params.Count(), static_cast<int>(c.params.size()));
        for (int i = 0; i < params.Count(); ++i)
            EXPECT_EQ(params.GetItemNN(i), c.params[static_cast<std::size_t>(i)]);
    }
}

TEST(Zn_Result, LoadsWhatItSaved)
{
    Zn_Result result = WithParams(kOpenError, {u"orders.xml", u"", u"a,b", u"파일"});
    result.AddMsg(kWarning, "file", 1, u"x", nullptr);
    for (const unsigned codePage : {65001u, 949u}) {
        Zn_AString text;
        result.Save(text, codePage);
        Zn_Result back = WithCodes({-7});
        EXPECT_EQ(back.Load(text, 1, codePage), 2);
        EXPECT_EQ(int(back), 0) << "cleared first";
        EXPECT_EQ(back.GetMessageStr(), result.GetMessageStr());
        EXPECT_EQ(back.Load(text, 0, codePage), 4);
    }
}

TEST(Zn_Message, HandlerOrdersByCode)
{
    Zn_MessageHandler& handler = Zn_MessageHandler::Instance();
    EXPECT_STREQ(handler.GetPool().GetName(), "Zn_Message");
    EXPECT_EQ(handler.GetPool().GetItemsPerBlock(), 64);
    Zn_Message low, high;
    low.code = INT32_MIN;
    high.code = INT32_MAX;
    EXPECT_LT(handler._CompareItem(&low, &high), 0) << "no overflow";
    EXPECT_GT(handler._CompareItem(&high, &low), 0);
    low.code = 3, high.code = 5;
    EXPECT_EQ(handler._CompareItem(&high, &low), 2);

    Zn_MessageList ordered(1);
    for (const int code : {5, -1, 5, 3})
        ordered.AddMsg(code, "file", 1, nullptr);
    ASSERT_EQ(ordered.Count(), 3);
    EXPECT_EQ(ordered[0]->code, -1);
    EXPECT_EQ(ordered[2]->code, 5);
}

} // namespace
