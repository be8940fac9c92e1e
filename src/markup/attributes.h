// The attributes of a tag from its text.
#pragma once

#include "shared_texts.h"

#include "Zn_NamedStr.h"

#include <string_view>

namespace zn {

// Appends the attributes of a text such as `a=1 b = '2' c` (see name_values.h), repeated ones too. With texts given,
// names and values that recur are shared.
void ReadAttributes(std::u16string_view text, Zn_NamedStrList& attributes, SharedTexts* texts = nullptr);

} // namespace zn
