// zn: shows, converts and edits messages of parameters and tables.
#include "commands.h"
#include "terminal.h"

#include <CLI/CLI.hpp>

#include <new>

namespace zntool {

void Complain(const std::string& text)
{
    WriteError("zn: " + text + "\n");
}

namespace {

constexpr const char* kFooter =
    "FILE may be - for standard input or output. 'zn COMMAND --help' has an example.\n"
    "Exit codes: 0 done; 1 a file can't be read or written, or what is in it is wrong; 2 the command line is wrong.";

int Run(int argc, char** argv)
{
    ExitCode exitCode = Done;
    CLI::App app("Shows, converts and edits messages of parameters and tables.", "zn");
    app.require_subcommand(1);
    app.set_version_flag("--version", "zn " ZN_VERSION);
    app.footer(kFooter);
    for (const auto add :
         {AddShow, AddInfo, AddConvert, AddEdit, AddApply, AddAppend, AddMerge, AddReset, AddAccept, AddCompress,
          AddDecompress, AddMessage, AddMessages, AddHtml, AddXml, AddConfig, AddSend, AddReceive})
        add(app, exitCode);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error); // help or version
        Complain(error.what());
        Complain("see zn --help");
        return BadUsage;
    } catch (const Failure& failure) {
        Complain(failure.what());
        return failure.code;
    } catch (const std::bad_alloc&) {
        Complain("out of memory");
        return BadData;
    }
    return exitCode;
}

} // namespace
} // namespace zntool

int main(int argc, char** argv)
{
    return zntool::Run(argc, argv);
}
