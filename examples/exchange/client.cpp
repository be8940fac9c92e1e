// The client of the exchange: loads the tables, edits them with every change remembered, sends only the changes, and
// accepts or undoes them as the server answers.
//
//     exchange_client HOST PORT SAVED
//
// Writes its tables to SAVED in the end. Ends with 0 only when every answer is the one expected and the server's
// tables are its own.
#include "messages.h"

#include <cstdio>
#include <iostream>

namespace {

using namespace exchange;

class Client {
public:
    Client(const char* host, int port) : host_(Zn_WString::FromUtf8(host)), port_(port) {}

    bool Load(Message& content, Form form)
    {
        Message request;
        request.params.AddStr(u"request", u"load");
        if (!Ask(request, form, content))
            return false;
        number_ = static_cast<int>(content.params.Var(u"number").ToInteger());
        return true;
    }

    // Sends the changes of a table; the answer says what became of them.
    bool SendChanges(const Zn_Dataset& table, Form form, Message& answer)
    {
        Message request;
        request.params.AddStr(u"request", u"change");
        request.params.AddVariable(u"number", Zn_Variant(++number_));
        request.tables.AddDataset(table.GetId(), &table);
        return Ask(request, form, answer);
    }

    // As a client does that got no answer: the same change under the same number.
    bool SendAgain(const Zn_Dataset& table, Form form, Message& answer)
    {
        --number_;
        socket_.Close();
        return SendChanges(table, form, answer);
    }

private:
    // A request that gets no answer is sent again over a new connection.
    bool Ask(Message& request, Form form, Message& answer)
    {
        constexpr int kAttempts = 3, kRetries = 3, kLinger = 5;
        request.params.AddStr(u"client", u"till 7");
        const Zn_Buffer bytes = Encode(request, form, ChangesOnly);
        for (int attempt = 0; attempt < kAttempts; ++attempt, socket_.Close()) {
            if (socket_.handle == Zn_Socket::kClosed && socket_.Connect(host_, port_, kRetries, kLinger) != 0)
                continue;
            Zn_Buffer in;
            Form inForm{};
            if (socket_.SendAllData(bytes) == 0 && socket_.RecvAllData(in, kTimeoutSeconds) >= 0 &&
                Decode(answer, in, inForm) && inForm == form) {
                std::printf("    %d bytes out, %d bytes in, %s\n", bytes.GetLength(), in.GetLength(),
                            form == Form::Xml ? "XML" : "binary");
                return true;
            }
        }
        std::printf("    no answer: %s\n", ZnSysErrorStr(socket_.lastError).ToUtf8().c_str());
        return false;
    }

    Zn_WString host_;
    int port_;
    int number_ = 0;
    Zn_Socket socket_;
};

// Accepts what the server took and undoes what it refused; true when it did what is expected.
bool Settle(Zn_Dataset& table, const Message& answer, int expectedRows)
{
    Zn_Result result;
    result.Load(Zn_AString(answer.params.Var(u"result").ToString(), -1, 65001), 1, 65001);
    PrintResult(result);
    const int applied = static_cast<int>(answer.params.Var(u"applied").ToInteger());
    const bool taken = answer.params.Var(u"code").ToInteger() == 0;
    if (taken)
        table.ApplyChange();
    else
        table.Reset();
    std::printf("    the server %s; rows changed: %d\n", taken ? "took it" : "refused it: undone here too", applied);
    return applied == expectedRows && taken == (expectedRows > 0);
}

int RowOf(const Zn_Dataset& customers, const char16_t* id)
{
    return customers.LookupDataRow(u"CustomerId", id);
}

void EditCustomers(Zn_Dataset& customers)
{
    customers.SetColumn(RowOf(customers, u"14"), u"City", u"Calgary");
    customers.SetColumn(RowOf(customers, u"37"), u"City", u"Wiesbaden");
    customers.DeleteRow(RowOf(customers, u"52"));
    const int row = customers.AppendRow(1);
    customers.SetColumn(row, u"CustomerId", 60);
    customers.SetColumn(row, u"FirstName", u"지민");
    customers.SetColumn(row, u"LastName", u"김");
    customers.SetColumn(row, u"City", u"서울");
}

bool Change(Client& client, Zn_Dataset& table, Form form, int expectedRows)
{
    PrintChanges(table);
    Message answer;
    return client.SendChanges(table, form, answer) && Settle(table, answer, expectedRows);
}

bool Run(Client& client, const char* saved)
{
    std::printf("The client loads the tables\n");
    Message content;
    if (!client.Load(content, Form::Binary) || content.tables.Count() != 3)
        return false;
    for (const Zn_Dataset& table : content.tables)
        std::printf("    %-10s %5d rows\n", table.GetId().ToUtf8().c_str(), table.GetRowCount());
    Zn_Dataset& customers = *content.tables.GetSafeItem(u"customers");
    Zn_Dataset& invoices = *content.tables.GetSafeItem(u"invoices");
    Zn_Dataset old = customers; // what another client may still hold

    std::printf("It edits customers and sends the changes alone\n");
    customers.SetUpdate(1);
    EditCustomers(customers);
    const Zn_Dataset sent = customers;
    if (!Change(client, customers, Form::Binary, 4))
        return false;

    std::printf("It sends them once more, as if the answer had got lost: the same answer, nothing is applied twice\n");
    Message answer;
    Zn_Dataset again = sent;
    if (!client.SendAgain(sent, Form::Binary, answer) || !Settle(again, answer, 4))
        return false;

    std::printf("It edits an invoice and sends that as XML\n");
    invoices.SetUpdate(1);
    invoices.SetColumn(invoices.LookupDataRow(u"InvoiceId", u"4"), u"Total", 9.99);
    if (!Change(client, invoices, Form::Xml, 1))
        return false;

    std::printf("Another edit is made on the tables as they were at first\n");
    old.SetUpdate(1);
    old.SetColumn(RowOf(old, u"14"), u"City", u"Toronto");
    if (!Change(client, old, Form::Binary, 0) || old.IsUpdated())
        return false;

    std::printf("It loads the tables again\n");
    Message now;
    if (!client.Load(now, Form::Binary))
        return false;
    now.params = content.params = Zn_VariableList();
    const bool same = Encode(now, Form::Binary, AllRows) == Encode(content, Form::Binary, AllRows);
    std::printf("    the server's and the client's: %s\n", same ? "the same, byte for byte" : "DIFFERENT");
    return WriteFile(saved, Encode(content, Form::Binary, AllRows)) && same;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "exchange_client HOST PORT SAVED\n";
        return 2;
    }
    Client client(argv[1], Zn_AString(argv[2]).ToInteger());
    return Run(client, argv[3]) ? 0 : 1;
}
