#include "Zn_DOMElement.h"

#include "markup/work_stack.h"

#include <utility>

// ---- handler -----------------------------------------------------------------------------------

Zn_DOMElemHandler::Zn_DOMElemHandler() noexcept : Zn_TypedHandler("Zn_DOMElement", 128) {}

int Zn_DOMElemHandler::_CompareItem(void* a, void* b)
{
    return a == b ? 0 : -1;
}

Zn_DOMElemHandler& Zn_DOMElemHandler::Instance()
{
    return Zn_Global<Zn_DOMElemHandler>();
}

const Zn_DOMElement& Zn_DOMElemHandler::EmptyItem()
{
    return Zn_Global<Zn_DOMElement>();
}

// ---- copies and destruction --------------------------------------------------------------------

Zn_DOMElemList::Zn_DOMElemList(const Zn_DOMElemList& other) : Zn_DOMElemList(other.codePage_)
{
    CopySettings(other);
    CopyNodes(other);
}

Zn_DOMElemList::Zn_DOMElemList(Zn_DOMElemList&& other) noexcept : Zn_DOMElemList(other.codePage_)
{
    CopySettings(other);
    SwapList(other);
}

Zn_DOMElemList& Zn_DOMElemList::operator=(const Zn_DOMElemList& other)
{
    if (this != &other)
        *this = Zn_DOMElemList(other); // a copy first: `other` may stand below this list
    return *this;
}

Zn_DOMElemList& Zn_DOMElemList::operator=(Zn_DOMElemList&& other) noexcept
{
    if (this == &other)
        return *this;
    CopySettings(other);
    Zn_DOMElemList old;
    old.SwapList(*this); // its nodes go last: `other` may stand below them
    SwapList(other);
    return *this;
}

Zn_DOMElemList& Zn_DOMElemList::operator=(const Zn_DOMElemList* other)
{
    if (other)
        *this = *other;
    return *this;
}

Zn_DOMElemList& Zn_DOMElemList::operator+=(const Zn_DOMElemList& other)
{
    AppendList(other);
    return *this;
}

Zn_DOMElemList& Zn_DOMElemList::operator+=(const Zn_DOMElemList* other)
{
    if (other)
        *this += *other;
    return *this;
}

int Zn_DOMElemList::Assign(const Zn_DOMElemList* source, Zn_DOMElement* parent)
{
    if (source) {
        *this = *source;
        SetParents(parent);
    }
    return Count();
}

int Zn_DOMElemList::Append(const Zn_DOMElemList* source, Zn_DOMElement* parent)
{
    if (source) {
        *this += *source;
        SetParents(parent);
    }
    return Count();
}

int Zn_DOMElemList::Add(const Zn_DOMElement& item, Zn_DOMElement* parent)
{
    const int index = Zn_ObjList::Add(&item);
    if (Zn_DOMElement* added = GetSafeItem(index)) {
        added->parent_ = parent;
        added->parentIndex_ = index;
    }
    return index;
}

int Zn_DOMElemList::Add(const Zn_DOMElement* item, Zn_DOMElement* parent)
{
    return item ? Add(*item, parent) : -1;
}

Zn_DOMElement* Zn_DOMElemList::AppendNew()
{
    const int index = Count();
    auto* item = static_cast<Zn_DOMElement*>(Zn_ObjList::GetSafeItem(index, 1));
    if (!item)
        return nullptr;
    item->children.codePage_ = codePage_;
    item->parentIndex_ = index;
    return item;
}

void Zn_DOMElemList::CopySettings(const Zn_DOMElemList& other) noexcept
{
    codePage_ = other.codePage_;
    parseContent_ = other.parseContent_;
    parseAttributes_ = other.parseAttributes_;
    keepText_ = other.keepText_;
}

void Zn_DOMElemList::SetParents(Zn_DOMElement* parent) noexcept
{
    for (int i = 0, n = Count(); i < n; ++i) {
        if (Zn_DOMElement* item = GetSafeItem(i)) {
            item->parent_ = parent;
            item->parentIndex_ = i;
        }
    }
}

// Appends copies of the nodes of another list and of all that is below them, level by level.
void Zn_DOMElemList::CopyNodes(const Zn_DOMElemList& other)
{
    struct Level {
        Zn_DOMElemList* to;
        const Zn_DOMElemList* from;
        int next;
    };
    zn::WorkStack<Level> levels;
    levels.Push({this, &other, 0});
    while (!levels.IsEmpty()) {
        Level& level = levels.Top();
        if (level.next == level.from->Count()) {
            levels.Pop();
            continue;
        }
        const Zn_DOMElement* source = level.from->GetItem(level.next++);
        Zn_DOMElement* copy = source ? level.to->AppendNew() : nullptr;
        if (!copy)
            continue;
        copy->parentIndex_ = -1;
        copy->CopyNode(*source);
        copy->children.CopySettings(source->children);
        if (source->children.Count() > 0)
            levels.Push({&copy->children, &source->children, 0});
    }
}

// ---- look-ups ----------------------------------------------------------------------------------

int Zn_DOMElemList::FindTag(const char16_t* tag, int nth) const noexcept
{
    const std::u16string_view wanted = tag ? tag : u"";
    if (wanted.empty())
        return -1;
    int matches = 0;
    for (int i = 0, n = Count(); i < n; ++i) {
        const Zn_DOMElement* item = GetItem(i);
        if (item && zn_iequal(item->tag.GetView(), wanted) && matches++ >= nth)
            return i;
    }
    return -1;
}

const Zn_DOMElement* Zn_DOMElemList::FindTagRecurs(const char16_t* tag, int nth, int& count) const
{
    struct Level {
        const Zn_DOMElemList* list;
        int next;
    };
    const std::u16string_view wanted = tag ? tag : u"";
    zn::WorkStack<Level> levels;
    levels.Push({this, 0});
    while (!levels.IsEmpty()) {
        Level& level = levels.Top();
        if (level.next == level.list->Count()) {
            levels.Pop();
            continue;
        }
        const Zn_DOMElement* item = level.list->GetItem(level.next++);
        if (!item || item->tag.IsEmpty())
            continue;
        if (zn_iequal(item->tag.GetView(), wanted) && count++ == nth)
            return item;
        if (item->children.Count() > 0)
            levels.Push({&item->children, 0});
    }
    return nullptr;
}

const Zn_DOMElement* Zn_DOMElemList::FindTagRecurs(const char16_t* tag, int nth) const
{
    int count = 0;
    return FindTagRecurs(tag, nth, count);
}

Zn_DOMElement* Zn_DOMElemList::FindSafeTagRecurs(const char16_t* tag, int nth, int& count)
{
    return const_cast<Zn_DOMElement*>(FindTagRecurs(tag, nth, count));
}

Zn_DOMElement* Zn_DOMElemList::FindSafeTagRecurs(const char16_t* tag, int nth)
{
    int count = 0;
    return FindSafeTagRecurs(tag, nth, count);
}
