// Fills a list of variables with values by id, without a search through the list for each.
#pragma once

#include "Zn_Variable.h"
#include "foundation/id_index.h"

namespace zn {

class VariableFiller {
public:
    explicit VariableFiller(Zn_VariableList& list) : list_(list)
    {
        for (const Zn_Variable& variable : list)
            ids_.Add(variable.id);
    }
    bool Has(const Zn_WString& id) const { return ids_.Find(id) >= 0; }
    // Replaces the value of the variable with that id, or appends one; an empty id is ignored.
    void Put(const Zn_WString& id, const Zn_Variant& value)
    {
        const int place = ids_.Find(id);
        if (place >= 0 && list_.GetOption() == 1) // new ones have moved it
            list_.AddVariable(id, value);
        else if (place >= 0)
            list_.SetVariant(place, value);
        else if (list_.Add(Zn_Variable(id, value)) >= 0)
            ids_.Add(id);
    }

private:
    Zn_VariableList& list_;
    IdIndex ids_;
};

} // namespace zn
