// The commands of the tool, one source each. AddXxx makes the command's part of the command line: options, help
// with an example, and what runs when it is chosen. A command that fails throws Failure (failure.h); one that ends
// with something else than Done sets the exit code it is given.
//
// A new command is a new source with such a function, a line here and a name in main.cpp.
#pragma once

#include "failure.h"

namespace CLI {
class App;
}

namespace zntool {

void AddShow(CLI::App& app, ExitCode& exitCode);
void AddInfo(CLI::App& app, ExitCode& exitCode);
void AddConvert(CLI::App& app, ExitCode& exitCode);
void AddEdit(CLI::App& app, ExitCode& exitCode);
void AddApply(CLI::App& app, ExitCode& exitCode);
void AddAppend(CLI::App& app, ExitCode& exitCode);
void AddMerge(CLI::App& app, ExitCode& exitCode);
void AddReset(CLI::App& app, ExitCode& exitCode);
void AddAccept(CLI::App& app, ExitCode& exitCode);
void AddCompress(CLI::App& app, ExitCode& exitCode);
void AddDecompress(CLI::App& app, ExitCode& exitCode);
void AddMessage(CLI::App& app, ExitCode& exitCode);
void AddMessages(CLI::App& app, ExitCode& exitCode);
void AddHtml(CLI::App& app, ExitCode& exitCode);
void AddXml(CLI::App& app, ExitCode& exitCode);
void AddSend(CLI::App& app, ExitCode& exitCode);
void AddReceive(CLI::App& app, ExitCode& exitCode);
void AddConfig(CLI::App& app, ExitCode& exitCode);

} // namespace zntool
