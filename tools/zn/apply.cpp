#include "commands.h"

#include "cell_text.h"
#include "column_order.h"
#include "merge.h"
#include "output_options.h"
#include "progress.h"
#include "table_states.h"

#include <map>
#include <memory>
#include <optional>

namespace zntool {
namespace {

constexpr std::size_t kMostReported = 20;

struct Options {
    std::string base;
    std::string changes;
    std::string out;
    std::vector<std::string> keys;
    bool force = false;
    bool track = false;
    OutputWishes wishes;
};

using Key = std::vector<Zn_WString>;

// A key as the user gives it: for one table, or for every table that it fits.
struct GivenKey {
    std::string text;
    Zn_WString table; // empty: any
    Key columns;
};

std::string KeyName(const Key& key)
{
    std::string name;
    for (const Zn_WString& column : key)
        name += (name.empty() ? "" : "+") + column.ToUtf8();
    return name;
}

std::vector<GivenKey> ReadKeys(const std::vector<std::string>& texts)
{
    std::vector<GivenKey> keys;
    for (const std::string& text : texts) {
        const std::size_t colon = text.find(':');
        GivenKey key{text, {}, {}};
        if (colon != std::string::npos)
            key.table = Zn_WString::FromUtf8(text.substr(0, colon));
        std::string columns = colon == std::string::npos ? text : text.substr(colon + 1);
        for (std::size_t plus = 0; plus != std::string::npos;) {
            plus = columns.find('+');
            key.columns.push_back(Zn_WString::FromUtf8(columns.substr(0, plus)));
            columns.erase(0, plus == std::string::npos ? plus : plus + 1);
            if (key.columns.back().IsEmpty())
                throw Failure(BadUsage, "--key " + text + ": give COLUMN, TABLE:COLUMN or TABLE:COLUMN+COLUMN");
        }
        keys.push_back(std::move(key));
    }
    return keys;
}

// Says which key finds the rows of a table: the one given for it, else the first one given that it has and whose values
// are unique in it, else its first column if its values are.
class KeyChooser {
public:
    KeyChooser(const Message& base, const std::vector<std::string>& texts) : base_(base), keys_(ReadKeys(texts))
    {
        for (const GivenKey& key : keys_)
            CheckGiven(key);
    }

    Key Choose(const Zn_Dataset& base, const Zn_Dataset& changes) const
    {
        for (const GivenKey& key : keys_) {
            if (!key.table.IsEmpty() && zn_iequal(key.table, changes.GetId()))
                return CheckBoth(key.columns, base, changes);
        }
        for (const GivenKey& key : keys_) {
            if (key.table.IsEmpty() && HasColumns(base, key.columns) && IsUnique(base, key.columns))
                return CheckBoth(key.columns, base, changes);
        }
        const std::vector<int> order = DefinitionOrder(base);
        Key first = order.empty() ? Key() : Key{base.GetColID(order[0])};
        const std::string name = ToUtf8(changes.GetId().GetView());
        if (first.empty() || !HasColumns(changes, first) || !IsUnique(base, first))
            throw Failure(BadUsage,
                          base_.label + ": " + name + ": no key finds its rows; say --key " + name + ":COLUMN");
        Complain(base_.label + ": " + name + ": rows are found by " + KeyName(first) +
                 ", whose values are unique; --key " + name + ":COLUMN says otherwise");
        return first;
    }

private:
    void CheckGiven(const GivenKey& key) const
    {
        for (const Zn_Dataset& table : base_.tables) {
            if ((key.table.IsEmpty() || zn_iequal(key.table, table.GetId())) && HasColumns(table, key.columns))
                return;
        }
        throw Failure(BadUsage, base_.label + ": --key " + key.text + ": there is no such " +
                                    (key.table.IsEmpty() ? "column" : "table with such a column"));
    }

    Key CheckBoth(const Key& key, const Zn_Dataset& base, const Zn_Dataset& changes) const
    {
        if (!HasColumns(base, key) || !HasColumns(changes, key))
            throw Failure(BadUsage, base_.label + ": " + ToUtf8(changes.GetId().GetView()) + ": the key " +
                                        KeyName(key) + " is not a column of both messages");
        return key;
    }

    const Message& base_;
    std::vector<GivenKey> keys_;
};

void ReportConflicts(const std::vector<std::string>& conflicts, const std::string& label)
{
    for (std::size_t i = 0; i < conflicts.size() && i < kMostReported; ++i)
        Complain(label + ": " + conflicts[i]);
    if (conflicts.size() > kMostReported)
        Complain(label + ": and " + Counted(static_cast<long long>(conflicts.size() - kMostReported), "more conflict"));
}

// The tables whose changes are to be applied, each with its base; what stands against it becomes a conflict.
std::vector<TableMerge> Prepare(Message& base, const Message& changes, const Options& options,
                                std::vector<std::string>& conflicts)
{
    const KeyChooser keys(base, options.keys);
    std::vector<TableMerge> merges;
    for (const Zn_Dataset& table : changes.tables) {
        const std::string name = ToUtf8(table.GetId().GetView());
        Zn_Dataset* target = base.tables.GetSafeItem(table.GetId().GetText());
        if (CountStates(table).Changes() == 0)
            continue;
        if (!target) {
            conflicts.push_back(name + ": the base has no such table");
            continue;
        }
        if (const int own = CountStates(*target).Changes(); own > 0)
            conflicts.push_back(name + ": the base has " + Counted(own, "change") +
                                " of its own; accept or reset the base first");
        target->SetUpdate(options.track);
        TableMerge& merge = merges.emplace_back(*target, table, keys.Choose(*target, table));
        merge.Resolve();
        conflicts.insert(conflicts.end(), merge.Conflicts().begin(), merge.Conflicts().end());
    }
    return merges;
}

void Apply(const Options& options)
{
    Message base = ReadWholeMessage(options.base);
    const Message changes = ReadWholeMessage(options.changes);
    std::vector<std::string> conflicts;
    {
        std::optional<Progress> progress("applying " + changes.label);
        std::vector<TableMerge> merges = Prepare(base, changes, options, conflicts);
        progress.reset();
        ReportConflicts(conflicts, changes.label);
        if (!conflicts.empty() && !options.force)
            throw Failure(BadData, changes.label + ": conflicts with " + base.label +
                                       "; nothing is written (--force applies what can be applied)");
        if (merges.empty() && conflicts.empty())
            Complain(changes.label + ": no row in it is inserted, updated or deleted");
        for (TableMerge& merge : merges)
            merge.Apply();
    }
    base.knowsPlaces = base.knowsPlaces || options.track;
    WriteMessage(base, options.out, options.wishes);
}

constexpr const char* kFooter =
    "CHANGES is a message of mode 1 or 2, XML or binary. An updated row is found in BASE by the key of its original, "
    "a\n"
    "deleted one by its own; of an updated row the cells that changed are stored. Rows that are missing, are there "
    "already,\n"
    "or hold something else than they held for the sender are conflicts: they are listed and nothing is written, "
    "unless\n"
    "--force leaves out what is missing and takes the sender's values for the rest. OUT holds normal rows; with "
    "--track it\n"
    "remembers the changes. Inserted rows go to the end, or, when CHANGES holds every row (mode 1), where they stand "
    "there.\n"
    "A key counts for every table in which its values are unique, TABLE:COLUMN for one table, and COLUMN+COLUMN is a "
    "key of\n"
    "several columns. A table that no key fits is keyed by its first column when the values of that are unique.\n"
    "Example: zn apply store.bin changes.bin new.bin --key customers:CustomerId --key invoices:InvoiceId";

} // namespace

void AddApply(CLI::App& app, ExitCode&)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("apply", "Apply the changes of one message to the tables of another");
    command->add_option("BASE", options->base, "the message to change, or -")->required();
    command->add_option("CHANGES", options->changes, "the message that holds the changes, or -")->required();
    command->add_option("OUT", options->out, "the file to write, or -; may be BASE")->required();
    command->add_option("-k,--key", options->keys, "how rows are found; may be given again")
        ->type_name("[TABLE:]COLUMN[+COLUMN]")
        ->allow_extra_args(false);
    command->add_flag("--force", options->force, "apply in spite of conflicts");
    command->add_flag("--track", options->track, "let OUT remember the changes");
    AddModeOption(*command, options->wishes);
    AddEncodingOption(*command, options->wishes, false);
    AddCodePageOption(*command, options->wishes);
    command->footer(kFooter);
    command->callback([options] { Apply(*options); });
}

} // namespace zntool
