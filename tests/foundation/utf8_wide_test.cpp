// Conversion with wide vectors gives what conversion without them gives, at every length and wherever a text is odd. On
// a processor without them what is left to see is that converting in steps gives what converting at once does.

#include "foundation/utf8_wide.h"

#include "long_tests.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using Wide = const zn::WideUtf8*;
const int kTexts = LongTests() ? 3000000 : 30000;

// All of a text, the room for each step as the caller says.
template <class Char, class View, class Convert, class Room>
std::basic_string<Char> InSteps(View text, Convert convert, Room room)
{
    std::basic_string<Char> made;
    while (!text.empty()) {
        std::basic_string<Char> step(room(), Char(0));
        const zn::Converted done = convert(text, step.data(), step.size());
        EXPECT_LE(done.written, step.size());
        made.append(step, 0, done.written);
        text.remove_prefix(done.read);
        if (done.read == 0)
            break;
    }
    return made;
}

// Some pieces of a kind stand together, as characters of a language do; in half of the runs other kinds are among them.
template <class Text, class Piece>
Text FromPieces(std::mt19937& random, Piece piece)
{
    Text text;
    for (auto runs = random() % 5; runs > 0; --runs) {
        const auto kind = static_cast<unsigned>(random());
        for (auto left = random() % (kind & 8 ? 40 : 240); left > 0; --left)
            text += piece(kind);
    }
    return text;
}

TEST(WideUtf8, DecodesAsThePlainWay)
{
    static const std::string kOdd[] = {
        "\x80",         "\xBF",     "\xC0\x80", "\xC1\xBF",         "\xC3",         "\xE0\x9F\xBF", "\xE3\x81",
        "\xED\xA0\x80", "\xED\x9F", "\xF0\x9F", "\xF4\x90\x80\x80", "\xF5\x80\x80", "\xFF",         "\xEF\xBF"};
    std::mt19937 random(2026);
    const auto decode = [](Wide wide) {
        return [wide](std::string_view text, char16_t* out, std::size_t room) {
            return zn::DecodeUtf8(text, out, room, wide);
        };
    };
    for (int i = 0; i < kTexts; ++i) {
        const auto text = FromPieces<std::string>(random, [&](unsigned kind) -> std::string {
            const char trail = static_cast<char>(0x80 + random() % 64);
            const char second = static_cast<char>(0x80 + random() % 64);
            switch (kind & 16 && random() % 8 == 0 ? random() % 6 : kind % 4) {
            case 0:
                return {static_cast<char>(random() % 128)};
            case 1:
                return {static_cast<char>(0xC2 + random() % 30), trail};
            case 2: // three bytes, now and then of a surrogate or longer than need be
                return {static_cast<char>(0xE0 + random() % 16), second, trail};
            case 3:
                return {static_cast<char>('a' + random() % 26)};
            case 4:
                return {static_cast<char>(0xF0 + random() % 5), second, trail, trail};
            default:
                return kOdd[random() % std::size(kOdd)];
            }
        });
        const auto plain = InSteps<char16_t>(std::string_view(text), decode(nullptr), [&] { return text.size() + 2; });
        const auto wide = InSteps<char16_t>(std::string_view(text), decode(zn::ownWideUtf8),
                                            [&] { return 2 + random() % (random() % 2 ? 80 : 800); });
        ASSERT_EQ(wide, plain) << testing::PrintToString(text);
    }
}

TEST(WideUtf8, EncodesAsThePlainWay)
{
    std::mt19937 random(2027);
    const auto encode = [](Wide wide) {
        return [wide](std::u16string_view text, char* out, std::size_t room) {
            return zn::EncodeUtf8(text, out, room, wide);
        };
    };
    for (int i = 0; i < kTexts; ++i) {
        const auto text = FromPieces<std::u16string>(random, [&](unsigned kind) -> std::u16string {
            switch (kind & 16 && random() % 8 == 0 ? random() % 6 : kind % 4) {
            case 0:
                return {static_cast<char16_t>(random() % 128)};
            case 1:
                return {static_cast<char16_t>(0x80 + random() % 0x780)};
            case 2:
                return {static_cast<char16_t>(0x800 + random() % 0xD000)};
            case 4:
                return {static_cast<char16_t>(0xD800 + random() % 0x400),
                        static_cast<char16_t>(0xDC00 + random() % 0x400)};
            case 5: // a lone one, rarely: both ways stop there
                return {static_cast<char16_t>(random() % 50 == 0 ? 0xD800 + random() % 0x800 : 0xE000)};
            default:
                return {static_cast<char16_t>('a' + random() % 26)};
            }
        });
        const auto plain =
            InSteps<char>(std::u16string_view(text), encode(nullptr), [&] { return 4 + 3 * text.size(); });
        const auto wide = InSteps<char>(std::u16string_view(text), encode(zn::ownWideUtf8),
                                        [&] { return 4 + random() % (random() % 2 ? 120 : 1200); });
        ASSERT_EQ(wide, plain) << testing::PrintToString(text);
    }
}

} // namespace
