// The program that makes the message tables refuses every row that could harm or mislead.
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace {

std::string Scratch(const char* name)
{
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    return std::string(ZN_SCRATCH "/") + test->name() + '_' + name; // the tests may run side by side
}

void Write(const std::string& name, const std::string& text)
{
    std::ofstream(name, std::ios::binary) << text;
}

std::string Read(const std::string& name)
{
    std::stringstream text;
    text << std::ifstream(name, std::ios::binary).rdbuf();
    return text.str();
}

// What the program says; empty when it wrote the tables.
std::string Make(const std::string& original, const std::string& translation)
{
    const std::string out = Scratch("out.cpp"), errors = Scratch("errors"), first = Scratch("a.txt"),
                      second = Scratch("b.txt");
    Write(out, "old");
    Write(first, original);
    Write(second, translation);
    const std::string command = ZN_MAKE_TABLES " " + out + ' ' + first + " 1252 " + second + " 949 2> " + errors;
    const int status = std::system(command.c_str());
    const std::string said = Read(errors);
    EXPECT_EQ(status == 0, said.empty());
    EXPECT_EQ(Read(out) == "old", !said.empty());
    return said;
}

TEST(MessageTables, TakesGoodRows)
{
    EXPECT_EQ(Make("# comment\n\n00000001 %s of %- 14s 100%%\r\n00000001 again\n00000002@949 \xED\x95\x9C\n",
                   "00000001 %s: %- 14s\n00000001 \xED\x95\x9C \"\\\n"),
              "");
    const std::string made = Read(Scratch("out.cpp"));
    for (const char* part : {"{0x00000001u, \"%s of %- 14s 100%%\"}", "{0x00000002u, \"\\307\\321\"}",
                             "{0x00000001u, \"\\307\\321 \\\"\\\\\"}", "{1252, kDefaultTable}", "{949, kTable949}"})
        EXPECT_NE(made.find(part), made.npos) << part;
}

TEST(MessageTables, RefusesBadRows)
{
    const struct {
        const char* original;
        const char* translation;
        const char* says;
    } cases[] = {
        {"1 short code\n", "", "a.txt:1: a bad code"},
        {"0000000G no digit\n", "", "a bad code"},
        {"000000010 long\n", "", "a bad code"},
        {"-0000001 sign\n", "", "a bad code"},
        {"00000001@x page\n", "", "a bad code page"},
        {"00000001@4 \xED\x95\x9C\n", "", "no converter"},
        {"00000001\n", "", "without text"},
        {"00000001 \n", "", "without text"},
        {"00000001 %n\n", "", "placeholder \"%n\""},
        {"00000001 %*d\n", "", "placeholder \"%*\""},
        {"00000001 %f\n", "", "placeholder \"%f\""},
        {"00000001 %ld\n", "", "placeholder \"%ld\""},
        {"00000001 %99999s\n", "", "placeholder"},
        {"00000001 %\n", "", "placeholder \"%\""},
        {"00000001 \xED\x95\n", "", "not UTF-8"},
        {"00000001 \xED\x95\x9C\n", "", "code page 1252"},
        {"# nothing\n", "", "no rows"},
        {"00000001 %s %d\n", "00000001 %d %s\n", "b.txt:1: the original's placeholders are \"%s%d\""},
        {"00000001 %s\n", "00000001 none\n", "placeholders"},
        {"00000001 a\n00000002 b\n", "00000002 b\n00000001 a\n", "b.txt:2: no original"},
        {"00000001 a\n", "00000001 a\n00000001 b\n", "no original"},
        {"00000001 a\n", "00000003 c\n", "no original"},
        {"00000001 a\n", "00000001 \xEC\x8D\xA1 \xE2\x98\x83\n", "code page 949"},
    };
    for (const auto& c : cases) {
        const std::string said = Make(c.original, c.translation);
        EXPECT_NE(said.find(c.says), said.npos) << c.original << c.translation << said;
    }
}

} // namespace
