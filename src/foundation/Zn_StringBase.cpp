#include "Zn_AString.h"
#include "Zn_WString.h"

#include "foundation/brace.h"
#include "foundation/number_text.h"
#include "foundation/small_blocks.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <new>

namespace {

template <class Char>
void CopyChars(Char* to, const Char* from, std::size_t count) noexcept
{
    if (count > 0)
        std::memmove(to, from, count * sizeof(Char));
}

// Bytes of a text's body with its header and terminator; 0 when a text can't be that long.
template <class Char>
int SizeOfBody(int capacity, std::size_t header) noexcept
{
    const std::uint64_t size = header + (static_cast<std::uint64_t>(std::max(capacity, 0)) + 1) * sizeof(Char);
    return size <= std::numeric_limits<int>::max() ? static_cast<int>(size) : 0;
}

} // namespace

template <class Char, class Self>
Char* Zn_StringBase<Char, Self>::NewBody(int capacity) noexcept
{
    void* memory = zn::TakeBlock(SizeOfBody<Char>(capacity, sizeof(Header)));
    if (!memory)
        return nullptr;
    auto* header = new (memory) Header{{1}, 0, capacity};
    Char* text = reinterpret_cast<Char*>(header + 1);
    text[0] = Char(0);
    return text;
}

template <class Char, class Self>
void Zn_StringBase<Char, Self>::FreeBody(Header* header) noexcept
{
    zn::GiveBlock(header, SizeOfBody<Char>(header->capacity, sizeof(Header)));
}

template <class Char, class Self>
bool Zn_StringBase<Char, Self>::MakeOwn(int capacity) noexcept
{
    const int length = GetLength();
    if (IsOwn()) {
        const int present = HeaderOf(text_)->capacity;
        if (capacity <= present)
            return true;
        const std::int64_t grown = std::int64_t(present) + present / 2;
        const bool step = grown > capacity && grown <= std::numeric_limits<int>::max();
        return (step && Resize(static_cast<int>(grown))) || Resize(capacity);
    }
    Char* body = NewBody(std::max(capacity, length));
    if (!body)
        return false;
    CopyChars(body, GetText(), static_cast<std::size_t>(length) + 1);
    HeaderOf(body)->length = length;
    Drop(text_);
    text_ = body;
    return true;
}

template <class Char, class Self>
bool Zn_StringBase<Char, Self>::Resize(int capacity) noexcept
{
    Header* old = HeaderOf(text_);
    void* memory = zn::ResizeBlock(old, SizeOfBody<Char>(old->capacity, sizeof(Header)),
                                   SizeOfBody<Char>(capacity, sizeof(Header)));
    if (!memory)
        return false;
    auto* header = static_cast<Header*>(memory);
    header->capacity = capacity;
    text_ = reinterpret_cast<Char*>(header + 1);
    return true;
}

template <class Char, class Self>
void Zn_StringBase<Char, Self>::AssignView(View view)
{
    if (view.empty()) {
        Empty();
        return;
    }
    if (view.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return;
    const int length = static_cast<int>(view.size());
    Char* body = IsOwn() && HeaderOf(text_)->capacity >= length ? text_ : NewBody(length);
    if (!body)
        return;
    CopyChars(body, view.data(), view.size());
    if (body != text_) {
        Drop(text_);
        text_ = body;
    }
    SetLength(length);
}

template <class Char, class Self>
void Zn_StringBase<Char, Self>::AppendView(View view)
{
    const int length = GetLength();
    if (view.empty() || view.size() > static_cast<std::size_t>(std::numeric_limits<int>::max() - length))
        return;
    const Char* const text = GetText();
    const bool inside = !std::less<>()(view.data(), text) && !std::less<>()(text + length, view.data());
    const std::ptrdiff_t offset = inside ? view.data() - text : 0;
    const int total = length + static_cast<int>(view.size());
    if (!MakeOwn(total))
        return;
    CopyChars(text_ + length, inside ? text_ + offset : view.data(), view.size());
    SetLength(total);
}

template <class Char, class Self>
void Zn_StringBase<Char, Self>::SetAt(int pos, Char ch) noexcept
{
    if (InRange(pos) && text_[pos] != ch && MakeOwn(0))
        text_[pos] = ch;
}

template <class Char, class Self>
Char* Zn_StringBase<Char, Self>::GetSafeBuffer(int minLength) noexcept
{
    const int length = GetLength();
    if (!MakeOwn(minLength))
        return nullptr;
    if (minLength > length) {
        std::fill(text_ + length, text_ + minLength, Char(0));
        SetLength(minLength);
    }
    return text_;
}

template <class Char, class Self>
void Zn_StringBase<Char, Self>::FreeExtra(int length) noexcept
{
    const View view = GetView();
    const std::size_t kept = length < 0 ? view.find(Char(0)) : static_cast<std::size_t>(length);
    if (kept < view.size())
        AssignView(view.substr(0, kept));
    if (IsOwn() && HeaderOf(text_)->capacity > GetLength())
        Resize(GetLength()); // which keeps the text as it is when it fails
}

template <class Char, class Self>
void Zn_StringBase<Char, Self>::Reserve(int length) noexcept
{
    MakeOwn(length);
}

template <class Char, class Self>
void Zn_StringBase<Char, Self>::Empty() noexcept
{
    Drop(text_);
    text_ = nullptr;
}

template <class Char, class Self>
Self Zn_StringBase<Char, Self>::Left(int n) const
{
    return Mid(0, n);
}

template <class Char, class Self>
Self Zn_StringBase<Char, Self>::Right(int n) const
{
    return Mid(GetLength() - std::clamp(n, 0, GetLength()));
}

template <class Char, class Self>
Self Zn_StringBase<Char, Self>::Mid(int start) const
{
    return Mid(start, GetLength());
}

template <class Char, class Self>
Self Zn_StringBase<Char, Self>::Mid(int start, int n) const
{
    start = std::clamp(start, 0, GetLength());
    n = std::clamp(n, 0, GetLength() - start);
    if (n == GetLength())
        return static_cast<const Self&>(*this);
    return Self(GetView().substr(static_cast<std::size_t>(start), static_cast<std::size_t>(n)));
}

template <class Char, class Self>
int Zn_StringBase<Char, Self>::Find(const Char* what, int start) const noexcept
{
    const View sought = ViewOf(what);
    if (sought.empty())
        return -1;
    const std::size_t at = GetView().find(sought, static_cast<std::size_t>(std::max(start, 0)));
    return at == View::npos ? -1 : static_cast<int>(at);
}

template <class Char, class Self>
int Zn_StringBase<Char, Self>::Find(Char ch, int start) const noexcept
{
    const std::size_t at = GetView().find(ch, static_cast<std::size_t>(std::max(start, 0)));
    return at == View::npos ? -1 : static_cast<int>(at);
}

template <class Char, class Self>
int Zn_StringBase<Char, Self>::Replace(const Char* what, const Char* with)
{
    const View view = GetView();
    const View sought = ViewOf(what);
    const View put = ViewOf(with);
    if (sought.empty())
        return 0;
    std::int64_t count = 0;
    for (std::size_t at = view.find(sought); at != View::npos; at = view.find(sought, at + sought.size()))
        ++count;
    if (count == 0)
        return 0;
    const std::int64_t growth = static_cast<std::int64_t>(put.size()) - static_cast<std::int64_t>(sought.size());
    const std::int64_t length = GetLength() + count * growth;
    if (length == 0) {
        Empty();
        return static_cast<int>(count);
    }
    Char* body = length > std::numeric_limits<int>::max() ? nullptr : NewBody(static_cast<int>(length));
    if (!body)
        return 0;
    Char* out = body;
    std::size_t from = 0;
    for (std::size_t at = view.find(sought); at != View::npos; at = view.find(sought, from)) {
        out = std::copy(view.begin() + from, view.begin() + at, out);
        out = std::copy(put.begin(), put.end(), out);
        from = at + sought.size();
    }
    std::copy(view.begin() + from, view.end(), out);
    Drop(text_);
    text_ = body;
    SetLength(static_cast<int>(length));
    return static_cast<int>(count);
}

template <class Char, class Self>
int Zn_StringBase<Char, Self>::Replace(Char what, Char with) noexcept
{
    const View view = GetView();
    const auto count = static_cast<int>(std::count(view.begin(), view.end(), what));
    if (count == 0 || !MakeOwn(0))
        return 0;
    std::replace(text_, text_ + GetLength(), what, with);
    return count;
}

template <class Char, class Self>
Self& Zn_StringBase<Char, Self>::Trim()
{
    View view = GetView();
    while (!view.empty() && zn_isspace(view.front()))
        view.remove_prefix(1);
    while (!view.empty() && zn_isspace(view.back()))
        view.remove_suffix(1);
    if (view.size() != static_cast<std::size_t>(GetLength()))
        AssignView(view);
    return static_cast<Self&>(*this);
}

template <class Char, class Self>
Self& Zn_StringBase<Char, Self>::TrimBrace(int flag)
{
    const View inner = zn::WithoutBrace(GetView(), flag != 0);
    if (inner.size() != GetView().size())
        AssignView(inner);
    return static_cast<Self&>(*this);
}

template <class Char, class Self>
int Zn_StringBase<Char, Self>::Compare(View other) const noexcept
{
    return GetView().compare(other);
}

template <class Char, class Self>
int Zn_StringBase<Char, Self>::ToInteger() const noexcept
{
    return zn::ReadInteger(GetView());
}

template <class Char, class Self>
double Zn_StringBase<Char, Self>::ToDouble() const noexcept
{
    return zn::ReadDouble(GetView());
}

template <class Char, class Self>
bool Zn_StringBase<Char, Self>::IsNumber() const noexcept
{
    return zn::IsNumber(GetView());
}

template class Zn_StringBase<char16_t, Zn_WString>;
template class Zn_StringBase<char, Zn_AString>;
