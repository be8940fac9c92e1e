// What the tool must ask the operating system about its standard streams.
#pragma once

#include <cstdio>

namespace zntool {

bool IsTerminal(std::FILE* stream);
// Keeps the system from translating line ends.
void MakeBinary(std::FILE* stream);
// Whether output on a stream may carry colour: a terminal, and NO_COLOR is not set.
bool WantsColour(std::FILE* stream);

} // namespace zntool
