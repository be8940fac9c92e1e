#include "Zn_LogMsg.h"

#include "Zn_CodePage.h"
#include "Zn_MsgView.h"

#include <gtest/gtest.h>

namespace {

Zn_LogMsg Message(std::u16string_view text, std::u16string_view source = u"orders")
{
    Zn_LogMsg message;
    message.Set(u"2004-07-15 10:30:00", Zn_LogMsg::kError, source, static_cast<int>(0x83B04002), text);
    return message;
}

bool IsEqual(const Zn_LogMsgList& a, const Zn_LogMsgList& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

TEST(Zn_LogMsg, WritesALine)
{
    const std::pair<std::u16string_view, const char16_t*> cases[] = {{u"", u""},
                                                                     {u"a, b", u"a, b"},
                                                                     {u"\"q\" \\", u"\\\"q\\\" \\\\"},
                                                                     {u"a\r\nb\tc", u"a\\r\\nb\\u0009c"},
                                                                     {{u"\0\x7F", 2}, u"\\u0000\\u007F"},
                                                                     {u"한 \U0001F600", u"한 \U0001F600"},
                                                                     {{u"\xD800 \xDC00", 3}, u"\\uD800 \\uDC00"}};
    for (const auto& [text, field] : cases) {
        Zn_WString line(u"\"2004-07-15 10:30:00\",\"8\",\"orders\",\"0x83B04002\",\"");
        line += field;
        line += u"\"";
        EXPECT_EQ(Message(text).GetLine(), line);
    }
}

TEST(Zn_LogMsg, ReadsALine)
{
    const struct {
        const char* name;
        std::u16string_view line;
        int read;
        const char16_t* source;
        int code;
        const char16_t* text;
    } cases[] = {
        {"four fields", u"t,1,s,2", 0, u"", 0, u""},
        {"empty", u"", 0, u"", 0, u""},
        {"unquoted, decimal code", u"t,1,s,-2,x", 1, u"s", -2, u"x"},
        {"more fields", u"t,1,s,2,x,y", 1, u"s", 2, u"x"},
        {"empty fields", u",,,,", 1, u"", 0, u""},
        {"quote not closed", u"t,1,s,2,\"x, \\", 1, u"s", 2, u"x, "},
        {"text behind a quote", u"t,1,\"a\"b,0xFFFFFFFF,\"\"", 1, u"ab", -1, u""},
        {"short escapes", u"t,1,s,0x,\"\\u12 \\q\"", 1, u"s", 0, u"u12 q"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Zn_LogMsg message;
        EXPECT_EQ(message.SetLine(c.line), c.read);
        EXPECT_EQ(message.GetLevel(), c.read && c.line != u",,,," ? 1 : 0);
        EXPECT_EQ(message.GetSource(), c.source);
        EXPECT_EQ(message.GetCode(), c.code);
        EXPECT_EQ(message.GetText(), c.text);
    }
}

TEST(Zn_LogMsgList, ReadsBackWhatItWrote)
{
    Zn_LogMsgList log;
    for (const std::u16string_view text :
         {std::u16string_view(u""), std::u16string_view(u"\"a\",\\n\n\r\\"), std::u16string_view(u"\0\x1\x7F", 3),
          std::u16string_view(u"한글 日本 \U0001F600"), std::u16string_view(u"\xDC00\xD800", 2),
          std::u16string_view(u"\\u0041")})
        log.Add(Message(text, text));

    Zn_WString wide;
    EXPECT_EQ(log.Save(wide), log.Count());
    Zn_LogMsgList back;
    EXPECT_EQ(back.Load(wide.GetView(), 1), log.Count());
    EXPECT_TRUE(IsEqual(back, log));
    EXPECT_EQ(back.Load(wide.GetView(), 0), 2 * log.Count());

    for (const unsigned codePage : {65001u, 949u, 932u, 1252u, 1200u, 1201u}) {
        Zn_AString bytes;
        EXPECT_EQ(log.Save(bytes, codePage), log.Count());
        EXPECT_EQ(back.Load(bytes.GetView(), 1, codePage), log.Count());
        EXPECT_TRUE(IsEqual(back, log)) << codePage;
    }
}

TEST(Zn_LogMsgList, SkipsWhatIsNoRecord)
{
    Zn_LogMsgList log;
    EXPECT_EQ(log.Load(u"plain text\r\n\r\n\"t\",\"1\",\"s\",\"2\",\"x\"\r\n,,,", 1), 1);
    EXPECT_EQ(log[0]->GetText(), u"x");
    EXPECT_EQ(log.Load(u"", 1), 0);
}

TEST(Zn_LogMsgList, ComparesFieldByField)
{
    Zn_LogMsgHandler& handler = Zn_LogMsgHandler::Instance();
    EXPECT_STREQ(handler.GetPool().GetName(), "Zn_LogMsg");
    EXPECT_EQ(handler.GetPool().GetItemsPerBlock(), 128);
    Zn_LogMsgList log;
    log.Add(Message(u"a"));
    log.Add(Message(u"b"));
    EXPECT_EQ(log.FindItem(log[1]), 1);
    const Zn_LogMsg other = Message(u"A");
    EXPECT_EQ(log.FindItem(&other), -1);
}

TEST(Zn_MsgView, ShowsAResultInALanguage)
{
    Zn_Result result;
    result.AddMsg(0x13B04005, "file", 1, u"grid", u"color", nullptr);
    result.MarkStart();
    result.AddMsg(static_cast<int>(0x83B04009), "file", 2, nullptr);
    result.AddMsg(static_cast<int>(0x8FFF0001), "file", 3, u"a", u"b", nullptr);
    const Zn_MsgView english(result, 1252);
    EXPECT_EQ(english.GetText(),
              u"there isn't the Property.(grid.color)\nThere is no local file .\n0x8FFF0001: a, b\n");
    const Zn_MsgView korean(result, 949);
    ASSERT_EQ(korean.Count(), 3);
    EXPECT_EQ(korean.GetLine(0), u"속성이 없습니다.(grid.color)");
    const Zn_MsgView japanese(result, 932);
    EXPECT_EQ(japanese.GetLine(0), u"プロパティがありません。(grid.color)");
    EXPECT_EQ(english.GetLine(3), u"");

    EXPECT_EQ(Zn_MsgView(Zn_Result(0), 1252).Count(), 0);
    EXPECT_EQ(Zn_MsgView(Zn_Result(-1), 1252).GetText(), u"Failed.\n");
}

} // namespace
