// Small tables that the tests of this folder share.
#pragma once

#include "Zn_Dataset.h"

#include <ostream>
#include <string>

inline void PrintTo(const Zn_WString& text, std::ostream* out)
{
    *out << '"' << text.ToUtf8() << '"';
}

// id INT, name STRING, price DECIMAL, picture BLOB; rows 0 .. n-1 are (i, "row i", i + 0.5, absent). Tracking is on.
inline Zn_Dataset MakeTable(int rows)
{
    Zn_Dataset table(u"table", 65001);
    table.AddColumn(u"id", Zn_ColInfo::Int, 4);
    table.AddColumn(u"name", Zn_ColInfo::String, 20);
    table.AddColumn(u"price", Zn_ColInfo::Decimal, 8);
    table.AddColumn(u"picture", Zn_ColInfo::Blob);
    for (int i = 0; i < rows; ++i) {
        const int row = table.AppendRow(0);
        Zn_WString name;
        name.Format(u"row %d", i);
        table.SetColumn(row, u"id", i);
        table.SetColumn(row, u"name", name);
        table.SetColumn(row, u"price", i + 0.5);
    }
    table.SetUpdate(1);
    return table;
}

// Everything that change tracking keeps, as text: id=type of each row with its original's name, then the
// deleted rows of the buffer and the places they stood at.
inline std::string StateOf(const Zn_Dataset& table)
{
    std::string state;
    for (int row = 0; row < table.GetRowCountNF(); ++row) {
        state += table.GetColumnNFNN(row, u"name")->ToString().ToUtf8() + "=" + std::to_string(table.GetRowTypeNF(row));
        if (table.GetRowTypeNF(row) == Zn_Record::Updated && table.GetOrgIdxNF(row) >= 0)
            state += "<" + table.GetOrgColumnNFNN(row, u"name")->ToString().ToUtf8() + ">";
        state += " ";
    }
    state += "|";
    for (int n = 0; n < table.GetDelRowCount(); ++n)
        state += " " + table.GetDelColumnNN(n, u"name")->ToString().ToUtf8();
    return state;
}
