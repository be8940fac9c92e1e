#include "commands.h"

#include "cell_text.h"
#include "column_order.h"
#include "message_io.h"
#include "row_view.h"
#include "table_states.h"
#include "table_view.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>

namespace zntool {
namespace {

constexpr int kTerminalWidest = 32;

struct Options {
    std::string file;
    std::vector<std::string> tables;
    std::string rows;
    std::vector<std::string> columns;
    bool originals = false;
    bool changes = false;
    std::optional<int> width;
    ViewOptions view;
};

// Rows from first up to, but without, end.
struct RowRange {
    int first = 0;
    int end = 0;
};

int ReadCount(std::string_view text, const std::string& whole)
{
    int count = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc() || stop != text.data() + text.size() || count < 0)
        throw Failure(BadUsage, "--rows " + whole + ": give a count (10), a range (5-9, 5-) or the last ones (-10)");
    return count;
}

// "10": the first ten; "5-9": from 5 to 9; "5-": from 5 on; "-10": the last ten.
RowRange ReadRange(const std::string& text, int count)
{
    if (text.empty())
        return {0, count};
    const std::size_t dash = text.find('-');
    if (dash == std::string::npos)
        return {0, std::min(ReadCount(text, text), count)};
    const std::string_view before = std::string_view(text).substr(0, dash);
    const std::string_view after = std::string_view(text).substr(dash + 1);
    if (before.empty())
        return {std::max(count - ReadCount(after, text), 0), count};
    const int first = std::min(ReadCount(before, text), count);
    const int last = after.empty() ? count - 1 : std::min(ReadCount(after, text), count - 1);
    return {first, std::max(last + 1, first)};
}

// The columns to show, by position: all in the order they were defined in, or those asked for.
std::vector<int> PickColumns(const Zn_Dataset& table, const std::vector<std::string>& names)
{
    if (names.empty())
        return DefinitionOrder(table);
    std::vector<int> picked;
    for (const std::string& name : names) {
        const int col = table.GetColIndex(Zn_WString::FromUtf8(name).GetView());
        if (col >= 0)
            picked.push_back(col);
    }
    return picked;
}

class TablePrinter {
public:
    // With a view the table is one of its own, a copy of that of the message.
    TablePrinter(Output& out, const Zn_Dataset& whole, const Zn_Dataset& table, const RowView* view,
                 const Options& options, int widest)
        : out_(out), whole_(whole), table_(table), view_(view), options_(options), widest_(widest),
          picked_(PickColumns(table, options.columns))
    {
    }

    void Print()
    {
        if (picked_.empty() && !options_.columns.empty())
            return;
        CollectLines();
        PrintHeading();
        PrintConstants();
        if (lines_.empty() || picked_.empty())
            return;
        std::vector<ViewColumn> columns{{u"#", true}, {u"state"}};
        for (const int col : picked_)
            columns.push_back({std::u16string(table_.GetColID(col).GetView()), IsNumeric(col)});
        PrintTable(
            out_, columns, lines_.size(),
            [this](std::size_t line, std::size_t column, ViewCell& cell) { Fill(lines_[line], column, cell); },
            widest_);
    }

private:
    enum class Kind { Row, Original, Deleted, Summary };
    struct Line {
        Kind kind;
        int index;  // of the row, the deleted row, or the view's line
        int number; // of the row in the message
    };

    bool IsNumeric(int col) const
    {
        const Zn_ColInfo* info = table_.GetColInfo(col);
        return info && (info->type == Zn_ColInfo::Int || info->type == Zn_ColInfo::Decimal ||
                        info->type == Zn_ColInfo::Currency);
    }

    void CollectLines()
    {
        if (view_)
            CollectViewLines();
        else
            CollectRows();
        if (!options_.rows.empty())
            return;
        for (int n = 0, count = table_.GetDelRowCount(); n < count; ++n) {
            if (!view_ || view_->ShowsDeleted(n))
                lines_.push_back({Kind::Deleted, n, 0});
        }
    }

    void CollectRows()
    {
        const RowRange range = ReadRange(options_.rows, table_.GetRowCountNF());
        for (int row = range.first; row < range.end; ++row)
            AddRow(row, row);
    }

    // A range counts the view's rows; a summary is shown when the row before it is in the range.
    void CollectViewLines()
    {
        const RowRange range = ReadRange(options_.rows, table_.GetRowCountNF());
        int seen = 0;
        for (std::size_t i = 0; i < view_->Lines().size(); ++i) {
            const RowLine& line = view_->Lines()[i];
            seen += !line.IsSummary();
            if (!options_.rows.empty() && (seen <= range.first || seen > range.end))
                continue;
            if (line.IsSummary())
                lines_.push_back({Kind::Summary, static_cast<int>(i), 0});
            else
                AddRow(line.row, line.number);
        }
    }

    void AddRow(int row, int number)
    {
        const int type = table_.GetRowTypeNF(row);
        if (options_.changes && type == Zn_Record::Normal)
            return;
        lines_.push_back({Kind::Row, row, number});
        ++rowsShown_;
        if (options_.originals && type == Zn_Record::Updated && ShowsChange(row))
            lines_.push_back({Kind::Original, row, number});
    }

    const SummaryLine& Summary(const Line& line) const
    {
        return view_->Summary(view_->Lines()[static_cast<std::size_t>(line.index)]);
    }

    void PrintHeading()
    {
        const States states = CountStates(whole_);
        out_.Write("\n");
        out_.Write(ToUtf8(Printable(table_.GetId().GetView())), Style::Title);
        out_.Write(": " + Counted(whole_.GetRowCountNF(), "row"));
        for (const auto& [count, word] :
             {std::pair(states.inserted, " inserted"), std::pair(states.updated, " updated")}) {
            if (count > 0)
                out_.Write(", " + std::to_string(count) + word);
        }
        if (states.deleted > 0)
            out_.Write(", " + std::to_string(states.deleted) + " deleted beside them");
        if (rowsShown_ < whole_.GetRowCountNF())
            out_.Write("; " + std::to_string(rowsShown_) + " shown");
        out_.Write("\n");
    }

    void PrintConstants()
    {
        for (const Zn_Variable& constant : table_.GetConstColumns())
            out_.Write("  " + ToUtf8(Printable(constant.id.GetView())) + " = " +
                       ToUtf8(Printable(TextOf(&constant.value))) + " (constant " +
                       ToUtf8(constant.value.GetTypeString()) + ")\n");
    }

    const Zn_Variant* Value(const Line& line, int col) const
    {
        if (line.kind == Kind::Original)
            return table_.GetOrgColumnNF(line.index, col);
        return line.kind == Kind::Deleted ? table_.GetDelColumn(line.index, col) : table_.GetColumnNF(line.index, col);
    }

    bool IsChanged(int row, int col) const
    {
        return table_.GetRowTypeNF(row) == Zn_Record::Updated && col < table_.GetNormalCount() &&
               !SaysSame(table_.GetColumnNF(row, col), table_.GetOrgColumnNF(row, col));
    }

    bool ShowsChange(int row) const
    {
        return std::any_of(picked_.begin(), picked_.end(), [&](int col) { return IsChanged(row, col); });
    }

    void Fill(const Line& line, std::size_t column, ViewCell& cell) const
    {
        if (column == 0)
            return FillNumber(line, cell);
        if (column == 1)
            return FillState(line, cell);
        const int col = picked_[column - 2];
        if (line.kind == Kind::Summary) {
            if (const std::u16string* text = Summary(line).Find(col))
                cell = {*text, Style::Title};
            return;
        }
        const bool changed = line.kind != Kind::Deleted && IsChanged(line.index, col);
        if (line.kind == Kind::Original && !changed)
            return;
        const Zn_Variant* value = Value(line, col);
        if (value && value->type == Zn_Variant::Binary) {
            const std::string size = "[" + std::to_string(value->GetConstBinary()->GetLength()) + " bytes]";
            cell.text.assign(size.begin(), size.end());
        } else {
            AppendText(value, cell.text);
        }
        if (line.kind == Kind::Original && cell.text.empty())
            cell.text = u"(empty)";
        cell.style = line.kind == Kind::Deleted    ? Style::Deleted
                     : line.kind == Kind::Original ? Style::Faint
                     : changed                     ? Style::Updated
                                                   : Style::Plain;
    }

    void FillNumber(const Line& line, ViewCell& cell) const
    {
        if (line.kind == Kind::Summary)
            cell = {Summary(line).number, Style::Title};
        if (line.kind != Kind::Row)
            return;
        const std::string number = std::to_string(line.number);
        cell.text.assign(number.begin(), number.end());
        cell.style = Style::Faint;
    }

    void FillState(const Line& line, ViewCell& cell) const
    {
        if (line.kind == Kind::Original) {
            cell = {u"was", Style::Faint};
            return;
        }
        if (line.kind == Kind::Summary) {
            cell = {Summary(line).kind, Style::Title};
            return;
        }
        switch (line.kind == Kind::Deleted ? Zn_Record::Deleted : table_.GetRowTypeNF(line.index)) {
        case Zn_Record::Inserted:
            cell = {u"inserted", Style::Inserted};
            break;
        case Zn_Record::Updated:
            cell = {u"updated", Style::Updated};
            break;
        case Zn_Record::Deleted:
            cell = {u"deleted", Style::Deleted};
            break;
        default:
            cell = {u"normal", Style::Faint};
        }
    }

    Output& out_;
    const Zn_Dataset& whole_;
    const Zn_Dataset& table_;
    const RowView* const view_;
    const Options& options_;
    const int widest_;
    const std::vector<int> picked_;
    std::vector<Line> lines_;
    int rowsShown_ = 0;
};

void PrintParams(Output& out, const Zn_VariableList& params, int widest)
{
    out.Write("\n");
    out.Write("parameters", Style::Title);
    out.Write(": " + std::to_string(params.Count()) + "\n");
    if (params.Count() == 0)
        return;
    PrintTable(
        out, {{u"name"}, {u"type"}, {u"value"}}, static_cast<std::size_t>(params.Count()),
        [&](std::size_t line, std::size_t column, ViewCell& cell) {
            const Zn_Variable& param = *params[static_cast<int>(line)];
            if (column == 2)
                AppendText(&param.value, cell.text);
            else
                cell.text = column == 0 ? param.id.GetView() : std::u16string_view(param.value.GetTypeString());
        },
        widest);
}

// Names that no table to be shown has are mistakes.
void CheckColumns(const std::vector<const Zn_Dataset*>& tables, const Options& options)
{
    std::vector<std::string> names = options.view.Columns();
    names.insert(names.end(), options.columns.begin(), options.columns.end());
    for (const std::string& name : names) {
        const Zn_WString id = Zn_WString::FromUtf8(name);
        const auto has = [&](const Zn_Dataset* table) { return table->GetColIndex(id.GetView()) >= 0; };
        if (std::none_of(tables.begin(), tables.end(), has))
            throw Failure(BadUsage, options.file + ": there is no column '" + name + "'");
    }
}

void ShowTable(Output& out, const Zn_Dataset& table, const Options& options, int widest)
{
    if (options.view.IsPlain()) {
        TablePrinter(out, table, table, nullptr, options, widest).Print();
    } else {
        Zn_Dataset copy(table);
        const RowView view(copy, options.view);
        TablePrinter(out, table, copy, &view, options, widest).Print();
    }
}

void Show(Message& message, const Options& options)
{
    std::vector<const Zn_Dataset*> tables;
    for (const std::string& name : options.tables)
        tables.push_back(&FindTable(message, name));
    if (options.tables.empty()) {
        for (const Zn_Dataset& table : message.tables)
            tables.push_back(&table);
    }
    CheckColumns(tables, options);
    ReadRange(options.rows, 0);

    Output out;
    const int widest = options.width ? *options.width : out.IsTerminal() ? kTerminalWidest : 0;
    out.Write(message.label + ": " + (message.encoding == Encoding::Xml ? "XML" : "binary") + " message\n");
    if (options.tables.empty())
        PrintParams(out, message.params, widest);
    for (const Zn_Dataset* table : tables)
        ShowTable(out, *table, options, widest);
    out.Flush();
}

void AddViewOptions(CLI::App& command, ViewOptions& view)
{
    command.add_option("-s,--sort", view.sort, "by these columns; NAME:d: falling")->type_name("NAME,...");
    command.add_option("-f,--filter", view.filters, "only rows with this value; if given again: with all of them")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    const auto addColumns = [&](const char* name, std::vector<std::string>& columns, const char* what) {
        command.add_option(name, columns, what)->type_name("NAME,...")->delimiter(',')->allow_extra_args(false);
    };
    addColumns("-g,--group", view.groups, "summaries of rows with the same values of these; sorts by them");
    addColumns("--sum", view.sums, "sums of these columns, of each group and of all rows");
    addColumns("--avg", view.averages, "averages of the values there are");
    addColumns("--min", view.least, "smallest values");
    addColumns("--max", view.most, "largest values");
    command.add_flag("--count", view.count, "counts of rows");
}

} // namespace

void AddShow(CLI::App& app, ExitCode& exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("show", "Show parameters and tables");
    command->add_option("FILE", options->file, "the message, or -")->required();
    command->add_option("-d,--dataset", options->tables, "only this table; may be given again")
        ->type_name("NAME")
        ->allow_extra_args(false);
    command->add_option("-r,--rows", options->rows, "10: the first ten; 5-9; 5-; -10: the last ten")
        ->type_name("RANGE");
    command->add_option("-c,--columns", options->columns, "only these columns, in this order")
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    AddViewOptions(*command, options->view);
    command->add_flag("-o,--originals", options->originals, "under each updated row what changed cells held before");
    command->add_flag("--changes", options->changes, "only rows that are inserted, updated or deleted");
    command
        ->add_option("-w,--width", options->width, "cut texts to this many cells; 0: never (32 on a terminal, else 0)")
        ->type_name("CELLS");
    command->footer(
        "Rows are numbered from 0, as edit commands and the library number them.\n"
        "Example: zn show changes.bin --dataset customers --columns CustomerId,City --originals\n"
        "         zn show store.bin -d invoices --filter BillingCountry=Norway --group BillingCity --sum Total");
    command->callback([options, &exitCode] {
        Message message = ReadMessage(options->file);
        Show(message, *options);
        if (!message.damage.empty()) {
            Complain(message.label + ": " + message.damage);
            exitCode = BadData;
        }
    });
}

} // namespace zntool
