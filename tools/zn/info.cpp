#include "commands.h"

#include "cell_text.h"
#include "message_io.h"
#include "table_states.h"
#include "table_view.h"

#include "Zn_CodePage.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace zntool {
namespace {

std::u16string Number(long long value)
{
    const std::string text = std::to_string(value);
    return {text.begin(), text.end()};
}

std::string CodePageText(unsigned codePage)
{
    if (codePage == 0)
        return "differs by table";
    const char* charset = zn_findcharset(codePage);
    return std::to_string(codePage) + (*charset ? " (" + std::string(charset) + ")" : "");
}

// One line per table: its figures, and its code page where the tables differ.
std::vector<std::u16string> Figures(const Message& message, int index)
{
    const Zn_Dataset& table = *message.tables[index];
    const States states = CountStates(table);
    const auto place = static_cast<std::size_t>(index);
    std::vector<std::u16string> figures{Printable(table.GetId().GetView())};
    for (const int count : {table.GetNormalCount(), table.GetConstCount(), table.GetRowCountNF(), states.normal,
                            states.inserted, states.updated, states.deleted, states.originals})
        figures.push_back(Number(count));
    figures.push_back(place < message.tableBytes.size() ? Number(message.tableBytes[place]) : u"?");
    if (message.codePage == 0)
        figures.push_back(Number(table.GetCurrentCodePage()));
    return figures;
}

void PrintInfo(const Message& message)
{
    Output out;
    out.Write("file        " + message.label + "\n");
    out.Write(message.encoding == Encoding::Xml ? "encoding    XML\n" : "encoding    binary\n");
    out.Write("code page   " + CodePageText(message.codePage) + "\n");
    if (message.encoding == Encoding::Binary && message.paramCodePage != message.codePage)
        out.Write("parameters  in code page " + CodePageText(message.paramCodePage) + "\n");
    out.Write("bytes       " + std::to_string(message.bytes) + "\n");
    if (message.compressedBytes > 0)
        out.Write("compressed  to " + std::to_string(message.compressedBytes) + " bytes\n");
    out.Write("parameters  " + std::to_string(message.params.Count()) + "\n");
    out.Write("tables      " + std::to_string(message.tables.Count()) + "\n\n");
    if (message.tables.Count() == 0)
        return;

    std::vector<ViewColumn> columns{{u"table"}};
    for (const char16_t* title :
         {u"columns", u"constant", u"rows", u"normal", u"inserted", u"updated", u"deleted", u"originals", u"bytes"})
        columns.push_back({title, true});
    if (message.codePage == 0)
        columns.push_back({u"code page", true});
    std::vector<std::vector<std::u16string>> lines;
    lines.reserve(static_cast<std::size_t>(message.tables.Count()));
    for (int i = 0; i < message.tables.Count(); ++i)
        lines.push_back(Figures(message, i));
    PrintTable(
        out, columns, lines.size(),
        [&](std::size_t line, std::size_t column, ViewCell& cell) { cell.text = lines[line][column]; }, 0);
    out.Flush();
}

} // namespace

void AddInfo(CLI::App& app, ExitCode& exitCode)
{
    const auto file = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("info", "Tell a message's encoding, code page and figures");
    command->add_option("FILE", *file, "the message, or -")->required();
    command->footer(
        "rows counts the rows that are there; deleted rows and originals of updated ones are kept beside them.\n"
        "Example: zn info changes.bin");
    command->callback([file, &exitCode] {
        const Message message = ReadMessage(*file);
        PrintInfo(message);
        if (!message.damage.empty()) {
            Complain(message.label + ": " + message.damage);
            exitCode = BadData;
        }
    });
}

} // namespace zntool
