// What the tool must ask the operating system about its standard streams.
#pragma once

#include <cstdio>
#include <string>

namespace zntool {

bool IsTerminal(std::FILE* stream);
// Keeps the system from translating line ends.
void MakeBinary(std::FILE* stream);
// On standard error, at once; what can't be written there can't be reported anywhere.
void WriteError(const std::string& text);
// Whether output on a stream may carry colour: a terminal, and NO_COLOR is not set.
bool WantsColour(std::FILE* stream);

} // namespace zntool
