// Carries edit commands out on a message, every change remembered.
//
// Row numbers are those of the message as it was read, whatever earlier commands deleted; rows that are inserted
// count on from there. A row found by a value is looked up in an index that is made once per column.
#pragma once

#include "edit_script.h"
#include "message_io.h"

#include <functional>
#include <map>
#include <set>
#include <unordered_map>
#include <vector>

namespace zntool {

class Editor {
public:
    explicit Editor(Message& message);

    // Fails, naming the command's place, when it does not fit the message.
    void Run(const EditCommand& command);
    // Takes the deleted rows out; no command may follow.
    void Finish();

private:
    using ValueIndex = std::unordered_multimap<std::u16string, int>;
    struct Sheet {
        std::set<int, std::greater<>> deleted; // the last first, so that taking one out moves no other
        std::map<int, ValueIndex> indexes;     // by column
    };

    int FindRow(const Zn_Dataset& table, const EditCommand& command);
    int FindRowByNumber(const Zn_Dataset& table, const EditCommand& command) const;
    int FindRowByValue(const Zn_Dataset& table, const EditCommand& command);
    const ValueIndex& IndexOf(const Zn_Dataset& table, int column);
    void SetValues(Zn_Dataset& table, int row, const EditCommand& command);
    void SetVariables(const EditCommand& command, Zn_Dataset* table);

    Message& message_;
    std::map<const Zn_Dataset*, Sheet> sheets_;
};

} // namespace zntool
