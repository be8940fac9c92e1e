// Log records and their lists, kept in memory and written as lines of text that read back without loss.
//
//     Zn_LogMsgList log;
//     log.Add(u"2004-07-15 10:30:00", Zn_LogMsg::kError, u"orders", 0x83B04002, u"Fail to Open the local file.");
//     Zn_WString text;
//     log.Save(text);      // "2004-07-15 10:30:00","8","orders","0x83B04002","Fail to Open the local file."
//
// A line holds the five fields of a record between double quotes, separated by commas. In a field a
// backslash stands before what would end it: \" \\ \n \r, and \uXXXX for a character that the text
// cannot carry as it is. Records know nothing of clocks: the time is the caller's text.
//
// One list is used by one thread at a time.
#pragma once

#include "Zn_AString.h"
#include "Zn_TypedList.h"
#include "Zn_WString.h"

class ZN_API Zn_LogMsg {
public:
    // Levels are the kinds of message codes, their top four bits. Any other number is kept as well.
    static constexpr int kSuccess = 0;
    static constexpr int kWarning = 1;
    static constexpr int kNotice = 2;
    static constexpr int kError = 8;

    void Set(const Zn_LogMsg& other) { *this = other; }
    void Set(const Zn_WString& time, int level, const Zn_WString& source, int code, const Zn_WString& text);

    const Zn_WString& GetTime() const noexcept { return time_; }
    int GetLevel() const noexcept { return level_; }
    const Zn_WString& GetSource() const noexcept { return source_; }
    int GetCode() const noexcept { return code_; }
    const Zn_WString& GetText() const noexcept { return text_; }

    // The record's line, without a line end.
    Zn_WString GetLine() const { return FormatLine(false); }
    // Reads a line; 0, and nothing changes, when it has fewer than five fields. Fields without quotes
    // and codes in decimal are understood too.
    int SetLine(std::u16string_view line);

    // By field: time, source and text as texts, level and code as numbers.
    friend bool operator==(const Zn_LogMsg&, const Zn_LogMsg&) noexcept = default;

    static void InitWithMemory(Zn_LogMsg* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_LogMsg* message) { Zn_FreeInPlace(message); }

private:
    friend class Zn_LogMsgList;
    Zn_WString FormatLine(bool asciiOnly) const;

    Zn_WString time_;
    int level_ = 0;
    Zn_WString source_;
    std::int32_t code_ = 0;
    Zn_WString text_;
};

class ZN_API Zn_LogMsgHandler final : public Zn_TypedHandler<Zn_LogMsg> {
public:
    Zn_LogMsgHandler() noexcept : Zn_TypedHandler("Zn_LogMsg", 128) {}
    // 0 when all fields are equal.
    int _CompareItem(void* a, void* b) override;

    static Zn_LogMsgHandler& Instance();
    static const Zn_LogMsg& EmptyItem();
};

class ZN_API Zn_LogMsgList : public Zn_TypedList<Zn_LogMsg, Zn_LogMsgHandler> {
public:
    using Zn_TypedList::Add;
    using Zn_TypedList::Zn_TypedList;

    int Add(const Zn_WString& time, int level, const Zn_WString& source, int code, const Zn_WString& text);

    // Reads lines and appends their records (with clearFirst: replaces); lines of fewer than five fields are
    // skipped. Returns the number of records.
    int Load(std::u16string_view text, int clearFirst);
    int Load(std::string_view text, int clearFirst, unsigned codePage);
    // One line per record, each ended by a line feed. Returns the number of lines. What a code page lacks is
    // written as \uXXXX.
    int Save(Zn_WString& out) const;
    int Save(Zn_AString& out, unsigned codePage) const;

    int Assign(const Zn_LogMsgList& other) { return AssignList(other); }
    int Append(const Zn_LogMsgList& other) { return AppendList(other); }
    Zn_LogMsgList& operator+=(const Zn_LogMsgList& other)
    {
        AppendList(other);
        return *this;
    }
};
