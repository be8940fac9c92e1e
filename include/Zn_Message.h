// One message of a result - a code and the parameters of its text - and the list a result keeps them in.
//
// The text itself stands in tables by code and language (Zn_ErrorMsg.h). A message also has a small
// header (when, where from, which line) that the library never fills: an application may, and
// Zn_Result::GetMsgWithFormat writes it out.
//
//     Zn_Message message;
//     message.Set(__FILE__, __LINE__, code, u"orders.xml", nullptr);
//
// One message or list is used by one thread at a time.
#pragma once

#include "Zn_AString.h"
#include "Zn_StrList.h"
#include "Zn_TypedList.h"

#include <concepts>

// Parameters as callers give them: wide pointers and strings up to the first null pointer (or 0, or NULL).
class Zn_MessageParams {
public:
    template <class... Texts>
    static void Add(Zn_WStrList& list, const Texts&... texts)
    {
        static_cast<void>((AddOne(list, PointerOf(texts)) && ...));
    }

private:
    static const char16_t* PointerOf(const char16_t* text) noexcept { return text; }
    static const char16_t* PointerOf(std::nullptr_t) noexcept { return nullptr; }
    template <std::integral Zero>
    static const char16_t* PointerOf(Zero) noexcept
    {
        return nullptr;
    }
    static bool AddOne(Zn_WStrList& list, const char16_t* text) { return text && list.Add(text) >= 0; }
};

class ZN_API Zn_Message {
public:
    void Set(const Zn_Message& other) { *this = other; }
    // Replaces code and parameters; the parameters end at the first null pointer. Source file and
    // line are taken for the caller's convenience and not kept.
    template <class... Texts>
    void Set(const char* sourceFile, int line, int newCode, const Texts&... texts)
    {
        static_cast<void>(sourceFile), static_cast<void>(line);
        Clear();
        code = newCode;
        Zn_MessageParams::Add(params, texts...);
    }
    // Code 0 and no parameters; the header stays.
    void Clear();

    // The header: for the application to fill and read. Copied with the message.
    void SetHeader(int time, const char* source, int line);
    int GetTime() const noexcept { return time_; }
    const Zn_AString& GetSource() const noexcept { return source_; }
    int GetLine() const noexcept { return line_; }

    static void InitWithMemory(Zn_Message* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_Message* message) { Zn_FreeInPlace(message); }

private:
    int time_ = 0;
    Zn_AString source_;
    int line_ = 0;

public:
    std::int32_t code = 0; // negative: an error
    Zn_WStrList params;
};

class ZN_API Zn_MessageHandler final : public Zn_TypedHandler<Zn_Message> {
public:
    Zn_MessageHandler() noexcept : Zn_TypedHandler("Zn_Message", 64) {}
    // The difference of the codes, brought into the range of int.
    int _CompareItem(void* a, void* b) override;

    static Zn_MessageHandler& Instance();
    static const Zn_Message& EmptyItem();
};

class ZN_API Zn_MessageList : public Zn_TypedList<Zn_Message, Zn_MessageHandler> {
public:
    using Zn_TypedList::Zn_TypedList;

    // The code of a message that marks where an operation started.
    static constexpr std::int32_t kStartMark = 0x30000000;

    // Adds a message made as Zn_Message::Set does; returns its index.
    template <class... Texts>
    int AddMsg(int code, const char* sourceFile, int line, const Texts&... texts)
    {
        Zn_Message message;
        message.Set(sourceFile, line, code, texts...);
        return Add(message);
    }
    int MarkStart() { return AddMsg(kStartMark, "include/Zn_MessageList", 168); }

    int Assign(const Zn_MessageList& other) { return AssignList(other); }
    int Append(const Zn_MessageList& other) { return AppendList(other); }
    Zn_MessageList& operator+=(const Zn_MessageList& other)
    {
        AppendList(other);
        return *this;
    }
};
