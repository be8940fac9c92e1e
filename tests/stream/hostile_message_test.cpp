// Bytes that lie: every prefix and many mutations of the real messages, and counts that promise too much. Nothing may
// be read outside the input (the sanitizers watch), and every load ends in an answer.

#include "messages.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>

namespace {

const char* kNames[] = {"store.bin", "changes-mode1.bin", "changes-mode2.bin",
                        "store.xml", "changes-mode1.xml", "changes-mode2.xml"};

void LoadAndUse(const std::string& bytes, bool isXml)
{
    Message message;
    if ((isXml ? message.LoadXml(bytes) : message.LoadBinary(bytes)) < 0)
        return;
    for (int i = 0; i < message.tables.Count(); ++i) {
        Zn_Dataset* table = message.tables.GetSafeItem(i, 0);
        table->SetUpdate(1);
        table->SetColumn(0, 0, u"x");
        table->DeleteRow(table->GetRowCount() / 2);
        table->GetDelColumn(0, 0);
    }
    message.Binary(2);
    for (int i = 0; i < message.tables.Count(); ++i)
        message.tables.GetSafeItem(i, 0)->Reset();
}

bool IsXml(const std::string& name)
{
    return name.ends_with(".xml");
}

bool IsLong()
{
    return std::getenv("ZN_LONG_TESTS") != nullptr;
}

// The first bytes of a real message: everything that has structure is in them many times.
std::string Cut(std::string bytes)
{
    constexpr std::size_t kEnough = 6000;
    return IsLong() || bytes.size() <= kEnough ? bytes : bytes.substr(0, kEnough);
}

} // namespace

TEST(HostileMessage, EveryPrefix)
{
    for (const char* name : kNames) {
        const std::string bytes = StoreFile(name);
        const std::size_t step = IsLong() ? 1 : bytes.size() / 150 + 1;
        for (std::size_t length = 0; length < bytes.size(); length += length < 700 ? 1 : step)
            LoadAndUse(bytes.substr(0, length), IsXml(name));
    }
}

TEST(HostileMessage, Mutations)
{
    const int rounds = IsLong() ? 100000 : 1500;
    for (const char* name : kNames) {
        const std::string whole = Cut(StoreFile(name));
        std::mt19937 random(99);
        for (int round = 0; round < rounds; ++round) {
            std::string bytes = whole;
            for (unsigned edits = 1 + random() % 4; edits > 0; --edits) {
                const std::size_t at = random() % bytes.size();
                switch (random() % 4) {
                case 0:
                    bytes[at] = static_cast<char>(random());
                    break;
                case 1:
                    bytes.erase(at, 1 + random() % 9);
                    break;
                case 2:
                    bytes.insert(at, bytes.substr(random() % bytes.size(), 1 + random() % 30));
                    break;
                default:
                    bytes[at] = static_cast<char>("\0\xFF\x7F\x80<>&/"[random() % 8]);
                    break;
                }
                if (bytes.empty())
                    bytes = "<";
            }
            LoadAndUse(bytes, IsXml(name));
        }
    }
}

TEST(HostileMessage, CountsThatLie)
{
    const std::string head("\0\2\xFF\x10\x07\xD0\0\0\xFF\1\x0B\xB8\0\0\xFD\xE9\0\0\xFF\x10\x07\xD0\0\0\xFF\x08\x07\xD0"
                           "\0\1\0\1c\0\1\0\0",
                           37);
    const std::string kTails[] = {
        std::string("\x7F\xFF\xFF\xFF", 4),
        std::string("\x7F\xFF\xFF\xFF\xFF\xFF\0\1\xFF\xFF", 10),
        std::string("\0\0\0\1\0\1\0\1\xFF\xFF\0\x0D\x7F\xFF\xFF\xFF", 16),
        std::string("\0\0\0\1\0\1\0\1\xFF\xFF\0\x08\x7F\xFF", 14),
        std::string("\0\0\0\2\0\0\0\4\0\5\0\0\0\4\0\5\0\0\0\4\0\5\0\0\0\x08\0\5\0\0\0\0", 32),
        std::string("\x80\0\0\0", 4),
    };
    for (const std::string& tail : kTails)
        LoadAndUse(head + tail, false);
    EXPECT_EQ(Message().LoadBinary(std::string("\0", 1)), static_cast<int>(0x83B10209));
    EXPECT_EQ(Message().LoadBinary(std::string("\0\1\xFF\x10\x07\xD0\xFF\xFF", 8)), 0);
}

TEST(HostileMessage, FarColumnsDoNotTakeMemoryOutOfProportion)
{
    std::string xml = "<root><dataset id='d'>";
    for (int i = 0; i < 20000; ++i)
        xml += "<colinfo id='c" + std::to_string(100000 + i) + "'/>";
    for (int i = 0; i < 20000; ++i)
        xml += "<record><c119999>x</c119999></record>";
    Message message;
    EXPECT_EQ(message.LoadXml(xml), -1) << "20,000 rows of 20,000 places are refused";
    EXPECT_LT(message.tables.GetItem(u"d")->GetRowCount(), 20001);
}

TEST(HostileMessage, TimeGrowsWithTheLength)
{
    const auto repeat = [](const std::string& piece, int times) {
        std::string text;
        for (int i = 0; i < times; ++i)
            text += piece;
        return text;
    };
    const auto numbered = [](const std::string& before, const std::string& after, int times) {
        std::string text;
        for (int i = 0; i < times; ++i)
            text += before + std::to_string(1000000 + i) + after;
        return text;
    };
    const std::string kBodies[] = {
        numbered("<dataset id='d", "'/>", 30000),
        "<params>" + numbered("<param id='p", "'/>", 30000) + "</params>",
        "<dataset>" + numbered("<column id='k", "'>1</column>", 50000) + numbered("<colinfo id='c", "'/>", 50000),
        repeat("<a>", 300000),
        "<dataset><colinfo id='c'/>" + repeat("<record><c><c>", 60000),
        "<dataset>" + repeat("<record type='u'><org_record>", 60000),
    };
    for (const std::string& body : kBodies) {
        // Processor time: the machine may be busy with other things. A square would take minutes.
        const std::clock_t start = std::clock();
        Message message;
        message.LoadXml("<root>" + body);
        EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 20) << body.substr(0, 40);
    }
}
