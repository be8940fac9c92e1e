// How a command ends early: an exit code and one line for standard error, thrown up to main.
//
// The code says where the mistake stands: on the command line (BadUsage: options, edit commands, tables
// and columns that it names) or in what it names (BadData: files that can't be read or written, messages,
// scripts, conflicts). The line names file, place and reason.
#pragma once

#include <stdexcept>
#include <string>

namespace zntool {

enum ExitCode { Done = 0, BadData = 1, BadUsage = 2 };

class Failure : public std::runtime_error {
public:
    Failure(ExitCode exitCode, const std::string& text) : std::runtime_error(text), code(exitCode) {}

    ExitCode code;
};

// One line on standard error, "zn: " before it.
void Complain(const std::string& text);

} // namespace zntool
