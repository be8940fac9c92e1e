// What an operation answers: a code - negative means an error - and, when there is more to say, messages.
//
// Most results are a bare code and cost nothing. The first AddMsg makes a message list, which copies
// of the result share from then on: a message added through one copy is seen in all of them.
// Zn_MsgView and Zn_ErrorMsg turn the messages into text for a person.
//
//     Zn_Result result = form.Load(u"orders.xml");
//     if (result < 0)
//         Show(Zn_MsgView(result, 949).GetText());
//
// Results that share a list are used by one thread at a time. Nothing here fails in another way than
// by what it returns: 0, null or an empty text.
#pragma once

#include "Zn_Message.h"

#undef GetMessage // again: the headers of Windows may have come in between

class ZN_API Zn_Result {
public:
    Zn_Result() noexcept = default;
    Zn_Result(int code) noexcept : code_(code) {}
    Zn_Result(const Zn_Result& other) noexcept;
    Zn_Result(Zn_Result&& other) noexcept : code_(other.code_), messages_(other.messages_)
    {
        other.messages_ = nullptr;
    }
    ~Zn_Result() { DropList(); }

    // Sets the code only; the messages stay.
    Zn_Result& operator=(int code) noexcept
    {
        code_ = code;
        return *this;
    }
    // Takes the code. The other's messages are appended to this result's when both have a list;
    // else this result shares the other's list.
    Zn_Result& operator=(const Zn_Result& other);
    // Forgets what was here, then takes the code and shares the list.
    void Set(const Zn_Result& other) noexcept;
    void Clear() noexcept;

    operator int() const noexcept { return code_; }
    int GetLastCode() const noexcept { return code_; }
    // The code, and the code's bits under a mask - but 0 while the result has no list, whatever code
    // was assigned: callers rely on it to see whether anything was reported.
    int GetCode() const noexcept { return messages_ ? code_ : 0; }
    int Mask(int mask) const noexcept { return messages_ ? code_ & mask : 0; }

    // Sets the code and appends a message; the parameters are wide texts ended by a null pointer.
    // Source file and line are not kept.
    template <class... Texts>
    void AddMsg(int code, const char* sourceFile, int line, const Texts&... texts)
    {
        code_ = code;
        if (Zn_MessageList* list = MakeList())
            list->AddMsg(code, sourceFile, line, texts...);
    }
    // Marks where an operation starts, for GetStartError; nothing happens while there is no list.
    // The code stays.
    void MarkStart();

    int Count() const noexcept { return messages_ ? messages_->Count() : 0; }
    // Never null: an empty message when the index is out of range.
    const Zn_Message* operator[](int index) const noexcept;
    // Null when there is none at the index. (Two names: the headers of Windows turn one into the other.)
    const Zn_Message* GetMessage(int index) const noexcept { return GetMessageW(index); }
    const Zn_Message* GetMessageW(int index) const noexcept { return messages_ ? messages_->GetItem(index) : nullptr; }
    Zn_Message* GetSafeMessage(int index) noexcept { return messages_ ? messages_->GetSafeItem(index) : nullptr; }
    // Null while there is no list.
    const Zn_MessageList* GetMessageList() const noexcept { return messages_; }
    Zn_MessageList* GetSafeMessageList() noexcept { return messages_; }

    // The first or last message with a negative code: its code, or 0; the message, or null.
    int GetFirstError() const noexcept;
    int GetLastError() const noexcept;
    const Zn_Message* GetFirstErrorMsg() const noexcept;
    const Zn_Message* GetLastErrorMsg() const noexcept;
    // The first error at or after the last start mark (the whole list when there is no mark).
    int GetStartError() const noexcept;
    // The same, as a message; but a mark that is the very last message is not seen: the search then
    // starts at the mark before it. Callers rely on the difference.
    const Zn_Message* GetStartErrorMsg() const noexcept;

    // One line per message: six fixed fields, the code and the parameters, which are not escaped.
    // Returns the length of out in bytes; 0 when there are no messages.
    int Save(Zn_AString& out, unsigned codePage) const;
    // Appends the messages of such lines (with clearFirst: replaces). A line of fewer than seven
    // fields is skipped; the code of the result stays. Returns the number of messages.
    int Load(const char* text, int clearFirst, unsigned codePage);
    // One line per message: "0xCODE","COUNT","param",... with backslashes and quotes escaped.
    Zn_WString GetMessageStr() const;
    // The parameters of one message, escaped, joined by commas; "No Message" when there is none at the
    // index. The text is wide, so nothing is lost to the code page.
    Zn_WString GetMessageStr(int index, unsigned codePage) const;
    // One line per message: "code","time","source","line","parameters".
    Zn_WString GetMsgWithFormat(unsigned codePage) const;
    // GetMessageStr of the last message; empty without a list.
    Zn_WString GetLastMsg() const;

private:
    Zn_MessageList* MakeList() noexcept;
    void ShareList(const Zn_Result& other) noexcept;
    void DropList() noexcept;

    std::int32_t code_ = 0;
    Zn_MessageList* messages_ = nullptr;
};
