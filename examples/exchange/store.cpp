#include "store.h"

#include <cstdio>
#include <set>

namespace exchange {

namespace {

// Codes of the library's message tables.
constexpr int kFailed = -1;
constexpr int kKeyExists = static_cast<int>(0x81A50139);
constexpr int kRowChanged = static_cast<int>(0x81A50143);

Zn_WString ValueOf(const Zn_Variant* value)
{
    return value->ToString();
}

// A change fits when the rows that it updates or deletes are still what the client saw, the keys that it brings are
// free, and no row is changed twice.
class ChangeCheck {
public:
    ChangeCheck(const Zn_Dataset& table, const Zn_Dataset& changes, Zn_Result& result)
        : table_(table), changes_(changes), result_(result), key_(KeyOf(table))
    {
    }

    void Run()
    {
        for (int n = 0; n < changes_.GetDelRowCount(); ++n)
            CheckOld([&](auto column) { return ValueOf(changes_.GetDelColumnNN(n, column)); });
        for (int row = 0; row < changes_.GetRowCount(); ++row) {
            const bool isNew = changes_.GetRowType(row) == Zn_Record::Inserted;
            if (!isNew)
                CheckOld([&](auto column) { return ValueOf(changes_.GetOrgColumnNN(row, column)); });
            const Zn_WString now = ValueOf(changes_.GetColumnNN(row, key_));
            if (isNew || now != ValueOf(changes_.GetOrgColumnNN(row, key_)))
                CheckNew(now);
        }
    }

private:
    template <class Original>
    void CheckOld(Original original)
    {
        const Zn_WString which = original(Zn_NameArg(key_));
        const int row = table_.LookupDataRow(key_, which);
        bool fits = row >= 0 && touched_.insert(std::u16string(which.GetView())).second;
        for (int column = 0; fits && column < changes_.GetNormalCount(); ++column)
            fits = ValueOf(table_.GetColumnNN(row, changes_.GetColID(column))) == original(column);
        if (!fits)
            Report(kRowChanged, which);
    }

    void CheckNew(const Zn_WString& now)
    {
        if (table_.LookupDataRow(key_, now) >= 0 || !brought_.insert(std::u16string(now.GetView())).second)
            Report(kKeyExists, now);
    }

    void Report(int code, const Zn_WString& about)
    {
        result_.AddMsg(code, __FILE__, __LINE__, table_.GetId(), about, nullptr);
    }

    const Zn_Dataset& table_;
    const Zn_Dataset& changes_;
    Zn_Result& result_;
    Zn_WString key_;
    std::set<std::u16string> touched_, brought_; // keys of rows
};

Message MakeAnswer(const Zn_Result& result, int applied, int number)
{
    Message answer;
    Zn_AString lines;
    result.Save(lines, 65001);
    answer.params.AddVariable(u"code", Zn_Variant(static_cast<int>(result)));
    answer.params.AddVariable(u"applied", Zn_Variant(applied));
    answer.params.AddVariable(u"number", Zn_Variant(number));
    answer.params.AddStr(u"result", Zn_WString::FromUtf8(lines));
    return answer;
}

} // namespace

bool Store::Load(const Zn_Buffer& bytes)
{
    Form form{};
    return Decode(content_, bytes, form);
}

Zn_Buffer Store::Save()
{
    const std::lock_guard guard(lock_);
    Message tables;
    tables.tables = content_.tables;
    return Encode(tables, Form::Binary, AllRows);
}

Message Store::Answer(const Message& request)
{
    const std::lock_guard guard(lock_);
    const Zn_WString what = request.params.Var(u"request").ToString();
    LastChange& last = lastChanges_[std::u16string(request.params.Var(u"client").ToString().GetView())];
    if (what == u"change")
        return Change(request, last);
    Zn_Result result;
    if (what != u"load")
        result.AddMsg(kFailed, __FILE__, __LINE__, u"unknown request", what, nullptr);
    Message answer = MakeAnswer(result, 0, last.number);
    if (what == u"load")
        answer.tables = content_.tables;
    return answer;
}

// A change that was answered before is answered the same way again, and not applied a second time.
Message Store::Change(const Message& request, LastChange& last)
{
    const int number = static_cast<int>(request.params.Var(u"number").ToInteger());
    const bool again = number == last.number && number > 0;
    if (!quiet_)
        std::printf("%s, change %d%s\n", request.params.Var(u"client").ToString().ToUtf8().c_str(), number,
                    again ? ", again" : "");
    if (again)
        return last.answer;
    Zn_Result result;
    if (number != last.number + 1) {
        result.AddMsg(kFailed, __FILE__, __LINE__, u"not the number of the next change", nullptr);
        return MakeAnswer(result, 0, last.number);
    }
    const int applied = Apply(request, result);
    last.number = number;
    last.answer = MakeAnswer(result, applied, number);
    return last.answer;
}

// Applies all changes of a request or, when one of them does not fit, none. Returns the number of rows.
int Store::Apply(const Message& request, Zn_Result& result)
{
    for (const Zn_Dataset& changes : request.tables) {
        if (CountChanges(changes) == 0)
            continue;
        if (const Zn_Dataset* table = content_.tables.GetItem(changes.GetId().GetText()))
            ChangeCheck(*table, changes, result).Run();
        else
            result.AddMsg(kFailed, __FILE__, __LINE__, u"unknown table", changes.GetId(), nullptr);
    }
    if (!quiet_)
        PrintResult(result);
    if (result < 0)
        return 0;
    int applied = 0;
    for (const Zn_Dataset& changes : request.tables) {
        if (CountChanges(changes) == 0)
            continue;
        if (!quiet_)
            PrintChanges(changes);
        Bring(*content_.tables.GetSafeItem(changes.GetId().GetText()), changes);
        applied += CountChanges(changes);
    }
    ++appliedRequests_;
    return applied;
}

void Store::Bring(Zn_Dataset& table, const Zn_Dataset& changes)
{
    const Zn_WString key = KeyOf(table);
    for (int n = 0; n < changes.GetDelRowCount(); ++n)
        table.DeleteRow(table.LookupDataRow(key, ValueOf(changes.GetDelColumnNN(n, key))));
    for (int from = 0; from < changes.GetRowCount(); ++from) {
        const bool isNew = changes.GetRowType(from) == Zn_Record::Inserted;
        const int to =
            isNew ? table.AppendRow(0) : table.LookupDataRow(key, ValueOf(changes.GetOrgColumnNN(from, key)));
        for (int column = 0; column < changes.GetNormalCount(); ++column) {
            const Zn_Variant* value = changes.GetColumn(from, column);
            if (value && (isNew || ValueOf(value) != ValueOf(changes.GetOrgColumnNN(from, column))))
                table.SetColumn(to, changes.GetColID(column), value);
        }
    }
}

void Serve(Store& store, Zn_Socket& socket)
{
    for (;;) {
        Zn_Buffer bytes;
        if (socket.RecvAllData(bytes, kTimeoutSeconds) < 0)
            return;
        Message request;
        Form form{};
        if (!Decode(request, bytes, form))
            return;
        Message answer = store.Answer(request);
        if (socket.SendAllData(Encode(answer, form, AllRows)) != 0)
            return;
    }
}

} // namespace exchange
