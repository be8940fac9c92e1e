// reset and accept: both settle the changes of a message, one by undoing them, one by making them the rule.
#include "commands.h"

#include "cell_text.h"
#include "output_options.h"
#include "table_states.h"

#include <memory>

namespace zntool {
namespace {

struct Options {
    std::string in;
    std::string out;
    OutputWishes wishes;
    std::vector<std::string> tables;
};

using Settle = void (Zn_Dataset::*)();

// Settles a table and says which deleted rows an undoing could not put back.
void SettleTable(Zn_Dataset& table, Settle settle, const std::string& label)
{
    const States before = CountStates(table);
    (table.*settle)();
    const int expected = before.normal + before.updated + before.deleted;
    if (settle == &Zn_Dataset::Reset && table.GetRowCountNF() < expected)
        Complain(label + ": " + ToUtf8(table.GetId().GetView()) + ": " +
                 Counted(expected - table.GetRowCountNF(), "deleted row") + " can't return: no place is known");
}

void Run(const Options& options, Settle settle)
{
    Message message = ReadWholeMessage(options.in);
    for (const std::string& name : options.tables)
        SettleTable(FindTable(message, name), settle, message.label);
    for (int i = 0; options.tables.empty() && i < message.tables.Count(); ++i)
        SettleTable(*message.tables.GetSafeItem(i), settle, message.label);
    WriteMessage(message, options.out, options.wishes);
}

void Add(CLI::App& app, const char* name, const char* what, const char* footer, Settle settle)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(name, what);
    command->add_option("IN", options->in, "the message to read, or -")->required();
    command->add_option("OUT", options->out, "the file to write, or -; may be IN")->required();
    command->add_option("-d,--dataset", options->tables, "only this table; may be given again")
        ->type_name("NAME")
        ->allow_extra_args(false);
    AddEncodingOption(*command, options->wishes, false);
    AddCodePageOption(*command, options->wishes);
    command->footer(footer);
    command->callback([options, settle] { Run(*options, settle); });
}

} // namespace

void AddReset(CLI::App& app, ExitCode&)
{
    Add(app, "reset", "Undo every change that a message remembers",
        "Updated rows take their originals back, deleted rows return, inserted rows go. A row that was updated and "
        "then\n"
        "deleted does not return, and neither does one whose message was XML, which keeps no places of deleted rows.\n"
        "Example: zn reset edited.bin store.bin",
        &Zn_Dataset::Reset);
}

void AddAccept(CLI::App& app, ExitCode&)
{
    Add(app, "accept", "Accept every change: all rows become normal, originals and deleted rows are forgotten",
        "Example: zn accept edited.bin store.bin --dataset invoices", &Zn_Dataset::ApplyChange);
}

} // namespace zntool
