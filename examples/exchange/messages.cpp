#include "messages.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace exchange {

namespace {

constexpr unsigned kUtf8 = 65001;

std::string TextOf(const Zn_Variant* value)
{
    return value->ToString().ToUtf8();
}

void PrintUpdated(const Zn_Dataset& table, int row, const Zn_WString& key)
{
    std::printf("    updated  %s:", TextOf(table.GetOrgColumnNN(row, key)).c_str());
    for (int column = 0; column < table.GetNormalCount(); ++column) {
        const std::string before = TextOf(table.GetOrgColumnNN(row, column));
        const std::string now = TextOf(table.GetColumnNN(row, column));
        if (before != now)
            std::printf(" %s %s -> %s", table.GetColID(column).ToUtf8().c_str(), before.c_str(), now.c_str());
    }
    std::printf("\n");
}

} // namespace

Zn_Buffer Encode(Message& message, Form form, DataMode mode)
{
    Zn_Buffer bytes;
    if (form == Form::Xml)
        ZnXmlStreamSave(message.params, message.tables, bytes, kUtf8, nullptr, mode);
    else
        ZnBinStreamSave(message.params, message.tables, bytes, mode);
    return bytes;
}

bool Decode(Message& message, const Zn_Buffer& bytes, Form& form)
{
    form = bytes.GetAt(0) == '<' ? Form::Xml : Form::Binary;
    unsigned codePage = 0;
    const int tables = form == Form::Xml ? ZnXmlStreamLoad(message.params, message.tables, bytes, codePage)
                                         : ZnBinStreamLoad(message.params, message.tables, bytes);
    return tables >= 0;
}

Zn_WString KeyOf(const Zn_Dataset& table)
{
    static const struct {
        const char16_t* table;
        const char16_t* column;
    } keys[] = {{u"customers", u"CustomerId"}, {u"invoices", u"InvoiceId"}, {u"lines", u"InvoiceLineId"}};
    for (const auto& key : keys) {
        if (table.GetId() == key.table)
            return key.column;
    }
    return {};
}

int CountChanges(const Zn_Dataset& table)
{
    return table.GetUpdateRowCount() + table.GetDelRowCount();
}

void PrintChanges(const Zn_Dataset& table)
{
    const Zn_WString key = KeyOf(table);
    for (int row = 0; row < table.GetRowCount(); ++row) {
        if (table.GetRowType(row) == Zn_Record::Updated)
            PrintUpdated(table, row, key);
        else if (table.GetRowType(row) == Zn_Record::Inserted)
            std::printf("    inserted %s\n", TextOf(table.GetColumnNN(row, key)).c_str());
    }
    for (int n = 0; n < table.GetDelRowCount(); ++n)
        std::printf("    deleted  %s\n", TextOf(table.GetDelColumnNN(n, key)).c_str());
}

void PrintResult(const Zn_Result& result)
{
    const Zn_MsgView view(result);
    for (int i = 0; i < view.Count(); ++i) {
        std::string about;
        for (const Zn_WString& param : result[i]->params)
            about += (about.empty() ? "" : ", ") + param.ToUtf8();
        std::printf("    %s (%s)\n", view.GetLine(i).ToUtf8().c_str(), about.c_str());
    }
}

bool ReadFile(const char* path, Zn_Buffer& bytes)
{
    std::ifstream in(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    bytes.Set(reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    return in.good();
}

bool WriteFile(const char* path, const Zn_Buffer& bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetLength());
    return out.good();
}

} // namespace exchange
