// Text of names and values, `a=1 b = '2' c`: the attributes of a tag, the text form of variables.
//
// The text is split at blanks, tabs and line ends, runs in quotes kept whole and a backslash making the next
// character literal; then each token is read by what stands before it. A token without "=" is a name; while
// that name waits for its "=", tokens that do not begin with one are skipped (so `x y=1` gives only x).
#pragma once

#include "Zn_StrList.h"

#include <string_view>

namespace zn {

// Where a value stood. It has its quotes still.
enum class ValuePlace {
    None,     // a name alone; the value is empty
    WithName, // name=value in one token
    OwnToken  // behind "=" in another token
};

struct NameValue {
    std::u16string_view name; // may be empty
    std::u16string_view value;
    ValuePlace place;

    bool IsQuoted() const noexcept { return !value.empty() && (value.front() == u'"' || value.front() == u'\''); }
};

// Takes the plain attribute at the front of text (name="value" or name=value, without backslashes), as nearly all are;
// false, and text stays but for blanks in front, when something else stands there.
bool TakePlainAttribute(std::u16string_view& text, NameValue& pair) noexcept;

template <class Add>
class NameValueReader {
public:
    using View = std::u16string_view;

    explicit NameValueReader(Add& add) noexcept : add_(add) {}

    void Token(View token)
    {
        switch (state_) {
        case State::Start:
            return Begin(token);
        case State::Name:
            if (token.front() != u'=')
                return;
            if (token.size() == 1)
                state_ = State::Equals;
            else
                Finish(token.substr(1), ValuePlace::OwnToken);
            return;
        case State::Equals:
            return Finish(token, ValuePlace::OwnToken);
        }
    }
    void End()
    {
        if (state_ != State::Start)
            Finish({}, ValuePlace::None);
    }

private:
    enum class State { Start, Name, Equals };

    void Begin(View token)
    {
        const std::size_t equals = token.find(u'=');
        name_ = token.substr(0, equals);
        if (equals == View::npos)
            state_ = State::Name;
        else if (equals + 1 == token.size())
            state_ = State::Equals;
        else
            Finish(token.substr(equals + 1), ValuePlace::WithName);
    }
    void Finish(View value, ValuePlace place)
    {
        state_ = State::Start;
        add_(NameValue{name_, value, place});
    }

    Add& add_;
    State state_ = State::Start;
    View name_;
};

// Calls add(const NameValue&) for each pair of the text, in order. The views live as long as the call.
template <class Add>
void ReadNameValues(std::u16string_view text, Add add)
{
    for (NameValue pair; TakePlainAttribute(text, pair);)
        add(pair);
    if (text.empty())
        return;
    Zn_WStrList tokens;
    tokens.Parse(text, u" \t\r\n", u'\\', 1, 1, 1);
    NameValueReader<Add> reader(add);
    for (const Zn_WString& token : tokens)
        reader.Token(token.GetView());
    reader.End();
}

} // namespace zn
