#include "csv.h"

#include "cell_text.h"
#include "column_order.h"
#include "csv_records.h"
#include "failure.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace zntool {
namespace {

constexpr short kNumberSize = 4;
constexpr short kWideNumberSize = 8;
constexpr std::size_t kExactDigits = 15; // that every double holds

// ---- Types from values

// "0", "-12", "3.50"; no plus, exponent, leading zero or more digits than a DECIMAL holds.
bool IsPlainNumber(std::string_view text)
{
    if (text.starts_with('-'))
        text.remove_prefix(1);
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::string_view whole = text.substr(0, point);
    const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
    const auto isDigits = [](std::string_view part) {
        return !part.empty() && part.find_first_not_of("0123456789") == std::string_view::npos;
    };
    return isDigits(whole) && (point == text.size() || isDigits(decimals)) && (whole.size() == 1 || whole[0] != '0') &&
           whole.size() + decimals.size() <= kExactDigits;
}

// Narrows the type of a column value by value.
class TypeGuess {
public:
    void Look(const CsvField& field)
    {
        if (field.text.empty()) {
            number_ = number_ && !field.quoted;
            return;
        }
        seen_ = true;
        number_ = number_ && IsPlainNumber(field.text);
        if (!number_)
            return;
        const std::u16string wide(field.text.begin(), field.text.end());
        date_ = date_ && IsYearMonthDay(field.text);
        int_ = int_ && IsInt(wide) && field.text != "-0";
    }

    short Type() const
    {
        if (!seen_ || !number_)
            return Zn_ColInfo::String;
        return date_ ? Zn_ColInfo::Date : int_ ? Zn_ColInfo::Int : Zn_ColInfo::Decimal;
    }

private:
    // Years that an eight-digit number is more likely to mean than anything else.
    static bool IsYearMonthDay(std::string_view text)
    {
        return text.size() == 8 && text >= "19000101" && text < "22000101" &&
               IsDate(std::u16string(text.begin(), text.end()));
    }

    bool seen_ = false;
    bool number_ = true;
    bool date_ = true;
    bool int_ = true;
};

// ---- Reading

class CsvReader {
public:
    CsvReader(const CsvRecords& records, const std::string& label, const ColumnTypes& types, Zn_Dataset& table)
        : records_(records), label_(label), types_(types), table_(table)
    {
    }

    void Read()
    {
        if (records_.Records().empty())
            throw Failure(BadData, label_ + ": line 1: there is no record that names the columns");
        const CsvRecord& header = records_.Records().front();
        CollectRows(header.count);
        for (std::size_t i = 0; i < header.count; ++i)
            AddColumn(header, i);
        CheckTypes();
        for (std::size_t i = 0; i < header.count; ++i)
            places_.push_back(table_.GetColIndex(names_[i].GetView()));
        for (const CsvRecord& record : rows_)
            AddRow(record);
    }

private:
    [[noreturn]] void Fail(int line, const std::string& reason) const
    {
        throw Failure(BadData, label_ + ": line " + std::to_string(line) + ": " + reason);
    }

    // Every record behind the first; blank lines are none unless one column makes them a row without a value.
    void CollectRows(std::size_t columns)
    {
        for (std::size_t i = 1; i < records_.Records().size(); ++i) {
            const CsvRecord& record = records_.Records()[i];
            const CsvField& field = records_.Field(record, 0);
            if (record.count != columns && record.count == 1 && field.text.empty() && !field.quoted)
                continue;
            if (record.count != columns)
                Fail(record.line, "the record has " + std::to_string(record.count) + " fields, the first one names " +
                                      std::to_string(columns) + " columns");
            rows_.push_back(record);
        }
    }

    Zn_WString Wide(const CsvField& field, int line) const
    {
        Zn_WString text;
        if (!FromUtf8(field.text, text))
            Fail(line, "a field is no UTF-8 text");
        return text;
    }

    void AddColumn(const CsvRecord& header, std::size_t index)
    {
        names_.push_back(Wide(records_.Field(header, index), header.line));
        const Zn_WString& name = names_.back();
        if (name.IsEmpty())
            Fail(header.line, "field " + std::to_string(index + 1) + ": a column without a name");
        if (table_.GetColIndex(name.GetView()) >= 0)
            Fail(header.line, "column " + name.ToUtf8() + " stands there twice (case does not count)");
        const ColumnType type = TypeOf(name, index);
        table_.AddColumn(name, type.type, type.size);
    }

    ColumnType TypeOf(const Zn_WString& name, std::size_t index)
    {
        const auto given = std::find_if(types_.begin(), types_.end(), [&](const auto& entry) {
            return zn_iequal(Zn_WString::FromUtf8(entry.first), name);
        });
        TypeGuess guess;
        std::size_t longest = 0;
        for (const CsvRecord& record : rows_) {
            const CsvField& field = records_.Field(record, index);
            guess.Look(field);
            longest = std::max(longest, field.text.size());
        }
        ColumnType type = given != types_.end() ? given->second : ColumnType{guess.Type()};
        typesUsed_ += given != types_.end();
        if (type.size < 0)
            type.size = NeededSize(type.type, longest);
        return type;
    }

    static short NeededSize(short type, std::size_t longest)
    {
        switch (type) {
        case Zn_ColInfo::Int:
            return kNumberSize;
        case Zn_ColInfo::Decimal:
        case Zn_ColInfo::Currency:
        case Zn_ColInfo::Date:
            return kWideNumberSize;
        default:
            return static_cast<short>(std::min<std::size_t>(longest, INT16_MAX));
        }
    }

    void CheckTypes() const
    {
        if (typesUsed_ == types_.size())
            return;
        for (const auto& [name, type] : types_) {
            if (table_.GetColIndex(Zn_WString::FromUtf8(name).GetView()) < 0)
                throw Failure(BadUsage, "--types: " + label_ + " has no column '" + name + "'");
        }
    }

    void AddRow(const CsvRecord& record)
    {
        const int row = table_.AppendRow(0);
        if (row < 0)
            throw Failure(BadData, label_ + ": out of memory");
        for (std::size_t i = 0; i < record.count; ++i) {
            const CsvField& field = records_.Field(record, i);
            if (!field.text.empty() || field.quoted)
                SetValue(row, i, field, record.line);
        }
    }

    void SetValue(int row, std::size_t index, const CsvField& field, int line)
    {
        const short type = table_.GetColInfo(places_[index])->type;
        Zn_Variant value;
        const bool text = type != Zn_ColInfo::Int && type != Zn_ColInfo::Decimal && type != Zn_ColInfo::Currency &&
                          type != Zn_ColInfo::Date;
        if (field.text.empty() && !text)
            return;
        const std::string reason = ParseValue(Wide(field, line).GetView(), type, value);
        if (!reason.empty())
            Fail(line, "column " + names_[index].ToUtf8() + ": " + reason);
        table_.SetColumnNF(row, places_[index], &value);
    }

    const CsvRecords& records_;
    const std::string& label_;
    const ColumnTypes& types_;
    Zn_Dataset& table_;
    std::vector<CsvRecord> rows_;
    std::vector<Zn_WString> names_;
    std::vector<int> places_; // of each field's column in the table
    std::size_t typesUsed_ = 0;
};

// ---- Writing

void AppendField(const std::string& text, bool quoteEmpty, char delimiter, std::string& out)
{
    const bool quote =
        text.empty() ? quoteEmpty
                     : text.find_first_of("\"\r\n") != std::string::npos || text.find(delimiter) != std::string::npos;
    if (!quote) {
        out += text;
        return;
    }
    out += '"';
    for (const char ch : text) {
        out += ch;
        if (ch == '"')
            out += ch;
    }
    out += '"';
}

} // namespace

ColumnTypes ParseColumnTypes(const std::vector<std::string>& items)
{
    ColumnTypes types;
    for (const std::string& item : items) {
        const std::size_t colon = item.find(':');
        const std::size_t second = std::min(item.find(':', colon + 1), item.size());
        const std::string name = item.substr(0, colon);
        ColumnType type;
        const Zn_WString word =
            Zn_WString::FromUtf8(colon == std::string::npos ? "" : item.substr(colon + 1, second - colon - 1));
        type.type = static_cast<short>(Zn_ColList::GetTypeNo(word));
        bool good = !name.empty() && zn_iequal(word, std::u16string_view(Zn_ColList::GetTypeStr(type.type)));
        if (second < item.size()) {
            const char* end = item.data() + item.size();
            const auto [stop, error] = std::from_chars(item.data() + second + 1, end, type.size);
            good = good && error == std::errc() && stop == end && type.size >= 0;
        }
        if (!good)
            throw Failure(BadUsage, "--types " + item +
                                        ": give NAME:TYPE or NAME:TYPE:SIZE, TYPE being STRING, INT, DECIMAL, "
                                        "CURRENCY, DATE, BLOB, URL or CHAR");
        types[name] = type;
    }
    return types;
}

std::string WriteCsv(const Zn_Dataset& table, char delimiter)
{
    const std::vector<int> columns = DefinitionOrder(table);
    std::string out;
    const auto append = [&](std::size_t index, const std::string& text, bool quoteEmpty) {
        if (index > 0)
            out += delimiter;
        AppendField(text, quoteEmpty, delimiter, out);
    };
    for (std::size_t i = 0; i < columns.size(); ++i)
        append(i, ToUtf8(table.GetColID(columns[i]).GetView()), false);
    out += "\r\n";
    for (int row = 0; row < table.GetRowCountNF(); ++row) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const Zn_Variant* value = table.GetColumnNF(row, columns[i]);
            append(i, ToUtf8(TextOf(value)), !IsNothing(value));
        }
        out += "\r\n";
    }
    return out;
}

void ReadCsv(std::string_view bytes, const std::string& label, char delimiter, const ColumnTypes& types,
             Zn_Dataset& table)
{
    const CsvRecords records(bytes, label, delimiter);
    CsvReader(records, label, types, table).Read();
}

} // namespace zntool
