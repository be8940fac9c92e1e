#include "losses.h"

#include "cell_text.h"
#include "table_states.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

namespace zntool {
namespace {

constexpr int kLongestText = 32767; // bytes of a text in the binary form, whose count is a signed 16-bit number
constexpr int kPlaces = 32768;      // of deleted rows that the binary form tells apart
constexpr int kMostColumns = 32767;
constexpr int kMostParams = 65535;

// What can happen to one value.
enum class Loss { None, Amount, NotFinite, EmptyText, OtherType, DateText, NoRecord, Characters, TooLong };
constexpr std::array<const char*, 9> kWords = {
    "",
    "an amount that this form does not hold reads back as another",
    "a number that is not finite reads back as 0",
    "an empty text reads back as no value",
    "a value of another type than its column's reads back as text, or as that type",
    "a DATE value reads back as an empty one",
    "a value of a type that the binary form leaves out reads back as none",
    "characters that the code page lacks read back as others",
    "",
};

bool FitsCodePage(std::u16string_view text, unsigned codePage)
{
    std::u16string_view rest = text;
    while (!rest.empty() && rest.front() < 0x80)
        rest.remove_prefix(1);
    if (rest.empty())
        return true;
    if (codePage == kUtf8 &&
        std::none_of(rest.begin(), rest.end(), [](char16_t ch) { return ch >= 0xD800 && ch < 0xE000; }))
        return true;
    const Zn_AString bytes(text.data(), static_cast<int>(text.size()), codePage);
    return Zn_WString(bytes.GetText(), bytes.GetLength(), codePage) == text;
}

bool FitsBinary(std::u16string_view text, unsigned codePage)
{
    constexpr std::size_t kMostBytesPerUnit = 4;
    return text.size() * kMostBytesPerUnit <= kLongestText ||
           Zn_AString(text.data(), static_cast<int>(text.size()), codePage).GetLength() <= kLongestText;
}

Loss BinaryLoss(const Zn_Variant& value, unsigned codePage)
{
    switch (value.type) {
    case Zn_Variant::Integer:
    case Zn_Variant::Decimal:
    case Zn_Variant::Binary:
        return Loss::None;
    case Zn_Variant::Currency:
        return value.GetConstCurrency()->GetRaw() == 0 ? Loss::None : Loss::Amount;
    case Zn_Variant::Date:
        return Loss::DateText;
    case Zn_Variant::String: {
        const std::u16string_view text = value.GetConstStr()->GetView();
        return !FitsBinary(text, codePage)    ? Loss::TooLong
               : FitsCodePage(text, codePage) ? Loss::None
                                              : Loss::Characters;
    }
    default:
        return Loss::NoRecord;
    }
}

Loss XmlLoss(const Zn_Variant& value, std::uint16_t readBackAs)
{
    if (value.type != readBackAs)
        return Loss::OtherType;
    switch (value.type) {
    case Zn_Variant::Currency:
        return Zn_Currency(value.ToString().GetText()) == *value.GetConstCurrency() ? Loss::None : Loss::Amount;
    case Zn_Variant::Decimal:
        return std::isfinite(value.ToDouble()) ? Loss::None : Loss::NotFinite;
    case Zn_Variant::String:
        return value.GetConstStr()->IsEmpty() ? Loss::EmptyText : Loss::None;
    case Zn_Variant::Binary:
        return value.GetConstBinary()->GetLength() == 0 ? Loss::EmptyText : Loss::None;
    default:
        return Loss::None;
    }
}

class Finder {
public:
    Finder(const Message& message, Encoding encoding, int mode)
        : message_(message), xml_(encoding == Encoding::Xml), mode_(mode)
    {
    }

    Losses Find()
    {
        FindInVariables("parameter ", message_.params, message_.paramCodePage, false);
        std::set<std::u16string> ids;
        for (const Zn_Dataset& table : message_.tables) {
            name_ = ToUtf8(table.GetId().GetView()) + ": ";
            if (xml_ && !ids.insert(Folded(table.GetId())).second)
                Say("another table before it has the same name; one of the two reads back");
            FindInTable(table);
        }
        name_.clear();
        if (!xml_)
            CheckEnvelope();
        return std::move(losses_);
    }

private:
    // The first row a loss was met in, and how many there were.
    struct Tally {
        int count = 0;
        std::string first;
    };

    void Say(const std::string& text) { losses_.lines.push_back(name_ + text); }
    void SayUnreadable(const std::string& text)
    {
        if (losses_.unreadable.empty())
            losses_.unreadable = name_ + text + "; nobody could read the message, so nothing is written";
    }

    static std::u16string Folded(const Zn_WString& id)
    {
        std::u16string folded(id.GetView());
        for (char16_t& ch : folded)
            ch = ch >= u'A' && ch <= u'Z' ? static_cast<char16_t>(ch + 32) : ch;
        return folded;
    }

    // Parameters, or the constant columns of a table.
    void FindInVariables(const std::string& kind, const Zn_VariableList& variables, unsigned codePage, bool constant)
    {
        std::set<std::u16string> ids;
        for (const Zn_Variable& variable : variables) {
            const std::string place = kind + ToUtf8(variable.id.GetView());
            if (xml_ && !ids.insert(Folded(variable.id)).second)
                Say(place + ": given twice; the last value reads back");
            if (xml_)
                SayXmlVariable(place, variable.value, constant);
            else
                SayBinaryVariable(place, variable, codePage);
        }
    }

    void SayXmlVariable(const std::string& place, const Zn_Variant& value, bool constant)
    {
        const bool kept = value.type == Zn_Variant::Integer || value.type == Zn_Variant::Decimal ||
                          value.type == Zn_Variant::String || (constant && value.type == Zn_Variant::Currency);
        if (!kept)
            Say(place + ": the " + ToUtf8(value.GetTypeString()) + " value reads back as the text '" +
                ToUtf8(value.ToString().GetView()) + "'");
        else if (const Loss loss = XmlLoss(value, value.type); loss != Loss::None && loss != Loss::EmptyText)
            Say(place + ": " + kWords[static_cast<std::size_t>(loss)]);
    }

    void SayBinaryVariable(const std::string& place, const Zn_Variable& variable, unsigned codePage)
    {
        if (!FitsCodePage(variable.id.GetView(), codePage))
            Say(place + ": the name holds characters that code page " + std::to_string(codePage) + " lacks");
        if (IsNothing(&variable.value))
            return;
        const Loss loss = BinaryLoss(variable.value, codePage);
        if (loss == Loss::TooLong || !FitsBinary(variable.id.GetView(), codePage))
            SayUnreadable(place + ": a text of more than 32,767 bytes does not fit the binary form");
        else if (loss != Loss::None)
            Say(place + ": " + kWords[static_cast<std::size_t>(loss)]);
    }

    void FindInTable(const Zn_Dataset& table)
    {
        FindInVariables("constant column ", table.GetConstColumns(), table.GetCurrentCodePage(), true);
        for (int col = 0; col < table.GetNormalCount(); ++col)
            FindInColumn(table, *table.GetColInfo(col));
        if (xml_ && table.GetNormalCount() == 0 && table.GetRowCountNF() > 0)
            Say("rows without columns do not read back");
        if (!xml_ && table.GetNormalCount() > kMostColumns)
            SayUnreadable("more than 32,767 columns do not fit the binary form");

        const States states = CountStates(table);
        if (mode_ == AllRows && states.Changes() > 0)
            Say("mode 0 leaves out which rows were inserted (" + std::to_string(states.inserted) + ") and updated (" +
                std::to_string(states.updated) + "), originals and deleted rows (" + std::to_string(states.deleted) +
                ")");
        if (xml_ && mode_ != AllRows && message_.knowsPlaces && states.deleted > 0)
            Say("XML keeps no places of deleted rows: a reset of what is written can't put " +
                Counted(states.deleted, "row") + " back");
        if (!xml_ && mode_ != AllRows && message_.knowsPlaces && states.deleted > 0 &&
            table.GetRowCountNF() + states.deleted > kPlaces)
            Say("the binary form keeps places below 32,768 alone: a reset of what is written may leave out or misplace "
                "some of the " +
                std::to_string(states.deleted) + " deleted rows");
        if (states.marked > 0)
            Say("selection and filter marks are left out, of " + Counted(states.marked, "row"));
        FindInCells(table);
    }

    void FindInColumn(const Zn_Dataset& table, const Zn_ColInfo& column)
    {
        const std::string place = "column " + ToUtf8(column.id.GetView()) + ": ";
        if (column.summ != Zn_ColInfo::None)
            Say(place + "its summary is left out: no message carries one");
        if (xml_ && !IsElementName(column.id.GetView()))
            Say(place + "the name is none that an element can have; its values do not read back");
        if (xml_ && table.GetConstColumn(column.id.GetText()))
            Say(place + "a constant column has the same name; its values do not read back");
        if (!FitsCodePage(column.id.GetView(), xml_ ? message_.codePage : message_.paramCodePage))
            Say(place + "the name holds characters that the code page lacks");
        if (xml_ && Zn_ColList::GetTypeNo(Zn_ColList::GetTypeStr(column.type)) != column.type)
            Say(place + "its unknown type " + std::to_string(column.type) + " reads back as STRING");
    }

    void FindInCells(const Zn_Dataset& table)
    {
        tallies_.clear();
        const int columns = table.GetNormalCount();
        for (int row = 0; row < table.GetRowCountNF(); ++row) {
            const Zn_Record& record = table[row];
            if (mode_ == ChangesOnly && record.GetType() == Zn_Record::Normal)
                continue;
            for (int col = 0; col < columns; ++col)
                LookAt(table, col, record.GetItem(col), "row ", row);
        }
        for (int i = 0; mode_ != AllRows && i < table.GetOrgBuffCount(); ++i) {
            for (int col = 0; col < columns; ++col)
                LookAt(table, col, table.GetOrgBuffColumn(i, col), "original ", i);
        }
        for (const auto& [key, tally] : tallies_)
            Say("column " + ToUtf8(table.GetColID(key.first).GetView()) + ": " +
                kWords[static_cast<std::size_t>(key.second)] + " (" +
                (tally.count > 1 ? std::to_string(tally.count) + " times, the first in " : std::string()) +
                tally.first + ")");
    }

    void LookAt(const Zn_Dataset& table, int col, const Zn_Variant* value, const char* where, int number)
    {
        if (IsNothing(value))
            return;
        const Loss loss = xml_ ? XmlLoss(*value, Zn_ColList::GetValueType(table.GetColInfo(col)->type))
                               : BinaryLoss(*value, table.GetCurrentCodePage());
        if (loss == Loss::None)
            return;
        if (loss == Loss::TooLong) {
            SayUnreadable(where + std::to_string(number) + ", column " + ToUtf8(table.GetColID(col).GetView()) +
                          ": a text of more than 32,767 bytes does not fit the binary form");
            return;
        }
        Tally& tally = tallies_[{col, loss}];
        if (tally.count++ == 0)
            tally.first = where + std::to_string(number);
    }

    void CheckEnvelope()
    {
        if (message_.params.Count() > kMostParams || message_.tables.Count() >= kMostParams)
            SayUnreadable("more than 65,535 parameters or tables do not fit the binary form");
        const int last = message_.params.Count() - 1;
        if (last >= 0 && message_.tables.Count() == 0 && IsNothing(&message_.params.Var(last)))
            SayUnreadable("parameter " + ToUtf8(message_.params.Id(last).GetView()) +
                          ": an empty value can't be the last thing in a binary message");
    }

    const Message& message_;
    const bool xml_;
    const int mode_;
    std::string name_; // of the table at hand, with a colon
    Losses losses_;
    std::map<std::pair<int, Loss>, Tally> tallies_;
};

} // namespace

Losses FindLosses(const Message& message, Encoding encoding, int mode)
{
    return Finder(message, encoding, mode).Find();
}

bool IsElementName(std::u16string_view name)
{
    const auto accepted = [](char16_t ch) {
        return (ch >= u'a' && ch <= u'z') || (ch >= u'A' && ch <= u'Z') || (ch >= u'0' && ch <= u'9') || ch == u'_' ||
               ch == u':' || (ch & 0xFF) >= 0x80;
    };
    return !name.empty() && !(name.front() >= u'0' && name.front() <= u'9') &&
           std::all_of(name.begin(), name.end(), accepted) && name != u"org_record";
}

} // namespace zntool
