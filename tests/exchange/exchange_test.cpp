// A thousand changes in a row over connections that break: what the client was told is what the server has.
#include "store.h"

#include "system/connection.h"

#include <array>
#include <atomic>
#include <random>

namespace {

using namespace exchange;
using namespace std::string_view_literals;

class Exchange : public NothingLeftOpen {};

Zn_Buffer StoredTables()
{
    Zn_Buffer bytes;
    EXPECT_TRUE(ReadFile(ZN_TEST_DATA "/store/store.bin", bytes));
    return bytes;
}

// Serves one connection after the other in a thread of its own.
class Server {
public:
    explicit Server(Store& store) : store_(store)
    {
        EXPECT_EQ(listener_.Create(0, kLoopback, 5), 0);
        EXPECT_EQ(thread_.CreateThread(Run, this, 0, 0), 0);
    }
    ~Server()
    {
        stop_ = true;
        Zn_Socket().Connect(u"127.0.0.1", Port(), 1, 5); // wakes it
        EXPECT_EQ(thread_.WaitThread(), 0);
    }
    int Port() { return listener_.GetLocalPort(); }

private:
    static std::uint32_t Run(void* param)
    {
        auto* self = static_cast<Server*>(param);
        while (!self->stop_) {
            Zn_WString peer;
            Zn_Socket socket;
            socket.Attach(static_cast<unsigned>(self->listener_.Accept(peer, 60)));
            Serve(self->store_, socket);
        }
        return 0;
    }

    Store& store_;
    Zn_Socket listener_;
    Zn_Thread thread_;
    std::atomic<bool> stop_ = false;
};

class RandomClient {
public:
    explicit RandomClient(int port) : port_(port)
    {
        Form form{};
        EXPECT_TRUE(Decode(content_, StoredTables(), form));
        Customers().SetUpdate(1);
    }

    Zn_Dataset& Customers() { return *content_.tables.GetSafeItem(u"customers"); }
    int Accepted() const { return accepted_; }
    int Broken() const { return broken_; }

    // One change, sent until it is answered.
    void Exchange()
    {
        Edit();
        Message request, answer;
        request.params.AddStr(u"request", u"change");
        request.params.AddStr(u"client", u"test");
        request.params.AddVariable(u"number", Zn_Variant(++number_));
        request.tables.AddDataset(u"customers", &Customers());
        const bool spoiled = Below(10) == 0;
        if (spoiled)
            Spoil(*request.tables.GetSafeItem(u"customers"));
        const Form form = Below(2) == 0 ? Form::Xml : Form::Binary;
        const Zn_Buffer bytes = Encode(request, form, ChangesOnly);
        int attempts = 0;
        while (!Ask(bytes, answer))
            ASSERT_LT(++attempts, 100);
        const bool taken = answer.params.Var(u"code").ToInteger() == 0;
        ASSERT_EQ(taken, !spoiled);
        accepted_ += taken;
        if (taken)
            Customers().ApplyChange();
        else
            Customers().Reset();
    }

private:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    void Edit()
    {
        Zn_Dataset& table = Customers();
        for (int n = 1 + Below(3); n > 0; --n) {
            const int row = Below(table.GetRowCount());
            const bool isNormal = table.GetRowType(row) == Zn_Record::Normal;
            const Zn_WString text = Zn_WString::FromUtf8("Straße " + std::to_string(random_()));
            switch (Below(4)) {
            case 0:
                table.SetColumn(table.AppendRow(1), u"CustomerId", ++lastId_);
                break;
            case 1:
                if (isNormal && table.GetRowCount() > 40)
                    table.DeleteRow(row);
                break;
            default:
                table.SetColumn(row, u"Address", text);
            }
        }
    }

    // Makes the change one that the server must refuse.
    static void Spoil(Zn_Dataset& table)
    {
        table.SetUpdate(1);
        table.SetColumn(table.AppendRow(1), u"CustomerId", 60'000);
        table.SetColumn(table.AppendRow(1), u"CustomerId", 60'000);
    }

    // The bytes of a message as frames of random lengths.
    Zn_Buffer FramesOf(const Zn_Buffer& message)
    {
        Zn_Buffer frames;
        for (int at = 0; at < message.GetLength() || at == 0;) {
            const int length = std::min(message.GetLength() - at, Below(2000));
            const int more = at + length < message.GetLength() ? 1 + Below(60'000) : 0;
            const std::array<int, 6> head = {0, 0, length >> 8, length, more >> 8, more};
            for (const int byte : head) {
                const auto unit = static_cast<unsigned char>(byte);
                frames.Append(&unit, 1);
            }
            frames.Append(message.GetData() + at, length);
            at += length;
            if (more == 0)
                break;
        }
        return frames;
    }

    bool Send(const Zn_Buffer& bytes, int length)
    {
        for (int at = 0; at < length;) {
            Zn_Buffer piece;
            piece.Set(bytes.GetData() + at, std::min(length - at, 1 + Below(500)));
            if (socket_.SendPacket(piece) != 0)
                return false;
            at += piece.GetLength();
        }
        return true;
    }

    // Asks; at times breaks off in the middle of the request, before the answer or within it.
    bool Ask(const Zn_Buffer& message, Message& answer)
    {
        if (socket_.handle == Zn_Socket::kClosed) {
            EXPECT_EQ(socket_.Connect(u"127.0.0.1", port_, 3, Below(2) * 5), 0);
        }
        const Zn_Buffer frames = FramesOf(message);
        const int end = Below(10);
        if (end == 0)
            Send(frames, Below(frames.GetLength()));
        else if (Send(frames, frames.GetLength()) && end > 1)
            return Receive(answer, end == 2);
        return Break();
    }

    bool Receive(Message& answer, bool breaksOff)
    {
        Zn_Buffer in;
        if (breaksOff) {
            socket_.RecvPacket(in, 1 + Below(20), 10);
            return Break();
        }
        Form form{};
        const int length = socket_.RecvAllData(in, 10);
        EXPECT_GE(length, 0);
        return length >= 0 && Decode(answer, in, form);
    }

    bool Break()
    {
        ++broken_;
        socket_.Close();
        return false;
    }

    std::mt19937 random_{20260401};
    int port_;
    Zn_Socket socket_;
    Message content_;
    int number_ = 0;
    int accepted_ = 0;
    int broken_ = 0;
    int lastId_ = 1000;
};

int ItemsInUse()
{
    return Zn_RecordHandler::Instance().GetPool().GetUsedCount() +
           Zn_VariantHandler::Instance().GetPool().GetUsedCount() +
           Zn_DatasetHandler::Instance().GetPool().GetUsedCount() +
           Zn_VariableHandler::Instance().GetPool().GetUsedCount();
}

} // namespace

TEST_F(Exchange, AThousandChangesOverConnectionsThatBreak)
{
    const int before = ItemsInUse();
    {
        Store store;
        store.SetQuiet();
        ASSERT_TRUE(store.Load(StoredTables()));
        Server server(store);
        RandomClient client(server.Port());
        for (int i = 0; i < 1000 && !HasFatalFailure(); ++i)
            client.Exchange();
        EXPECT_GT(client.Broken(), 200);
        EXPECT_GT(client.Accepted(), 800);
        EXPECT_EQ(store.AppliedRequests(), client.Accepted());

        Message kept;
        Form form{};
        ASSERT_TRUE(Decode(kept, store.Save(), form));
        // As documents: XML does not tell a value that is absent from one that is empty.
        Zn_Buffer here, there;
        client.Customers().SaveDataXml(here, 0, 1, AllRows, 65001);
        kept.tables.GetSafeItem(u"customers")->SaveDataXml(there, 0, 1, AllRows, 65001);
        EXPECT_TRUE(here == there);
    }
    EXPECT_EQ(ItemsInUse(), before);
}

TEST_F(Exchange, RequestsThatMakeNoSense)
{
    Store store;
    store.SetQuiet();
    ASSERT_TRUE(store.Load(StoredTables()));
    const Zn_Buffer before = store.Save();
    const auto ask = [&](const char16_t* what, int number, const Zn_Dataset* table) {
        Message request;
        request.params.AddStr(u"request", what);
        request.params.AddVariable(u"number", Zn_Variant(number));
        if (table)
            request.tables.AddDataset(table->GetId(), table);
        return store.Answer(request).params.Var(u"code").ToInteger();
    };
    Zn_Dataset unknown(u"nobody", 65001), customers(u"customers", 65001);
    for (Zn_Dataset* table : {&unknown, &customers}) {
        table->AddColumn(u"CustomerId", Zn_ColInfo::Int, 4);
        table->SetUpdate(1);
        table->SetColumn(table->AppendRow(1), u"CustomerId", 1); // a key that is there
    }
    EXPECT_LT(ask(u"", 1, nullptr), 0);
    EXPECT_LT(ask(u"erase", 1, nullptr), 0);
    EXPECT_LT(ask(u"change", 0, nullptr), 0);
    EXPECT_LT(ask(u"change", 2, nullptr), 0);
    EXPECT_LT(ask(u"change", 1, &unknown), 0);
    EXPECT_LT(ask(u"change", 2, &customers), 0);
    EXPECT_EQ(ask(u"change", 3, nullptr), 0);
    EXPECT_EQ(store.AppliedRequests(), 1);
    EXPECT_TRUE(store.Save() == before);
}

TEST_F(Exchange, BytesThatAreNoMessageEndTheConnection)
{
    Store store;
    store.SetQuiet();
    ASSERT_TRUE(store.Load(StoredTables()));
    Server server(store);
    for (const std::string_view bytes : {""sv, "\0\0"sv, "<"sv, "<nothing/>"sv}) {
        Zn_Socket socket;
        Zn_Buffer in;
        ASSERT_EQ(socket.Connect(u"127.0.0.1", server.Port(), 3, 5), 0);
        ASSERT_EQ(socket.SendAllData(BytesOf(bytes)), 0);
        EXPECT_EQ(socket.RecvAllData(in, 10), Zn_Socket::NoLength) << bytes;
    }
}
