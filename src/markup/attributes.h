// The attributes of a tag from its text.
#pragma once

#include "shared_texts.h"

#include "Zn_NamedStr.h"

#include <string_view>

namespace zn {

// Appends the attributes of a text such as `a=1 b = '2' c` (see name_values.h), repeated ones too. Short names and
// values share their body with those remembered, if any are.
void ReadAttributes(std::u16string_view text, Zn_NamedStrList& attributes, SharedTexts* texts = nullptr);

} // namespace zn
