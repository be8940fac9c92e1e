// The life of a message: read tables, edit them with every change remembered, send only the changes, and apply them
// on the other side.
//
//     exchange STORE_MESSAGE FOLDER
//
// Writes changes.xml and changes.bin into the folder. Ends with 0 only when both sides hold the same tables.
#include "ZnClassLib.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace {

constexpr unsigned kUtf8 = 65001;
enum DataMode { AllRows = 0, ChangesOnly = 2 };

struct Message {
    Zn_VariableList params;
    Zn_DatasetList tables;
};

Zn_Buffer ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    Zn_Buffer buffer;
    buffer.Set(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    return buffer;
}

bool WriteFile(const std::string& path, const Zn_Buffer& buffer)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(buffer.GetData()), buffer.GetLength());
    return out.good();
}

Zn_Buffer Binary(Message& message, DataMode mode)
{
    Zn_Buffer out;
    ZnBinStreamSave(message.params, message.tables, out, mode);
    return out;
}

Zn_Buffer Xml(Message& message, DataMode mode)
{
    Zn_Buffer out;
    ZnXmlStreamSave(message.params, message.tables, out, kUtf8, nullptr, mode);
    return out;
}

void ShowRow(const Zn_Dataset& table, int row, const char* mark)
{
    std::printf("    %-8s", mark);
    for (const char16_t* column : {u"CustomerId", u"FirstName", u"LastName", u"City"})
        std::printf(" %s", table.GetColumnNN(row, column)->ToString().ToUtf8().c_str());
    if (table.GetRowType(row) == Zn_Record::Updated)
        std::printf("  (City was %s)", table.GetOrgColumnNN(row, u"City")->ToString().ToUtf8().c_str());
    std::printf("\n");
}

void ShowTables(const Message& message)
{
    for (const Zn_Dataset& table : message.tables)
        std::printf("    %-10s %5d rows, %2d columns, %d constant columns\n", table.GetId().ToUtf8().c_str(),
                    table.GetRowCount(), table.GetNormalCount(), table.GetConstCount());
}

void ShowChanges(const Zn_Dataset& table)
{
    for (int row = 0; row < table.GetRowCount(); ++row) {
        if (table.GetRowType(row) == Zn_Record::Updated)
            ShowRow(table, row, "updated");
        else if (table.GetRowType(row) == Zn_Record::Inserted)
            ShowRow(table, row, "inserted");
    }
    for (int n = 0; n < table.GetDelRowCount(); ++n)
        std::printf("    deleted  %d\n", static_cast<int>(table.GetDelColumnNN(n, u"CustomerId")->ToInteger()));
}

void Edit(Zn_Dataset& customers)
{
    customers.SetUpdate(1);
    customers.SetColumn(customers.LookupDataRow(u"CustomerId", u"14"), u"City", u"Calgary");
    customers.SetColumn(customers.LookupDataRow(u"CustomerId", u"37"), u"City", u"Wiesbaden");
    customers.DeleteRow(customers.LookupDataRow(u"CustomerId", u"52"));
    int row = customers.AppendRow(1);
    customers.SetColumn(row, u"CustomerId", 60);
    customers.SetColumn(row, u"FirstName", u"지민");
    customers.SetColumn(row, u"LastName", u"김");
    customers.SetColumn(row, u"City", u"서울");
}

// Brings the changes that arrived for a table into the table itself; rows are found by the values of a key column.
bool Apply(Zn_Dataset& table, const Zn_Dataset& changes, const Zn_WString& key)
{
    for (int n = 0; n < changes.GetDelRowCount(); ++n)
        if (table.DeleteRow(table.LookupDataRow(key, changes.GetDelColumnNN(n, key)->ToString())) != 1)
            return false;
    for (int from = 0; from < changes.GetRowCount(); ++from) {
        int to = changes.GetRowType(from) == Zn_Record::Inserted
                     ? table.AppendRow(1)
                     : table.LookupDataRow(key, changes.GetOrgColumnNN(from, key)->ToString());
        if (to < 0)
            return false;
        for (int column = 0; column < changes.GetNormalCount(); ++column)
            if (const Zn_Variant* value = changes.GetColumn(from, column))
                table.SetColumn(to, changes.GetColID(column), *value);
    }
    table.ApplyChange();
    return true;
}

// What the other side does with the changes: it has the first message, and brings it up to date.
bool Receive(Message& mirror, Message& changes)
{
    for (const Zn_Dataset& change : changes.tables)
        if (change.GetUpdateRowCount() + change.GetDelRowCount() > 0)
            if (!Apply(*mirror.tables.GetSafeItem(change.GetId()), change, u"CustomerId"))
                return false;
    return true;
}

bool Same(const char* what, const Zn_Buffer& a, const Zn_Buffer& b)
{
    bool same = a == b;
    std::printf("    %s: %s\n", what, same ? "the same, byte for byte" : "DIFFERENT");
    return same;
}

int Run(const std::string& path, const std::string& folder)
{
    const Zn_Buffer stored = ReadFile(path);
    Message server, mirrorA, mirrorB;
    if (ZnBinStreamLoad(server.params, server.tables, stored) < 1) {
        std::printf("%s can't be read\n", path.c_str());
        return 1;
    }
    std::printf("The message holds %d parameters and %d tables\n", server.params.Count(), server.tables.Count());
    ShowTables(server);

    std::printf("Customers are edited with tracking on\n");
    Zn_Dataset& customers = *server.tables.GetSafeItem(u"customers");
    Edit(customers);
    ShowChanges(customers);

    std::printf("The changes alone go out\n");
    const Zn_Buffer xml = Xml(server, ChangesOnly), binary = Binary(server, ChangesOnly);
    if (!WriteFile(folder + "/changes.xml", xml) || !WriteFile(folder + "/changes.bin", binary))
        return 1;
    std::printf("    %d bytes of XML, %d binary; the whole message has %d\n", xml.GetLength(), binary.GetLength(),
                stored.GetLength());

    std::printf("The other side reads them and brings its own tables up to date\n");
    Message fromXml, fromBinary;
    unsigned codePage = 0;
    bool good = ZnXmlStreamLoad(fromXml.params, fromXml.tables, ReadFile(folder + "/changes.xml"), codePage) > 0 &&
                ZnBinStreamLoad(fromBinary.params, fromBinary.tables, ReadFile(folder + "/changes.bin")) > 0 &&
                ZnBinStreamLoad(mirrorA.params, mirrorA.tables, stored) > 0 &&
                ZnBinStreamLoad(mirrorB.params, mirrorB.tables, stored) > 0 && Receive(mirrorA, fromXml) &&
                Receive(mirrorB, fromBinary);

    Message undone;
    undone.params = server.params;
    undone.tables = server.tables;
    undone.tables.GetSafeItem(u"customers")->Reset();
    customers.ApplyChange();
    // Compared as documents: XML does not tell a value that is absent from one that is empty, binary does.
    const Zn_Buffer here = Xml(server, AllRows);
    good = Same("sender, and the side that read XML   ", here, Xml(mirrorA, AllRows)) && good;
    good = Same("sender, and the side that read binary", here, Xml(mirrorB, AllRows)) && good;
    good = Same("the first message, and edits undone  ", stored, Binary(undone, AllRows)) && good;
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("exchange STORE_MESSAGE FOLDER\n", stderr);
        return 2;
    }
    return Run(argv[1], argv[2]);
}
