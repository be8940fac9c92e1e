#include "Zn_Buffer.h"

#include "Zn_AString.h"
#include "foundation/base64.h"
#include "foundation/memory.h"

#include <gtest/gtest.h>

#include <climits>
#include <numeric>
#include <string>
#include <vector>

namespace {

const unsigned char* Bytes(const char* text)
{
    return reinterpret_cast<const unsigned char*>(text);
}

Zn_Buffer BufferOf(std::string_view text)
{
    Zn_Buffer buffer;
    buffer.Set(Bytes(text.data()), static_cast<int>(text.size()));
    return buffer;
}

std::string TextOf(const Zn_Buffer& buffer)
{
    return {buffer.GetSpan().begin(), buffer.GetSpan().end()};
}

TEST(Buffer, CopiesShareUntilOneWrites)
{
    struct Write {
        const char* name;
        void (*act)(Zn_Buffer&);
        const char* result;
    };
    const Write writes[] = {
        {"append", [](Zn_Buffer& b) { b.Append(Bytes("xyz"), 3); }, "abcxyz"},
        {"append itself", [](Zn_Buffer& b) { b.Append(b.GetData() + 1, 2); }, "abcbc"},
        {"set to a part of itself", [](Zn_Buffer& b) { b.Set(b.GetData() + 1, 2); }, "bc"},
        {"write in place", [](Zn_Buffer& b) { b.GetSafeBuffer(0)[1] = 'X'; }, "aXc"},
        {"shrink", [](Zn_Buffer& b) { b.SetSize(2); }, "ab"},
        {"release", [](Zn_Buffer& b) { b.Release(); }, ""},
        {"set nothing", [](Zn_Buffer& b) { b.Set(nullptr, 5); }, ""},
        {"append nothing", [](Zn_Buffer& b) { b.Append(nullptr, 5), b.Append(b.GetData(), -1); }, "abc"},
    };
    for (const Write& write : writes) {
        SCOPED_TRACE(write.name);
        Zn_Buffer a = BufferOf("abc");
        Zn_Buffer b(a);
        EXPECT_EQ(a.GetData(), b.GetData());
        write.act(b);
        EXPECT_EQ(TextOf(b), write.result);
        EXPECT_EQ(TextOf(a), "abc");
        write.act(a); // now alone
        EXPECT_EQ(TextOf(a), write.result);
        EXPECT_TRUE(a == b);
    }
}

TEST(Buffer, NewBytesAreZero)
{
    Zn_Buffer buffer = BufferOf("abcdef");
    buffer.SetSize(1);
    EXPECT_EQ(buffer.AddSize(3), 1);
    EXPECT_EQ(TextOf(buffer), std::string("a\0\0\0", 4));
    unsigned char* bytes = buffer.GetSafeBuffer(6);
    EXPECT_EQ(std::accumulate(bytes, bytes + 6, 0), 'a');
    EXPECT_EQ(buffer.GetLength(), 6);
    EXPECT_EQ(buffer.GetAt(6), 0);
    EXPECT_EQ(buffer.GetAt(-1), 0);
    EXPECT_EQ(buffer.AddSize(-1), -1);
    buffer.SetSize(-1);
    EXPECT_EQ(buffer.GetLength(), 6);
    EXPECT_NE(Zn_Buffer().GetData(), nullptr);
    EXPECT_NE(Zn_Buffer().GetSafeBuffer(0), nullptr);
}

TEST(Buffer, StaysAsItWasAtTheBoundAndWithoutMemory)
{
    Zn_Buffer buffer = BufferOf("abc");
    EXPECT_EQ(buffer.AddSize(INT_MAX), -1);
    EXPECT_EQ(buffer.GetSafeBuffer(INT_MAX), nullptr);
    buffer.Reserve(INT_MAX);
    for (bool shared : {false, true}) {
        const Zn_Buffer copy = shared ? buffer : Zn_Buffer();
        const std::string large(1000, 'x');
        zn::FailAllocation(1);
        buffer.Append(Bytes(large.data()), 1000);
        EXPECT_TRUE(zn::AllocationFailed());
        zn::FailAllocation(1);
        buffer.Set(Bytes(large.data()), 1000);
        EXPECT_TRUE(zn::AllocationFailed());
        zn::FailAllocation(1);
        EXPECT_EQ(buffer.AddSize(1000), -1);
        zn::FailAllocation(0);
        EXPECT_EQ(TextOf(buffer), "abc");
    }
}

TEST(Buffer, AppendsTextInACodePage)
{
    Zn_Buffer buffer = BufferOf("<");
    buffer.AppendStr(u"\u00E9t\u00E9 rest", 3, 65001);
    buffer.AppendStr(u"\u00E9>", -1, 1252);
    buffer.AppendStr(nullptr, 3, 65001);
    EXPECT_EQ(TextOf(buffer), "<\xC3\xA9t\xC3\xA9\xE9>");
}

TEST(Base64, EncodesAndDecodes)
{
    const std::pair<std::string, const char*> rows[] = {{"", ""},
                                                        {"f", "Zg=="},
                                                        {"fo", "Zm8="},
                                                        {"foo", "Zm9v"},
                                                        {"foob", "Zm9vYg=="},
                                                        {"fooba", "Zm9vYmE="},
                                                        {"foobar", "Zm9vYmFy"},
                                                        {std::string("\0\xFF\xFB\xEF\xBE", 5), "AP/7774="}};
    for (const auto& [bytes, text] : rows) {
        const Zn_AString encoded = BufferOf(bytes).EncodeBase64();
        EXPECT_EQ(encoded.GetView(), text);
        EXPECT_EQ(TextOf(encoded.DecodeBase64()), bytes);
        std::u16string wide(zn::Base64TextSize(bytes.size()), u'.');
        zn::Base64Encode(BufferOf(bytes).GetSpan(), wide.data());
        EXPECT_EQ(wide, std::u16string(text, text + wide.size()));
    }
}

TEST(Base64, DecodesWhatOthersWrite)
{
    const std::pair<const char*, const char*> rows[] = {
        {"Zm9v\r\nYmFy", "foobar"}, {"Z m 9 v", "foo"}, {"Zm9vYg", "foob"},
        {"Zm9v=YmFy", "foo"},       {"Z", ""},          {"====", ""},
        {"\x80Zm\xFF-9_v", "foo"}};
    for (const auto& [text, bytes] : rows) {
        EXPECT_EQ(TextOf(Zn_AString(text).DecodeBase64()), bytes) << text;
        std::u16string wide(text, text + std::char_traits<char>::length(text));
        for (char16_t& ch : wide)
            ch = ch > 0x7F ? u'\u0141' : ch; // its low byte is a digit, it is none
        std::vector<unsigned char> out(zn::Base64MaxBytes(wide.size()));
        out.resize(zn::Base64Decode<char16_t>(wide, out.data()));
        EXPECT_EQ(std::string(out.begin(), out.end()), bytes) << text;
    }
}

} // namespace
