#include "Zn_ErrorMsg.h"

#include "Zn_CodePage.h"
#include "foundation/message_tables.h"

namespace {

const char* FindRow(const Zn_ErrorMsgRow* rows, int code) noexcept
{
    for (; rows && rows->text; ++rows) {
        if (rows->code == static_cast<std::uint32_t>(code))
            return rows->text;
    }
    return nullptr;
}

} // namespace

Zn_ErrorMsg::Zn_ErrorMsg() noexcept : Zn_ErrorMsg(zn::messages::kDefaultTable, zn::messages::kLanguages) {}

Zn_ErrorMsg::~Zn_ErrorMsg() = default;

const Zn_ErrorMsgLanguage* Zn_ErrorMsg::FindLanguage(unsigned codePage) const noexcept
{
    for (const Zn_ErrorMsgLanguage* entry = languages_; entry && entry->codePage; ++entry) {
        if (entry->codePage == codePage)
            return entry;
    }
    return nullptr;
}

// Callers rely on which code page the texts are read with: only a table that was found under the
// locale's code page, on the second look, is read with its own.
Zn_ErrorMsg::Table Zn_ErrorMsg::FindTable(unsigned codePage) const noexcept
{
    if (const Zn_ErrorMsgLanguage* entry = FindLanguage(codePage))
        return {entry->rows, 0};
    const unsigned active = zn_activecodepage(codePage);
    if (const Zn_ErrorMsgLanguage* entry = FindLanguage(active))
        return {entry->rows, active};
    return {defaultTable_, 0};
}

Zn_ErrorMsg::Table Zn_ErrorMsg::FindForReader(unsigned codePage) const noexcept
{
    const unsigned active = zn_activecodepage(codePage);
    const Zn_ErrorMsgLanguage* entry = FindLanguage(active);
    return entry && entry->rows != defaultTable_ ? Table{entry->rows, active} : DefaultForReader();
}

Zn_ErrorMsg::Table Zn_ErrorMsg::DefaultForReader() const noexcept
{
    return {defaultTable_, defaultTable_ == zn::messages::kDefaultTable ? zn::messages::kDefaultTableCodePage : 0};
}

int Zn_ErrorMsg::GetText(unsigned codePage, Zn_WString& out, int code, const Zn_WStrList& params) const
{
    Table table = FindForReader(codePage);
    const char* text = FindRow(table.rows, code);
    if (!text) {
        table = DefaultForReader();
        text = FindRow(table.rows, code);
    }
    if (!text) {
        out.Empty();
        return 0;
    }
    out = Fill(Zn_WString(text, -1, table.codePage), params);
    return 1;
}

int Zn_ErrorMsg::GetMsg(unsigned codePage, Zn_WString& out, int code) const
{
    const Table table = FindTable(codePage);
    const char* text = FindRow(table.rows, code);
    if (!text) {
        out.Empty();
        return 0;
    }
    out.Set(text, -1, table.codePage);
    return 1;
}

int Zn_ErrorMsg::FillMsg(unsigned codePage, Zn_WString& out, int code, std::span<const Zn_MsgParam> params) const
{
    Zn_WString text;
    if (!GetMsg(codePage, text, code))
        return 0;
    out = Fill(text, params);
    return 1;
}

int Zn_ErrorMsg::GetPMsgv(unsigned codePage, Zn_WString& out, int code, std::va_list args) const
{
    Zn_WString text;
    if (!GetMsg(codePage, text, code))
        return 0;
    out.Formatv(text, args);
    return 1;
}

// Unlike GetMsg it does not ask for the locale's code page; callers rely on it.
const char* Zn_ErrorMsg::GetMsgPtr(unsigned codePage, int code) const noexcept
{
    const Zn_ErrorMsgLanguage* entry = FindLanguage(codePage);
    return FindRow(entry ? entry->rows : defaultTable_, code);
}

Zn_WString Zn_ErrorMsg::GetRowText(unsigned codePage, const Zn_ErrorMsgRow& row) const
{
    return Zn_WString(row.text, -1, FindForReader(codePage).codePage);
}
