// The binary record of variants: its bytes, and where they are cut off. Any other bytes: fuzz/variant.cpp.
#include "Zn_Variant.h"

#include "values/variant_kinds.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::string_literals;

constexpr unsigned kUtf8 = 65001;

std::string Saved(const Zn_Variant& value, unsigned codePage = kUtf8)
{
    Zn_Buffer buffer = Bytes("##");
    const int end = value.Save(buffer, codePage);
    EXPECT_EQ(end, buffer.GetLength());
    EXPECT_EQ(View(buffer).substr(0, 2), "##") << "appended";
    return std::string(View(buffer).substr(2));
}

struct Record {
    const char* name;
    Zn_Variant value;
    std::string bytes;
    const char* loaded; // the text of what is read back
};

std::vector<Record> Records()
{
    Zn_VariantList list;
    list.Add(Zn_Variant(1));
    Zn_Variant object;
    object.type = Zn_Variant::Object;
    Zn_Variant relabelled(Zn_DateTime(2004, 7, 15, 0, 0, 0));
    relabelled.ChangeType(Zn_Variant::String);
    return {
        {"empty", Zn_Variant(), "\0\0"s, ""},
        {"null", OfType(1), "\0\1"s, ""},
        {"unknown", OfType(0x1234), "\x12\x34", ""},
        {"integer", Zn_Variant(0x01020304), "\0\3\1\2\3\4"s, "16909060"},
        {"negative integer", Zn_Variant(-2), "\0\3\xFF\xFF\xFF\xFE"s, "-2"},
        {"decimal", Zn_Variant(-1.5), "\0\5\xBF\xF8\0\0\0\0\0\0"s, "-1.5"},
        // The low word is written where the high one is read.
        {"amount", Zn_Variant(Zn_Currency::FromRaw(0x0102030405060708)), "\0\6\5\6\7\x08\0\0\0\0"s,
         "36198455099103.6416"},
        {"text", Zn_Variant(u"abc"), "\0\x08\0\3abc"s, "abc"},
        {"wide text", Zn_Variant(u"\u00E9"), "\0\x08\0\2\xC3\xA9"s, "\xC3\xA9"},
        {"no text", Zn_Variant(u""), "\0\x08\0\0"s, ""},
        {"date under the code of text", relabelled, "\0\x08\0\0"s, ""},
        {"date", Zn_Variant(Zn_DateTime(2004, 7, 15, 0, 0, 0)),
         "\0\7\0\x08"
         "01040604"s,
         "-0011106"},
        {"bytes", Zn_Variant(Bytes("\0\1"s)), "\0\x0D\0\0\0\2\0\1"s, "[binary]"},
        {"no bytes", Zn_Variant(Bytes("")), "\0\x0D\0\0\0\0"s, "[binary]"},
        {"array", Zn_Variant(list), "\x20\0"s, "91]"},
        {"object", object, "\x40\0"s, ""},
    };
}

TEST(Zn_VariantRecord, BytesOfEachKind)
{
    for (const Record& record : Records()) {
        SCOPED_TRACE(record.name);
        EXPECT_EQ(Saved(record.value), record.bytes);
        const Zn_Buffer buffer = Bytes("##" + record.bytes + "#");
        const int end = 2 + static_cast<int>(record.bytes.size());
        Zn_Variant whole(u"old"), payload(u"old");
        EXPECT_EQ(whole.Load(buffer, 2, kUtf8), end);
        EXPECT_EQ(payload.Load(static_cast<short>(record.value.type), buffer, 4, kUtf8), end);
        for (const Zn_Variant* loaded : {&whole, &payload}) {
            EXPECT_EQ(loaded->type, record.value.type);
            EXPECT_EQ(loaded->ToString().ToUtf8(), record.loaded);
        }
    }
    EXPECT_EQ(Saved(Zn_Variant(u"\u00E9"), 1252), "\0\x08\0\1\xE9"s);
}

TEST(Zn_VariantRecord, DateKeepsItsText)
{
    const std::string bytes = "\0\7\0\4"s + "2004";
    Zn_Variant date;
    EXPECT_EQ(date.Load(Bytes(bytes), 0, kUtf8), 8);
    EXPECT_EQ(*date.GetConstStr(), u"2004");
    EXPECT_EQ(date.ToDateTime().GetStored(), 0.0);
    EXPECT_EQ(Saved(Zn_Variant(date)), bytes);
    *date.GetDateTime() = Zn_DateTime(2.0);
    EXPECT_EQ(date.ToInteger(), 2);
}

// A record cut anywhere is refused; so is one whose type ends the buffer, even where nothing should follow.
TEST(Zn_VariantRecord, EveryPrefix)
{
    for (const Record& record : Records()) {
        for (std::size_t length = 0; length <= record.bytes.size(); ++length) {
            SCOPED_TRACE(testing::Message() << record.name << " cut to " << length);
            const Zn_Buffer buffer = Bytes(std::string_view(record.bytes).substr(0, length));
            Zn_Variant loaded(u"old");
            const bool whole = length == record.bytes.size() && length > 2;
            EXPECT_EQ(loaded.Load(buffer, 0, kUtf8), whole ? static_cast<int>(length) : -1);
            EXPECT_EQ(loaded.type, length < 2 ? 0 : record.value.type);
            if (!whole) {
                EXPECT_EQ(loaded.GetConstStr()->GetLength() + loaded.GetConstBinary()->GetLength(), 0);
                EXPECT_EQ(loaded.ToInteger(), 0);
            }
        }
    }
    Zn_Variant loaded;
    EXPECT_EQ(loaded.Load(Bytes("\0\1#"s), 0, kUtf8), 2);
    EXPECT_EQ(loaded.Load(1, Bytes("\0\1#"s), 3, kUtf8), -1);
    EXPECT_EQ(loaded.type, 0) << "nothing was there, not even a type";
}

TEST(Zn_VariantRecord, LengthsAndOffsetsOutOfBounds)
{
    for (const std::string& bytes : {"\0\x08\0\4abc"s, "\0\x08\xFF\xFFxyz"s, "\0\7\x80\0xyz"s, "\0\x0D\0\0\0\4abc"s,
                                     "\0\x0D\xFF\xFF\xFF\xFFxyz"s, "\0\x0D\x7F\xFF\xFF\xFFxyz"s}) {
        Zn_Variant loaded(5);
        EXPECT_EQ(loaded.Load(Bytes(bytes), 0, kUtf8), -1);
        EXPECT_EQ(loaded.type, bytes[1]) << "left behind";
    }
    for (const int offset : {-1, INT32_MAX, INT32_MIN}) {
        Zn_Variant loaded(5);
        EXPECT_EQ(loaded.Load(Bytes("\0\3\0\0\0\1"s), offset, kUtf8), -1);
        EXPECT_EQ(loaded.type, 0);
        EXPECT_EQ(loaded.Load(3, Bytes("\0\3\0\0\0\1"s), offset, kUtf8), -1);
    }
    Zn_Variant own(Bytes("\0\3\0\0\0\5"s));
    EXPECT_EQ(own.Load(*own.GetBinary(), 0, kUtf8), 6);
    EXPECT_EQ(own.ToInteger(), 5);
}

TEST(Zn_VariantRecord, LongTextKeepsTheLowSixteenBitsOfItsLength)
{
    for (const int length : {32767, 32768, 65535, 65536, 65538}) {
        const std::u16string text(static_cast<std::size_t>(length), u'x');
        const std::string bytes = Saved(Zn_Variant(text));
        const int count = length & 0xFFFF;
        ASSERT_EQ(bytes.size(), static_cast<std::size_t>(4 + count));
        Zn_Variant loaded;
        EXPECT_EQ(loaded.Load(Bytes(bytes), 0, kUtf8), count < 32768 ? 4 + count : -1) << length;
    }
}

} // namespace
