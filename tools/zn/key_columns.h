// Rows found by the values of key columns.
#pragma once

#include "cell_text.h"

#include <string>
#include <vector>

namespace zntool {

// The key of a row as one text: the values of the key columns, told apart by their lengths. value(column) gives the
// row's value at a position among the columns.
template <class ValueOf>
std::u16string KeyText(const std::vector<int>& columns, ValueOf value)
{
    if (columns.size() == 1)
        return TextOf(value(columns[0]));
    std::u16string key;
    for (const int column : columns) {
        const std::u16string part = TextOf(value(column));
        key += static_cast<char16_t>(part.size() & 0xFFFF);
        key += part;
    }
    return key;
}

} // namespace zntool
