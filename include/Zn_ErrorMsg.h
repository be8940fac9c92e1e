// Message texts by code and language, and the texts of system errors.
//
//     Zn_ErrorMsg texts;
//     Zn_WString line;
//     texts.GetPMsg(1252, line, 0x84A60110, u"10.0.0.7");      // "Fail to connect to specified server: 10.0.0.7."
//
// A table is an array of rows, ended by a row without text; a code may stand in it more than once
// and a look-up takes its first row. The texts are printf-style templates. The library has tables for
// the code pages 1252 (English, the default table), 949 (Korean) and 932 (Japanese); a program can
// give its own. Tables are read only, so one object may be used by several threads. An unknown code
// gives 0 or null.
#pragma once

#include "Zn_StrList.h"

#include <concepts>
#include <cstdarg>
#include <span>
#include <utility>

struct Zn_ErrorMsgRow {
    std::uint32_t code;
    const char* text; // 8-bit, in the code page of the table; null ends the table
};

struct Zn_ErrorMsgLanguage {
    unsigned codePage; // 0 ends the directory
    const Zn_ErrorMsgRow* rows;
};

// One parameter of a template: a text or a number.
class ZN_API Zn_MsgParam {
public:
    enum class Kind { Text, Integer, Decimal };

    Zn_MsgParam(Zn_WString text) noexcept : text_(std::move(text)) {}
    Zn_MsgParam(const char16_t* text) : text_(text) {}
    // 8-bit text in the locale's code page.
    Zn_MsgParam(const char* text) : text_(text, -1, 0) {}
    template <std::integral Number>
    Zn_MsgParam(Number number) noexcept : kind_(Kind::Integer), integer_(static_cast<std::int64_t>(number))
    {
    }
    Zn_MsgParam(double number) noexcept : kind_(Kind::Decimal), decimal_(number) {}

    Kind GetKind() const noexcept { return kind_; }
    // The text; for a number its decimal text.
    Zn_WString GetText() const;
    std::int64_t GetInteger() const noexcept { return integer_; }
    double GetDecimal() const noexcept { return decimal_; }

private:
    Kind kind_ = Kind::Text;
    Zn_WString text_;
    std::int64_t integer_ = 0;
    double decimal_ = 0;
};

class ZN_API Zn_ErrorMsg {
public:
    // The library's tables.
    Zn_ErrorMsg() noexcept;
    // Tables of the program's own; both must outlive the object.
    Zn_ErrorMsg(const Zn_ErrorMsgRow* defaultTable, const Zn_ErrorMsgLanguage* languages) noexcept
        : defaultTable_(defaultTable), languages_(languages)
    {
    }
    virtual ~Zn_ErrorMsg();

    // The text of a code for a person: in the language of the code page (0: the locale's), or as the default
    // table has it when there is no such language or its table lacks the code; filled with the parameters of a
    // message. A placeholder without a parameter is filled with nothing. 1, or 0 with out emptied.
    int GetText(unsigned codePage, Zn_WString& out, int code, const Zn_WStrList& params) const;

    // The template itself: 1, or 0 with out emptied. A table found under the code page asked for, and the
    // default table, are read in the locale's code page - callers rely on it - so ask for Korean with a
    // Korean locale (ZnSetLocaleCP), with code page 0 in such a locale, or use GetText.
    int GetMsg(unsigned codePage, Zn_WString& out, int code) const;
    // GetMsg filled with parameters: texts and numbers, in the order of the placeholders. What fits no
    // placeholder is left out, a placeholder without parameter is empty. 1, or 0 with out as it was.
    template <class... Params>
    int GetPMsg(unsigned codePage, Zn_WString& out, int code, const Params&... params) const
    {
        const Zn_MsgParam list[] = {Zn_MsgParam(params)..., Zn_MsgParam(0)};
        return FillMsg(codePage, out, code, std::span(list, sizeof...(Params)));
    }
    // The same with an argument list, which the caller has made to fit the template (Zn_WString::Formatv).
    int GetPMsgv(unsigned codePage, Zn_WString& out, int code, std::va_list args) const;
    // The 8-bit template, or null. Looks for the code page as it is given, then in the default table.
    const char* GetMsgPtr(unsigned codePage, int code) const noexcept;

    // The table that GetText looks into first, for listing it, and the text of one of its rows. The table may be null.
    const Zn_ErrorMsgRow* GetTable(unsigned codePage) const noexcept { return FindForReader(codePage).rows; }
    Zn_WString GetRowText(unsigned codePage, const Zn_ErrorMsgRow& row) const;

    // A template filled with parameters; safe whatever the template holds.
    static Zn_WString Fill(std::u16string_view text, std::span<const Zn_MsgParam> params);
    static Zn_WString Fill(std::u16string_view text, const Zn_WStrList& params);

private:
    struct Table {
        const Zn_ErrorMsgRow* rows;
        unsigned codePage; // to read the texts with
    };
    const Zn_ErrorMsgLanguage* FindLanguage(unsigned codePage) const noexcept;
    Table FindTable(unsigned codePage) const noexcept;
    Table FindForReader(unsigned codePage) const noexcept;
    Table DefaultForReader() const noexcept;
    int FillMsg(unsigned codePage, Zn_WString& out, int code, std::span<const Zn_MsgParam> params) const;

    const Zn_ErrorMsgRow* defaultTable_;
    const Zn_ErrorMsgLanguage* languages_;
};

// The text of a system error number (a Windows number on every platform, as zn_getlasterror gives it).
// The numbers that the library's own calls end with have the same English text everywhere, the rest the
// platform's text in the user's language, else "Unknown error.".
ZN_API Zn_WString ZnSysErrorStr(int err);
// "NUMBER:TEXT" in out, and its text pointer.
ZN_API const char16_t* ZnSysErrorStr(int err, Zn_WString& out);
// "NUMBER:TEXT" cut to size - 1 characters. Returns buffer; null without one, or for a size below 1.
ZN_API char16_t* zn_syserrstr(int err, char16_t* buffer, int size) noexcept;
