// The messages of a result as a person reads them: one line per message, in a language.
//
//     for (const Zn_WString& line : Zn_MsgView(result, 949))
//         Show(line);
//
// A view is made once and holds its lines: what happens to the result later does not change it.
#pragma once

#include "Zn_ErrorMsg.h"
#include "Zn_Result.h"

class ZN_API Zn_MsgView {
public:
    // The language is that of a code page (0: the locale's). Marks are left out. A code that the tables do
    // not know is shown by its number and parameters; a result without messages by its code, and one of
    // code 0 without messages not at all.
    explicit Zn_MsgView(const Zn_Result& result, unsigned codePage = 0);
    Zn_MsgView(const Zn_Result& result, unsigned codePage, const Zn_ErrorMsg& texts);

    int Count() const noexcept { return lines_.Count(); }
    // The empty text when the index is out of range.
    const Zn_WString& GetLine(int index) const noexcept { return lines_.GetItemNN(index); }
    // All lines, each ended by a line feed.
    Zn_WString GetText() const;

    auto begin() const noexcept { return lines_.begin(); }
    auto end() const noexcept { return lines_.end(); }

private:
    Zn_WStrList lines_;
};
