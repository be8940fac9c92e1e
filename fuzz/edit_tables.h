// Edits that go through every table of a message: what was read must stand being changed, deleted and undone.
#pragma once

#include "fuzz.h"

#include "Zn_DatasetList.h"

inline void EditTables(Zn_DatasetList& tables)
{
    for (int i = 0; i < tables.Count(); ++i) {
        Zn_Dataset& table = *tables.GetSafeItem(i, 0);
        table.SetUpdate(1);
        table.SetColumn(0, 0, u"x");
        table.DeleteRow(table.GetRowCount() / 2);
        table.GetDelColumn(0, 0);
        Zn_Buffer changes;
        table.Save(changes, 2);
        table.Reset();
        Require(!table.IsUpdated());
    }
}
