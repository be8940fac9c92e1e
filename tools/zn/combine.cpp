// append and merge: the rows of one message behind those of another, as plain rows or as inserted ones.
#include "commands.h"

#include "cell_text.h"
#include "output_options.h"
#include "progress.h"

#include <memory>

namespace zntool {
namespace {

struct Options {
    std::string first;
    std::string second;
    std::string out;
    OutputWishes wishes;
    std::vector<std::string> tables;
};

enum class How { Append, Merge };

// Says which columns of the added table have no place in the other one.
void ReportLeftOut(const Zn_Dataset& target, const Zn_Dataset& added, const Message& from)
{
    for (const Zn_ColInfo& column : added.GetColumns()) {
        const int place = target.GetColIndex(column.id);
        if (place < 0 || place >= target.GetNormalCount())
            Complain(from.label + ": " + ToUtf8(added.GetId().GetView()) + ": column " + ToUtf8(column.id.GetView()) +
                     ": the other table has no such column; its values are left out");
    }
}

// The table of an id in a message; one that is missing is made, with the columns of the table to be added.
Zn_Dataset& TargetOf(Message& message, const Zn_Dataset& added)
{
    const Zn_WString& id = added.GetId();
    if (Zn_Dataset* table = message.tables.GetSafeItem(id.GetText()))
        return *table;
    Zn_Dataset empty(id, added.GetCurrentCodePage());
    empty.AppendColList(&added.GetColumns());
    for (const Zn_Variable& constant : added.GetConstColumns())
        empty.AddConstColumn(constant.id, constant.value);
    return *message.tables.GetSafeItem(message.tables.AddDataset(id, &empty));
}

void AddRows(Message& message, const Zn_Dataset& added, const Message& from, How how)
{
    Zn_Dataset& target = TargetOf(message, added);
    ReportLeftOut(target, added, from);
    Zn_Dataset plain; // without the states that the rows have in their own message
    plain.Copy(&added);
    target.SetUpdate(how == How::Merge);
    target.Merge(&plain);
}

void AddMissingParams(Zn_VariableList& params, const Zn_VariableList& others)
{
    for (const Zn_Variable& other : others) {
        if (params.FindId(other.id) < 0)
            params.AddVariable(other.id, other.value);
    }
}

void Combine(const Options& options, How how)
{
    Message message = ReadWholeMessage(options.first);
    Message second = ReadWholeMessage(options.second);
    {
        const Progress progress("adding " + second.label);
        for (const std::string& name : options.tables)
            AddRows(message, FindTable(second, name), second, how);
        for (const Zn_Dataset& table : second.tables) {
            if (options.tables.empty())
                AddRows(message, table, second, how);
        }
        AddMissingParams(message.params, second.params);
    }
    WriteMessage(message, options.out, options.wishes);
}

constexpr const char* kColumnsMatch =
    "Tables and columns match by name; columns that A lacks are left out and named, tables and parameters that it\n"
    "lacks are added. Rows of B count as they are now.\n";

void Add(CLI::App& app, const char* name, const char* what, const char* example, How how)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(name, what);
    command->add_option("A", options->first, "the message to add to, or -")->required();
    command->add_option("B", options->second, "the message whose rows are added, or -")->required();
    command->add_option("OUT", options->out, "the file to write, or -; may be A")->required();
    command->add_option("-d,--dataset", options->tables, "only this table of B; may be given again")
        ->type_name("NAME")
        ->allow_extra_args(false);
    AddModeOption(*command, options->wishes);
    AddEncodingOption(*command, options->wishes, false);
    AddCodePageOption(*command, options->wishes);
    command->footer(std::string(kColumnsMatch) + example);
    command->callback([options, how] { Combine(*options, how); });
}

} // namespace

void AddAppend(CLI::App& app, ExitCode&)
{
    Add(app, "append", "Add the rows of one message to another as unchanged rows",
        "Example: zn append store.bin edited.bin both.bin", How::Append);
}

void AddMerge(CLI::App& app, ExitCode&)
{
    Add(app, "merge", "Add the rows of one message to another as inserted rows",
        "A receiver can then apply, or undo, what was merged: zn convert OUT CHANGES --mode 2 sends that alone.\n"
        "Example: zn merge store.bin edited.bin merged.bin --dataset customers",
        How::Merge);
}

} // namespace zntool
