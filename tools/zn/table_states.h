// How many rows of a table are in which state.
#pragma once

#include "Zn_Dataset.h"

namespace zntool {

struct States {
    int normal = 0;
    int inserted = 0;
    int updated = 0;
    int deleted = 0;
    int originals = 0; // of updated rows
    int marked = 0;    // rows that carry a mark of selection or filter

    int Changes() const { return inserted + updated + deleted; }
};

inline States CountStates(const Zn_Dataset& table)
{
    States states;
    for (int row = 0; row < table.GetRowCountNF(); ++row) {
        const Zn_Record& record = table[row];
        const int type = record.GetType();
        ++(type == Zn_Record::Inserted ? states.inserted : type == Zn_Record::Updated ? states.updated : states.normal);
        states.marked += record.GetFlags() > 0xFF;
    }
    for (int i = 0; i < table.GetOrgBuffCount(); ++i)
        ++(table.GetOrgBuffType(i) == Zn_Record::Deleted ? states.deleted : states.originals);
    return states;
}

} // namespace zntool
