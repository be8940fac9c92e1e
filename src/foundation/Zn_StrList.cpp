#include "Zn_StrList.h"
#include "Zn_TypedList.h"

#include <algorithm>
#include <new>

namespace {

struct SplitRules {
    bool trim;
    bool skipEmpty;
    bool keepQuoted;
    bool unquote;
};

// Reads pieces off a text one by one.
template <class Char>
class Splitter {
public:
    using View = std::basic_string_view<Char>;

    Splitter(View text, View separators, Char escape, SplitRules rules) noexcept
        : text_(text), separators_(separators), escape_(escape), rules_(rules)
    {
    }

    // Reads the next piece, or with all the whole rest as one; false when the text is used up.
    bool Next(bool all)
    {
        if (all && rules_.skipEmpty)
            SkipEmptyPieces();
        if (ended_ || text_.empty())
            return false;
        piece_.clear();
        bare_.clear();
        kept_ = 0;
        onlyQuoted_ = true;
        if (!rules_.keepQuoted)
            noMate_[0] = noMate_[1] = false;
        while (at_ < text_.size() && (all || !IsSeparator(text_[at_])))
            TakeOne(all);
        ended_ = at_ >= text_.size();
        ++at_;
        piece_.resize(kept_);
        return true;
    }

    // Whether nothing but white space that is trimmed stood there; an empty pair of quotes is something.
    bool IsEmpty() const noexcept { return piece_.empty(); }
    View Piece() const noexcept { return rules_.unquote && onlyQuoted_ ? View(bare_) : View(piece_); }

private:
    bool IsSeparator(Char ch) const noexcept { return separators_.find(ch) != View::npos; }
    bool IsEscaped(std::size_t at) const noexcept
    {
        return escape_ != Char(0) && text_[at] == escape_ && at + 1 < text_.size();
    }

    void TakeOne(bool all)
    {
        const Char ch = text_[at_];
        if (IsEscaped(at_)) {
            Keep(text_[at_ + 1]);
            at_ += 2;
        } else if (const std::size_t mate = FindMate(ch, all); mate != View::npos) {
            TakeQuoted(mate);
        } else {
            ++at_;
            if (!rules_.trim || !zn_isspace(ch))
                Keep(ch);
            else if (kept_ > 0) // inner or trailing white space
                piece_ += ch;
        }
    }

    void Keep(Char ch)
    {
        piece_ += ch;
        kept_ = piece_.size();
        onlyQuoted_ = false;
    }

    void TakeQuoted(std::size_t mate)
    {
        onlyQuoted_ = onlyQuoted_ && piece_.size() == kept_;
        piece_ += text_[at_];
        const std::size_t start = piece_.size();
        for (++at_; at_ < mate; ++at_) {
            if (IsEscaped(at_))
                ++at_;
            piece_ += text_[at_];
        }
        if (onlyQuoted_)
            bare_.append(piece_, start);
        piece_ += text_[at_++];
        kept_ = piece_.size();
    }

    // Where the run ends that a quote at at_ begins; npos when no quote stands there, or one without
    // its mate, which is a character like any other. Without keepQuoted a run ends with its piece.
    std::size_t FindMate(Char quote, bool all) noexcept
    {
        if ((quote != Char('"') && quote != Char('\'')) || (!rules_.keepQuoted && !rules_.unquote))
            return View::npos;
        bool& none = noMate_[quote == Char('"')];
        for (std::size_t at = at_ + 1; !none && at < text_.size(); ++at) {
            if (IsEscaped(at))
                ++at;
            else if (text_[at] == quote)
                return at;
            else if (!rules_.keepQuoted && !all && IsSeparator(text_[at]))
                break;
        }
        none = true; // so that a text full of lone quotes is not searched for each of them
        return View::npos;
    }

    void SkipEmptyPieces() noexcept
    {
        while (at_ < text_.size() && (IsSeparator(text_[at_]) || (rules_.trim && zn_isspace(text_[at_]))))
            ++at_;
        ended_ = at_ >= text_.size();
    }

    View text_;
    View separators_;
    Char escape_;
    SplitRules rules_;
    std::size_t at_ = 0;
    bool ended_ = false;
    bool noMate_[2] = {false, false};
    std::basic_string<Char> piece_;
    std::basic_string<Char> bare_; // the piece without quotes, while it is made of quoted runs alone
    std::size_t kept_ = 0;         // length of the piece up to what may not be trimmed
    bool onlyQuoted_ = true;
};

} // namespace

template <class String, class Char>
int Zn_StringList<String, Char>::Add(const String& text)
{
    try {
        items_.push_back(text);
        return Count() - 1;
    } catch (const std::bad_alloc&) {
        return -1;
    }
}

template <class String, class Char>
int Zn_StringList<String, Char>::Append(const Zn_StringList* other) noexcept
{
    try {
        if (other) {
            const std::size_t count = other->items_.size();
            items_.reserve(items_.size() + count);
            for (std::size_t i = 0; i < count; ++i)
                items_.push_back(other->items_[i]);
        }
    } catch (const std::bad_alloc&) { // the list stays as it was
    }
    return Count();
}

template <class String, class Char>
const String* Zn_StringList<String, Char>::GetItem(int index) const noexcept
{
    return index >= 0 && index < Count() ? &items_[static_cast<std::size_t>(index)] : nullptr;
}

template <class String, class Char>
const String& Zn_StringList<String, Char>::GetItemNN(int index) const noexcept
{
    const String* item = GetItem(index);
    return item ? *item : Zn_Global<String>();
}

template <class String, class Char>
String* Zn_StringList<String, Char>::GetSafeItem(int index) noexcept
{
    return const_cast<String*>(GetItem(index));
}

template <class String, class Char>
int Zn_StringList<String, Char>::Delete(int start, int count)
{
    if (start < 0 || start >= Count() || count <= 0)
        return 0;
    count = std::min(count, Count() - start);
    const auto first = items_.begin() + start;
    items_.erase(first, first + count);
    return count;
}

template <class String, class Char>
int Zn_StringList<String, Char>::Parse(View text, View separators, Char escape, int trim, int skipEmpty, int keepQuoted,
                                       int unquote, int limit)
{
    try {
        Splitter<Char> splitter(text, separators, escape, {trim != 0, skipEmpty != 0, keepQuoted != 0, unquote != 0});
        const std::int64_t most = limit > 0 ? std::int64_t{Count()} + limit : 0;
        while ((most == 0 || Count() < most) && splitter.Next(Count() + 1 == most)) {
            if (skipEmpty && splitter.IsEmpty())
                continue;
            String piece(splitter.Piece());
            if (piece.GetView() != splitter.Piece())
                break; // no memory
            items_.push_back(std::move(piece));
        }
    } catch (const std::bad_alloc&) { // the pieces so far stay
    }
    return Count();
}

template class Zn_StringList<Zn_WString, char16_t>;
template class Zn_StringList<Zn_AString, char>;
