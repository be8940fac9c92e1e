#include "editor.h"

#include "cell_text.h"

#include <algorithm>
#include <charconv>

namespace zntool {
namespace {

Zn_WString Wide(const std::string& text, const EditCommand& command)
{
    Zn_WString wide;
    if (!FromUtf8(text, wide))
        command.place.Fail("'" + text + "' is no UTF-8 text");
    return wide;
}

int FindColumn(const Zn_Dataset& table, const EditWord& word, const EditCommand& command)
{
    const int column = table.GetColIndex(Wide(word.text, command).GetView());
    if (column < 0)
        command.place.Fail("table " + command.table + " has no column '" + word.text + "'");
    if (column >= table.GetNormalCount())
        command.place.Fail("column " + word.text + " is constant: set it with the command constant");
    return column;
}

Zn_Variant ReadValue(const EditWord& word, short type, const EditCommand& command)
{
    Zn_Variant value;
    if (word.value->empty() && !word.quoted)
        return value;
    const std::string reason = ParseValue(Wide(*word.value, command).GetView(), type, value);
    if (!reason.empty())
        command.place.Fail(word.text + ": " + reason);
    return value;
}

// The column type that reads a text as a value of the type a variable has, or, for a new one, that its text suggests.
short TypeForVariable(const Zn_Variant* old, const EditWord& word, const EditCommand& command)
{
    switch (old ? old->type : std::uint16_t(Zn_Variant::Empty)) {
    case Zn_Variant::Integer:
        return Zn_ColInfo::Int;
    case Zn_Variant::Decimal:
        return Zn_ColInfo::Decimal;
    case Zn_Variant::Currency:
        return Zn_ColInfo::Currency;
    case Zn_Variant::Binary:
        return Zn_ColInfo::Blob;
    case Zn_Variant::Empty:
    case Zn_Variant::Null: {
        const Zn_WString text = Wide(*word.value, command);
        return word.quoted       ? Zn_ColInfo::String
               : IsInt(text)     ? Zn_ColInfo::Int
               : IsDecimal(text) ? Zn_ColInfo::Decimal
                                 : Zn_ColInfo::String;
    }
    default:
        return Zn_ColInfo::String;
    }
}

} // namespace

Editor::Editor(Message& message) : message_(message)
{
    for (int i = 0; i < message.tables.Count(); ++i)
        message.tables.GetSafeItem(i)->SetUpdate(1);
}

void Editor::Run(const EditCommand& command)
{
    if (command.verb == EditCommand::Param)
        return SetVariables(command, nullptr);
    Zn_Dataset* table = message_.tables.GetSafeItem(Wide(command.table, command).GetText());
    if (!table)
        command.place.Fail(message_.label + " has no table '" + command.table + "' (there is: " + TableNames(message_) +
                           ")");
    switch (command.verb) {
    case EditCommand::Set:
        SetValues(*table, FindRow(*table, command), command);
        break;
    case EditCommand::Insert:
        SetValues(*table, table->AppendRow(1), command);
        break;
    case EditCommand::Delete:
        sheets_[table].deleted.insert(FindRow(*table, command));
        message_.knowsPlaces = true;
        break;
    default:
        SetVariables(command, table);
    }
}

void Editor::Finish()
{
    for (int i = 0; i < message_.tables.Count(); ++i) {
        Zn_Dataset* table = message_.tables.GetSafeItem(i);
        for (const int row : sheets_[table].deleted)
            table->DeleteRow(row);
    }
    sheets_.clear();
}

int Editor::FindRow(const Zn_Dataset& table, const EditCommand& command)
{
    return command.row.value ? FindRowByValue(table, command) : FindRowByNumber(table, command);
}

int Editor::FindRowByNumber(const Zn_Dataset& table, const EditCommand& command) const
{
    const std::string& text = command.row.text;
    int row = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), row);
    if (error != std::errc() || end != text.data() + text.size() || row < 0)
        command.place.Fail("'" + text + "' is no row: give its number, or COLUMN=VALUE");
    if (row >= table.GetRowCountNF())
        command.place.Fail("table " + command.table + " has no row " + text + ": it has " +
                           std::to_string(table.GetRowCountNF()) + ", counted from 0");
    const auto sheet = sheets_.find(&table);
    if (sheet != sheets_.end() && sheet->second.deleted.contains(row))
        command.place.Fail("row " + text + " of table " + command.table + " was deleted by an earlier command");
    return row;
}

int Editor::FindRowByValue(const Zn_Dataset& table, const EditCommand& command)
{
    const int column = FindColumn(table, command.row, command);
    const Zn_Variant sought = ReadValue(command.row, table.GetColInfo(column)->type, command);
    const auto& deleted = sheets_[&table].deleted;
    int found = -1;
    int count = 0;
    const auto [first, end] = IndexOf(table, column).equal_range(TextOf(&sought));
    for (auto entry = first; entry != end; ++entry) {
        if (!deleted.contains(entry->second)) {
            found = entry->second;
            ++count;
        }
    }
    if (count != 1)
        command.place.Fail("table " + command.table + " has " + (count == 0 ? "no row" : Counted(count, "row")) +
                           " with " + command.row.text + "=" + *command.row.value +
                           (count == 0 ? "" : "; one is needed"));
    return found;
}

const Editor::ValueIndex& Editor::IndexOf(const Zn_Dataset& table, int column)
{
    const auto [entry, made] = sheets_[&table].indexes.try_emplace(column);
    if (made) {
        for (int row = 0; row < table.GetRowCountNF(); ++row)
            entry->second.emplace(TextOf(table.GetColumnNF(row, column)), row);
    }
    return entry->second;
}

void Editor::SetValues(Zn_Dataset& table, int row, const EditCommand& command)
{
    std::vector<std::pair<int, Zn_Variant>> values; // all of them are read before one is set
    for (const EditWord& word : command.values) {
        const int column = FindColumn(table, word, command);
        values.emplace_back(column, ReadValue(word, table.GetColInfo(column)->type, command));
    }
    auto& indexes = sheets_[&table].indexes;
    const bool inserted = command.verb == EditCommand::Insert;
    for (auto& [column, index] : indexes) {
        if (inserted)
            index.emplace(std::u16string(), row);
    }
    for (const auto& [column, value] : values) {
        if (const auto index = indexes.find(column); index != indexes.end()) {
            const auto [first, end] = index->second.equal_range(TextOf(table.GetColumnNF(row, column)));
            const auto entry = std::find_if(first, end, [row = row](const auto& item) { return item.second == row; });
            if (entry != end)
                index->second.erase(entry);
            index->second.emplace(TextOf(&value), row);
        }
        if (table.SetColumnNF(row, column, &value) != 1)
            command.place.Fail("row " + std::to_string(row) + " can't be changed: its original is missing");
    }
}

void Editor::SetVariables(const EditCommand& command, Zn_Dataset* table)
{
    for (const EditWord& word : command.values) {
        const Zn_WString id = Wide(word.text, command);
        const Zn_Variant* old = table ? table->GetConstColumn(id.GetText()) : &message_.params.Var(id.GetText());
        if (table && !old)
            command.place.Fail("table " + command.table + " has no constant column '" + word.text + "'");
        const Zn_Variant value = ReadValue(word, TypeForVariable(old, word, command), command);
        if (table)
            table->SetConstColumn(id.GetText(), &value);
        else if (message_.params.AddVariable(id, value) < 0)
            command.place.Fail("a parameter needs a name");
    }
}

} // namespace zntool
