// Uses a little of each floor of the installed library; ends with 0 when the answers are right.
#include "ZnClassLib.h"

#include <cstdio>

int main()
{
    Zn_Dataset cities(u"cities", 0);
    cities.AddColumn(u"Name", Zn_ColInfo::String, 40);
    cities.AddColumn(u"People", Zn_ColInfo::Int, 4);
    cities.SetUpdate(1);
    int row = cities.AppendRow(1);
    cities.SetColumn(row, u"Name", Zn_Variant(u"서울"));
    cities.SetColumn(row, u"People", Zn_Variant(9668000));

    Zn_VariableList sent;
    sent.AddStr(u"user", u"kim");
    Zn_DatasetList tables;
    tables.AddDataset(u"cities", &cities);
    Zn_Buffer message;
    ZnBinStreamSave(sent, tables, message, 2);

    Zn_VariableList received;
    Zn_DatasetList copies;
    if (ZnBinStreamLoad(received, copies, message) != 1)
        return 1;
    const Zn_Dataset* copy = copies.GetItem(u"cities");
    std::puts(copy->GetColumnNN(0, u"Name")->ToString().ToUtf8().c_str());
    return copy->GetRowCount() == 1 && copy->GetUpdateRowCount() == 1 &&
                   copy->GetColumnNN(0, u"People")->ToInteger() == 9668000 && received.Var(u"USER").ToString() == u"kim"
               ? 0
               : 2;
}
