#include "commands.h"

#include "editor.h"
#include "files.h"
#include "output_options.h"
#include "progress.h"

#include <memory>

namespace zntool {
namespace {

struct Options {
    std::string in;
    std::string out;
    std::vector<std::string> commands;
    std::vector<std::string> scripts;
    bool changes = false;
    OutputWishes wishes;
};

void Edit(const Options& options)
{
    if (options.commands.empty() && options.scripts.empty())
        throw Failure(BadUsage, "edit: there is nothing to do; give commands or --script FILE");
    std::vector<EditCommand> commands = ParseEditArguments(options.commands);
    for (const std::string& script : options.scripts) {
        const Zn_Buffer bytes = ReadFile(script);
        const std::vector<EditCommand> more = ParseEditScript(AsText(bytes), FileLabel(script));
        commands.insert(commands.end(), more.begin(), more.end());
    }
    Message message = ReadWholeMessage(options.in);
    {
        Progress progress("editing " + message.label);
        Editor editor(message);
        for (std::size_t i = 0; i < commands.size(); ++i) {
            editor.Run(commands[i]);
            progress.Set(static_cast<long long>(i), static_cast<long long>(commands.size()));
        }
        editor.Finish();
    }
    OutputWishes wishes = options.wishes;
    if (options.changes)
        wishes.mode = ChangesOnly;
    WriteMessage(message, options.out, wishes);
}

constexpr const char* kFooter =
    "Commands, each one argument or one line of a script:\n"
    "  set TABLE ROW COLUMN=VALUE ...     insert TABLE COLUMN=VALUE ...     delete TABLE ROW\n"
    "  constant TABLE COLUMN=VALUE ...    param NAME=VALUE ...\n"
    "ROW is the number that show prints (deleting a row moves no numbers; inserted rows count on), or COLUMN=VALUE for "
    "the\n"
    "one row with that value. A value with blanks stands in double quotes, where \\\" \\\\ \\n \\r \\t \\uXXXX are "
    "known. DATE is\n"
    "YYYYMMDD, BLOB is Base64. NAME= is no value, NAME=\"\" an empty text. In a script # begins a comment line.\n"
    "Nothing is written unless every command fits.\n"
    "Examples: zn edit store.bin edited.bin 'set invoices 3 Total=9.99' 'delete invoices InvoiceId=7'\n"
    "          zn edit store.bin changes.xml --changes insert customers CustomerId=60 FirstName=Ann City='São Paulo'\n"
    "          zn edit store.bin edited.bin --script edits.txt";

} // namespace

void AddEdit(CLI::App& app, ExitCode&)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("edit", "Set, insert and delete rows, every change remembered");
    command->add_option("IN", options->in, "the message to read, or -")->required();
    command->add_option("OUT", options->out, "the file to write, or -; may be IN")->required();
    command->add_option("COMMAND", options->commands, "what to change; see below");
    command->add_option("-f,--script", options->scripts, "a file of commands, or -; carried out behind the arguments")
        ->type_name("FILE")
        ->allow_extra_args(false);
    CLI::Option* changes =
        command->add_flag("--changes", options->changes, "write only rows that changed, now or before (mode 2)");
    AddModeOption(*command, options->wishes)->excludes(changes);
    AddEncodingOption(*command, options->wishes, false);
    AddCodePageOption(*command, options->wishes);
    command->footer(kFooter);
    command->callback([options] { Edit(*options); });
}

} // namespace zntool
