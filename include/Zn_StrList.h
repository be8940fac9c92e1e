// Ordered lists of strings, and the splitting of text into them.
//
//     Zn_WStrList parts;
//     parts.Parse(u"name:d,age", u",", u'\\');    // "name:d" and "age"
//
// One list is used by one thread at a time.
#pragma once

#include "Zn_AString.h"
#include "Zn_WString.h"

#include <vector>

template <class String, class Char>
class Zn_StringList {
public:
    using View = std::basic_string_view<Char>;

    Zn_StringList() noexcept = default;
    // Without memory a copy is empty, and a list that is assigned to stays as it was.
    Zn_StringList(const Zn_StringList& other) noexcept { Append(&other); }
    Zn_StringList(Zn_StringList&&) noexcept = default;
    Zn_StringList& operator=(const Zn_StringList& other) noexcept
    {
        Zn_StringList copy(other);
        if (copy.Count() == other.Count())
            items_.swap(copy.items_);
        return *this;
    }
    Zn_StringList& operator=(Zn_StringList&&) noexcept = default;
    ~Zn_StringList() = default;

    int Add(const String& text);
    int Add(const Char* text, int length = -1) { return Add(String(text, length)); }
    // Appends copies of the other list's strings (null: none); returns the count.
    int Append(const Zn_StringList* other) noexcept;
    // Null when out of range; the NN form gives the shared empty string instead.
    const String* GetItem(int index) const noexcept;
    const String& GetItemNN(int index) const noexcept;
    String* GetSafeItem(int index) noexcept;
    int Delete(int start, int count = 1);
    int Count() const noexcept { return static_cast<int>(items_.size()); }
    void Clear() noexcept { items_.clear(); }

    // Splits text at each of the separator characters and appends the pieces; returns the count. Empty
    // text has no pieces; a separator at the end has an empty one behind it.
    //   escape      makes the next character literal and is itself dropped, also between quotes; 0 for none.
    //               At the end of the text it stands for itself
    //   trim        takes white space off both ends of a piece, except escaped or quoted white space
    //   skipEmpty   drops empty pieces; a pair of quotes with nothing in it is a piece
    //   keepQuoted  a run between two equal quotes (" or ') is kept in one piece; a quote without its mate is
    //               a character like any other
    //   unquote     takes the quotes off a piece that is nothing but quoted runs: "a" gives a, "a""" too
    //   limit       at most that many pieces, the last holding the rest; 0 for no limit
    int Parse(View text, View separators, Char escape, int trim = 0, int skipEmpty = 0, int keepQuoted = 0,
              int unquote = 0, int limit = 0);
    int Parse(const Char* text, const Char* separators, Char escape, int trim = 0, int skipEmpty = 0,
              int keepQuoted = 0, int unquote = 0, int limit = 0)
    {
        return Parse(text ? View(text) : View(), separators ? View(separators) : View(), escape, trim, skipEmpty,
                     keepQuoted, unquote, limit);
    }

    auto begin() const noexcept { return items_.begin(); }
    auto end() const noexcept { return items_.end(); }

private:
    std::vector<String> items_;
};

extern template class ZN_API Zn_StringList<Zn_WString, char16_t>;
extern template class ZN_API Zn_StringList<Zn_AString, char>;

using Zn_WStrList = Zn_StringList<Zn_WString, char16_t>;
using Zn_AStrList = Zn_StringList<Zn_AString, char>;
