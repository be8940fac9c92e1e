// Messages that promise too much or take too long. Prefixes and mutations of messages are the fuzz targets' to replay.

#include "foundation/memory.h"
#include "messages.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <functional>
#include <new>

// All memory comes from where zn::FailAllocation lets it run out.
void* operator new(std::size_t size)
{
    void* memory = _zn_malloc(static_cast<int>(size));
    return memory ? memory : throw std::bad_alloc();
}
void operator delete(void* memory) noexcept
{
    zn_free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    zn_free(memory);
}

namespace {

void LoadAndUse(const std::string& bytes)
{
    Message message;
    if (message.LoadBinary(bytes) < 0)
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

} // namespace

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
        LoadAndUse(head + tail);
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

TEST(HostileMessage, NothingIsThrownWithoutMemory)
{
    const std::string binary = StoreFile("changes-mode2.bin"), xml = StoreFile("changes-mode2.xml");
    const std::function<void(Message&)> acts[] = {
        [&](Message& message) { message.LoadBinary(binary); },
        [&](Message& message) { message.LoadXml(xml); },
        [](Message& message) { Zn_DatasetList copy(message.tables); },
        [](Message& message) { message.params.SetStr(u"a=1 b='2' c"); },
        [](Message& message) {
            Zn_Buffer out;
            ZnBinStreamSave(message.params, message.tables, out, 1);
            ZnXmlStreamSave(message.params, message.tables, out, 949, nullptr, 1);
        },
        [](Message& message) {
            Zn_Buffer out;
            message.tables.GetSafeItem(0, 0)->SaveDataXml(out, 1, 1, 1, 65001);
            message.tables.GetSafeItem(0, 0)->LoadDataXml(out, 1);
        },
    };
    for (const auto& act : acts) {
        for (int n = 1; n == 1 || (zn::AllocationFailed() && n < 600); ++n) {
            zn::FailAllocation(0);
            Message message;
            message.LoadBinary(binary);
            zn::FailAllocation(n);
            EXPECT_NO_THROW(act(message)) << &act - acts << ' ' << n;
        }
        zn::FailAllocation(0);
    }
}
