// What Zn_WString and Zn_AString have in common: text of one character type in one pointer,
// shared by copies until one of them writes.
//
// The pointer is null for the empty text, so zeroed memory is a valid empty string. Positions and
// lengths are in characters (code units) and int; positions out of range are brought into it.
// When memory runs out an operation leaves the text as it was.
#pragma once

#include "Zn_Base.h"
#include "Zn_RefCount.h"
#include "Zn_Text.h"

#include <compare>
#include <string>
#include <string_view>

template <class Char, class Self>
class Zn_StringBase {
public:
    using View = std::basic_string_view<Char>;

    int GetLength() const noexcept { return text_ ? HeaderOf(text_)->length : 0; }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    // The text, terminated, never null; valid until this string changes.
    const Char* GetText() const noexcept { return text_ ? text_ : &kNul; }
    View GetView() const noexcept { return View(GetText(), static_cast<std::size_t>(GetLength())); }
    operator const Char*() const noexcept { return GetText(); }
    operator View() const noexcept { return GetView(); }

    // The character at a position; 0 outside the text.
    Char GetAt(int pos) const noexcept { return InRange(pos) ? text_[pos] : Char(0); }
    Char operator[](std::ptrdiff_t pos) const noexcept { return pos >= 0 && pos < GetLength() ? text_[pos] : Char(0); }
    // Replaces one character; nothing happens outside the text.
    void SetAt(int pos, Char ch) noexcept;
    // A writable buffer of at least minLength characters and a terminator behind them, whose start
    // holds the present text and whose rest is zeroed. The length becomes at least minLength: call
    // FreeExtra with what was really filled. Null when memory runs out.
    Char* GetSafeBuffer(int minLength) noexcept;
    // Cuts the text to length characters, or to its first terminator when length is -1, and gives back the
    // room behind it.
    void FreeExtra(int length = -1) noexcept;
    // Room for a text of that many characters, so that appending up to it moves nothing.
    void Reserve(int length) noexcept;
    void Empty() noexcept;

    Self Left(int n) const;
    Self Right(int n) const;
    Self Mid(int start) const;
    Self Mid(int start, int n) const;
    // Index of the first match at or after start, or -1. An empty sought text is found nowhere.
    int Find(const Char* what, int start = 0) const noexcept;
    int Find(Char ch, int start = 0) const noexcept;
    // Replaces every occurrence from left to right; returns how many.
    int Replace(const Char* what, const Char* with);
    int Replace(Char what, Char with) noexcept;
    // Takes white space off both ends of this string and returns it.
    Self& Trim();
    // Takes one enclosing pair off this string and returns it. Flag 0: quotes ("" or '') that match,
    // or brackets () [] {} <>. Flag 1: quotes only, and a quote at the start that has no mate goes too.
    Self& TrimBrace(int flag = 0);

    // Ordinal comparison: below, equal to or above 0.
    int Compare(View other) const noexcept;
    int Compare(const Char* other) const noexcept { return Compare(ViewOf(other)); }
    int Compare(const Self& other) const noexcept { return Compare(other.GetView()); }

    // Leading blanks, then sign and digits, clamped to 32 bits; 0 when there are none.
    int ToInteger() const noexcept;
    // Leading blanks, then the longest prefix that is a decimal number ("." as point); else 0.
    double ToDouble() const noexcept;
    // Optional sign, digits, at most one point, at least one digit, nothing else.
    bool IsNumber() const noexcept;

    friend bool operator==(const Self& a, const Self& b) noexcept { return a.GetView() == b.GetView(); }
    friend bool operator==(const Self& a, const Char* b) noexcept { return a.GetView() == ViewOf(b); }
    friend bool operator==(const Self& a, View b) noexcept { return a.GetView() == b; }
    friend std::strong_ordering operator<=>(const Self& a, const Self& b) noexcept { return a.Compare(b) <=> 0; }
    friend std::strong_ordering operator<=>(const Self& a, const Char* b) noexcept { return a.Compare(b) <=> 0; }
    friend std::strong_ordering operator<=>(const Self& a, View b) noexcept { return a.Compare(b) <=> 0; }

protected:
    Zn_StringBase() noexcept = default;
    Zn_StringBase(const Zn_StringBase& other) noexcept : text_(Share(other.text_)) {}
    Zn_StringBase(Zn_StringBase&& other) noexcept : text_(other.text_) { other.text_ = nullptr; }
    Zn_StringBase& operator=(const Zn_StringBase& other) noexcept
    {
        Char* shared = Share(other.text_);
        Drop(text_);
        text_ = shared;
        return *this;
    }
    Zn_StringBase& operator=(Zn_StringBase&& other) noexcept
    {
        Char* mine = text_;
        text_ = other.text_;
        other.text_ = mine;
        return *this;
    }
    ~Zn_StringBase() { Drop(text_); }

    static View ViewOf(const Char* text) noexcept { return text ? View(text) : View(); }
    static View ViewOf(const Char* text, int length) noexcept
    {
        return length < 0 || !text ? ViewOf(text) : View(text, static_cast<std::size_t>(length));
    }
    // Both accept views into this string itself.
    void AssignView(View view);
    void AppendView(View view);

private:
    struct Header {
        Zn_RefCount refs;
        std::int32_t length;
        std::int32_t capacity;
    };

    static Header* HeaderOf(Char* text) noexcept { return reinterpret_cast<Header*>(text) - 1; }
    static Char* Share(Char* text) noexcept
    {
        if (text)
            HeaderOf(text)->refs.AddRef();
        return text;
    }
    static void Drop(Char* text) noexcept
    {
        if (text && HeaderOf(text)->refs.Release() == 0)
            FreeBody(HeaderOf(text));
    }
    bool InRange(int pos) const noexcept { return pos >= 0 && pos < GetLength(); }
    static Char* NewBody(int capacity) noexcept;
    static void FreeBody(Header* header) noexcept;
    bool IsOwn() const noexcept { return text_ && HeaderOf(text_)->refs.Get() == 1; }
    // Changes the capacity of a body that is this string's own.
    bool Resize(int capacity) noexcept;
    void SetLength(int length) noexcept
    {
        text_[length] = Char(0);
        HeaderOf(text_)->length = length;
    }
    // Makes the body this string's own with room for capacity characters; false when memory runs out.
    bool MakeOwn(int capacity) noexcept;

    static inline constexpr Char kNul = Char(0);
    Char* text_ = nullptr;
};

class Zn_AString;
class Zn_WString;
extern template class ZN_API Zn_StringBase<char, Zn_AString>;
extern template class ZN_API Zn_StringBase<char16_t, Zn_WString>;
