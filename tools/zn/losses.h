// What a message loses in the form it is to be written in, found before it is written.
//
// The list of such cases with the way around each stands in docs/compatibility.md.
#pragma once

#include "message_io.h"

namespace zntool {

struct Losses {
    std::vector<std::string> lines; // one per kind and column: "customers: column Note: ..."
    std::string unreadable;         // why nobody could read the outcome; empty when it can be read
};

Losses FindLosses(const Message& message, Encoding encoding, int mode);

// Whether the XML reader takes a text for the name of an element: of ASCII only letters, digits (not first), "_" and
// ":"; of all others those whose low eight bits are 0x80 or more.
bool IsElementName(std::u16string_view name);

} // namespace zntool
