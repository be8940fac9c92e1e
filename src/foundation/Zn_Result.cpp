#include "Zn_Result.h"

namespace {

struct ListPool : Zn_ObjBufPool {
    ListPool() noexcept : Zn_ObjBufPool("Zn_Result", static_cast<int>(sizeof(Zn_MessageList)), 32) {}
};

bool IsError(const Zn_Message* message) noexcept
{
    return message && message->code < 0;
}

// The first error of a list at or after an index; null when there is none.
const Zn_Message* FindError(const Zn_MessageList* list, int start) noexcept
{
    for (int i = start, n = list ? list->Count() : 0; i < n; ++i) {
        if (const Zn_Message* message = list->GetItem(i); IsError(message))
            return message;
    }
    return nullptr;
}

// Index of the last start mark below an end; 0 when there is none.
int FindMark(const Zn_MessageList* list, int end) noexcept
{
    for (int i = end - 1; i > 0; --i) {
        const Zn_Message* message = list->GetItem(i);
        if (message && message->code == Zn_MessageList::kStartMark)
            return i;
    }
    return 0;
}

int CodeOf(const Zn_Message* message) noexcept
{
    return message ? message->code : 0;
}

} // namespace

Zn_Result::Zn_Result(const Zn_Result& other) noexcept : code_(other.code_)
{
    ShareList(other);
}

Zn_Result& Zn_Result::operator=(const Zn_Result& other)
{
    if (this == &other)
        return *this;
    if (!messages_)
        ShareList(other);
    else if (other.messages_)
        messages_->Append(*other.messages_);
    code_ = other.code_;
    return *this;
}

void Zn_Result::Set(const Zn_Result& other) noexcept
{
    const Zn_Result kept(other); // other may be this result
    Clear();
    code_ = kept.code_;
    ShareList(kept);
}

void Zn_Result::Clear() noexcept
{
    code_ = 0;
    DropList();
}

void Zn_Result::MarkStart()
{
    if (messages_)
        messages_->MarkStart();
}

const Zn_Message* Zn_Result::operator[](int index) const noexcept
{
    const Zn_Message* message = GetMessageW(index);
    return message ? message : &Zn_MessageList::EmptyItem();
}

const Zn_Message* Zn_Result::GetFirstErrorMsg() const noexcept
{
    return FindError(messages_, 0);
}

const Zn_Message* Zn_Result::GetLastErrorMsg() const noexcept
{
    for (int i = Count() - 1; i >= 0; --i) {
        if (const Zn_Message* message = messages_->GetItem(i); IsError(message))
            return message;
    }
    return nullptr;
}

int Zn_Result::GetFirstError() const noexcept
{
    return CodeOf(GetFirstErrorMsg());
}

int Zn_Result::GetLastError() const noexcept
{
    return CodeOf(GetLastErrorMsg());
}

int Zn_Result::GetStartError() const noexcept
{
    return CodeOf(FindError(messages_, FindMark(messages_, Count())));
}

// Callers rely on the search ending one message earlier than that of GetStartError.
const Zn_Message* Zn_Result::GetStartErrorMsg() const noexcept
{
    return FindError(messages_, FindMark(messages_, Count() - 1));
}

Zn_MessageList* Zn_Result::MakeList() noexcept
{
    if (messages_)
        return messages_;
    void* memory = Zn_Global<ListPool>().Alloc();
    if (memory) {
        messages_ = new (memory) Zn_MessageList();
        Zn_ObjBufData::FromItem(memory)->AddRef();
    }
    return messages_;
}

void Zn_Result::ShareList(const Zn_Result& other) noexcept
{
    messages_ = other.messages_;
    if (messages_)
        Zn_ObjBufData::FromItem(static_cast<void*>(messages_))->AddRef();
}

void Zn_Result::DropList() noexcept
{
    Zn_MessageList* list = messages_;
    messages_ = nullptr;
    if (!list || Zn_ObjBufData::FromItem(static_cast<void*>(list))->Release() > 0)
        return;
    list->~Zn_MessageList();
    Zn_Global<ListPool>().Free(list);
}
