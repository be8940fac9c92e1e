#include "commands.h"

#include "cell_text.h"
#include "container.h"
#include "csv.h"
#include "output_options.h"
#include "progress.h"
#include "table_states.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>

namespace zntool {
namespace {

struct Options {
    std::string in;
    std::string out;
    OutputWishes wishes;
    std::string dataset;
    std::vector<std::string> types;
    std::string delimiter = ",";
    std::string from;
    bool compress = false;
};

char DelimiterOf(const Options& options)
{
    const std::string& text = options.delimiter;
    if (text == "tab" || text == "\\t")
        return '\t';
    if (text.size() != 1 || text[0] == '"' || text[0] == '\r' || text[0] == '\n')
        throw Failure(BadUsage, "--delimiter " + text + ": give one character, or tab");
    return text[0];
}

Message ReadCsvMessage(const Options& options)
{
    Message message;
    message.label = FileLabel(options.in);
    message.encoding = Encoding::Csv;
    message.codePage = message.paramCodePage = kUtf8;
    std::string name = options.dataset;
    if (name.empty() && options.in != "-")
        name = std::filesystem::path(FormName(options.in)).stem().string();
    if (name.empty())
        throw Failure(BadUsage, "--dataset NAME is needed: standard input does not name the table");
    const ColumnTypes types = ParseColumnTypes(options.types);
    const Progress progress("reading " + message.label);
    long long compressedBytes = 0;
    const Zn_Buffer bytes = ReadRestored(options.in, compressedBytes);
    Zn_Dataset& table = *message.tables.GetSafeItem(0, 1);
    table.Change2CodePage(kUtf8);
    table.SetId(Zn_WString::FromUtf8(name));
    ReadCsv(AsText(bytes), message.label, DelimiterOf(options), types, table);
    return message;
}

// What a message has, types of columns apart, and CSV has no place for; empty for nothing.
std::string LeftOutOfCsv(const Message& message, const Zn_Dataset& table)
{
    const States states = CountStates(table);
    std::string text;
    for (const auto& [count, what] :
         {std::pair(message.params.Count(), "parameter"), std::pair(message.tables.Count() - 1, "other table"),
          std::pair(table.GetConstCount(), "constant column"), std::pair(states.inserted + states.updated, "row state"),
          std::pair(states.originals, "original"), std::pair(states.deleted, "deleted row")}) {
        if (count > 0)
            text += (text.empty() ? "" : ", ") + Counted(count, what);
    }
    return text;
}

void WriteCsvFile(Message& message, const Options& options)
{
    if (options.dataset.empty() && message.tables.Count() != 1)
        throw Failure(BadUsage,
                      "--dataset NAME is needed: CSV holds one table (there is: " + TableNames(message) + ")");
    const Zn_Dataset& table = options.dataset.empty() ? *message.tables[0] : FindTable(message, options.dataset);
    const std::string label = FileLabel(options.out, true);
    {
        const Progress progress("writing " + label);
        WriteFile(options.out, WriteCsv(table, DelimiterOf(options)));
    }
    const std::string left = LeftOutOfCsv(message, table);
    if (!left.empty())
        Complain(label + ": " + ToUtf8(table.GetId().GetView()) + ": CSV has no place for " + left);
}

// One table of the message alone.
void KeepTable(Message& message, const std::string& name)
{
    const Zn_Dataset* kept = &FindTable(message, name);
    for (int i = message.tables.Count() - 1; i >= 0; --i) {
        if (message.tables[i] != kept)
            message.tables.Delete(i);
    }
}

void SayUnchangedRows(const Message& message, const std::string& out)
{
    int left = 0;
    for (const Zn_Dataset& table : message.tables)
        left += CountStates(table).normal;
    if (left > 0)
        Complain(FileLabel(out, true) + ": mode 2 leaves out " + Counted(left, "row") + " without a change");
}

void Convert(const Options& options)
{
    const Encoding encoding = OutputEncoding(options.out, options.wishes, std::nullopt);
    const bool fromCsv = options.from.empty() ? HasExtension(FormName(options.in), ".csv") : options.from == "csv";
    if (!options.types.empty() && !fromCsv)
        throw Failure(BadUsage, "--types goes with CSV as IN; other messages know their types");
    OutputWishes wishes = options.wishes;
    wishes.compress = options.compress || IsNamedCompressed(options.out);
    if (*wishes.compress && encoding == Encoding::Csv)
        throw Failure(BadUsage, FileLabel(options.out, true) + ": CSV is not compressed; zn compress does that");
    Message message = fromCsv ? ReadCsvMessage(options) : ReadWholeMessage(options.in);
    if (encoding == Encoding::Csv)
        return WriteCsvFile(message, options);
    if (!options.dataset.empty() && !fromCsv)
        KeepTable(message, options.dataset);
    WriteMessage(message, options.out, wishes);
    if (options.wishes.mode == ChangesOnly)
        SayUnchangedRows(message, options.out);
}

constexpr const char* kFooter =
    "The form of OUT follows --to, else the extension .xml, .bin or .csv, which .lz may follow. The form of IN,\n"
    "compressed or not, is told by content; CSV by the extension .csv or --from csv. Mode 1 loses nothing: a message\n"
    "without changes is the same in modes 0 and 1, one that holds changed rows alone (mode 2) stays so. The code page\n"
    "is that of IN; CSV is UTF-8 and tells neither types nor sizes of columns.\n"
    "CSV without --types: a column whose values are all dates (YYYYMMDD) is DATE, whole numbers INT, numbers DECIMAL,\n"
    "any other STRING; numbers with leading zeros stay text. An empty field is no value, \"\" an empty text.\n"
    "What the form of OUT can't hold is said on standard error.\n"
    "Examples: zn convert store.bin store.xml\n"
    "          zn convert store.bin - --to csv --dataset invoices | head\n"
    "          zn convert prices.csv prices.bin --types Id:INT,Price:CURRENCY,Note:STRING:80";

} // namespace

void AddConvert(CLI::App& app, ExitCode&)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("convert", "Convert between XML, binary and CSV");
    command->add_option("IN", options->in, "the message to read, or -")->required();
    command->add_option("OUT", options->out, "the file to write, or -")->required();
    AddEncodingOption(*command, options->wishes, true);
    AddModeOption(*command, options->wishes);
    AddCodePageOption(*command, options->wishes);
    command->add_option("-d,--dataset", options->dataset, "this table alone; for CSV as IN: what to call it")
        ->type_name("NAME");
    command
        ->add_option("--from", options->from, "the form of IN, whatever it is called; only CSV is not told by content")
        ->transform(CLI::IsMember({"xml", "bin", "csv"}, CLI::ignore_case).description(""))
        ->type_name("xml|bin|csv");
    command->add_option("--types", options->types, "types of CSV columns, as Id:INT,Total:DECIMAL,City:STRING:40")
        ->type_name("NAME:TYPE,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_option("--delimiter", options->delimiter, "of CSV fields; tab for a tabulator")
        ->type_name("CHARACTER");
    command->add_flag("--compress", options->compress, "compress OUT, as a name ending in .lz does too");
    command->footer(kFooter);
    command->callback([options] { Convert(*options); });
}

} // namespace zntool
