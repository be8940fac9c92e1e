// Makes the message tables of the library from the data files in this folder, at build time.
//
//     make_message_tables OUT.cpp default.txt CODEPAGE [translation.txt CODEPAGE]...
//
// A data file is UTF-8: comments behind #, and rows of a code (eight hexadecimal digits), a blank and a text.
// "@949" behind a code of the default file keeps that text in another code page than the file's. A row that
// could harm or mislead at run time is refused with its place, and nothing is written: a bad code, a
// placeholder other than %s and %d, a character that the code page lacks, a translation that stands out of
// the default file's order or whose placeholders differ from its original's.
#include "foundation/message_placeholder.h"
#include "platform/platform.h"

#include <charconv>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

using zn::messages::NextPlaceholder;

struct Row {
    std::uint32_t code;
    std::string placeholders; // one after the other, such as "%d%s"
    std::string bytes;        // in the row's code page
};

struct Table {
    std::string fileName;
    unsigned codePage;
    std::vector<Row> rows;
};

// What is wrong with the line at hand.
struct Refusal {
    std::string reason;
};

template <class Number>
std::optional<Number> ReadNumber(std::string_view text, int base)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::u16string DecodeUtf8(std::string_view text)
{
    std::u16string out;
    for (std::size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at++]);
        const int more = lead < 0x80 ? 0 : lead >> 5 == 6 ? 1 : lead >> 4 == 14 ? 2 : -1;
        char32_t ch = more == 0 ? lead : more == 1 ? lead & 0x1F : lead & 0x0F;
        for (int i = 0; i < more; ++i, ++at) {
            if (at >= text.size() || (text[at] & 0xC0) != 0x80)
                throw Refusal{"the text is not UTF-8"};
            ch = ch << 6 | (static_cast<unsigned char>(text[at]) & 0x3F);
        }
        if (more < 0)
            throw Refusal{"the text is not UTF-8 of the basic plane"};
        out += static_cast<char16_t>(ch);
    }
    return out;
}

// The text's bytes in a code page; English text is the same in all of them.
std::string Encode(std::string_view utf8, unsigned codePage)
{
    const std::u16string text = DecodeUtf8(utf8);
    if (text.size() == utf8.size())
        return std::string(utf8);
    using Converter = zn::platform::CodePageConverter;
    Converter converter(codePage, Converter::Direction::FromUtf16);
    if (!converter.IsOpen())
        throw Refusal{"text beyond ASCII, and no converter for code page " + std::to_string(codePage)};
    std::string bytes(text.size() * 4, '\0');
    const auto result = converter.Encode(text, bytes.data(), bytes.size());
    if (result.stop != zn::platform::ConvertStop::End)
        throw Refusal{"a character that code page " + std::to_string(codePage) + " lacks"};
    bytes.resize(result.written);
    return bytes;
}

std::string PlaceholdersOf(std::string_view text)
{
    std::string all;
    for (std::size_t at = 0; at < text.size();) {
        const auto found = NextPlaceholder(text, at);
        at = found.end;
        if (found.start == text.size() || (found.conversion == '%' && found.flags == 0))
            continue;
        const std::string_view spec = text.substr(found.start, found.end - found.start);
        const bool known = found.conversion == 's' || found.conversion == 'd';
        if (!known || found.hasModifier || found.flags > 4)
            throw Refusal{"the placeholder \"" + std::string(spec) + "\" (only %s and %d, with flags and width)"};
        all += spec;
    }
    return all;
}

Row ReadRow(std::string_view line, unsigned codePage)
{
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos || blank + 1 == line.size())
        throw Refusal{"a row without text"};
    std::string_view head = line.substr(0, blank);
    if (const std::size_t at = head.find('@'); at != std::string_view::npos) {
        const auto page = ReadNumber<unsigned>(head.substr(at + 1), 10);
        if (!page)
            throw Refusal{"a bad code page"};
        codePage = *page;
        head = head.substr(0, at);
    }
    const auto code = ReadNumber<std::uint32_t>(head, 16);
    if (!code || head.size() != 8)
        throw Refusal{"a bad code"};
    const std::string_view text = line.substr(blank + 1);
    return {*code, PlaceholdersOf(text), Encode(text, codePage)};
}

// Translations follow the order of their originals; next is the first original not yet passed.
void CheckTranslation(const Row& row, const std::vector<Row>& originals, std::size_t& next)
{
    while (next < originals.size() && originals[next].code != row.code)
        ++next;
    if (next == originals.size())
        throw Refusal{"no original for this code, or out of the originals' order"};
    if (originals[next].placeholders != row.placeholders)
        throw Refusal{"the original's placeholders are \"" + originals[next].placeholders + "\""};
    ++next;
}

Table ReadTable(const std::string& fileName, unsigned codePage, const Table* original)
{
    Table table{fileName, codePage, {}};
    std::ifstream file(fileName, std::ios::binary);
    if (!file)
        throw Refusal{fileName + ": cannot be read"};
    std::size_t next = 0;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line.front() == '#')
            continue;
        try {
            table.rows.push_back(ReadRow(line, codePage));
            if (original)
                CheckTranslation(table.rows.back(), original->rows, next);
        } catch (const Refusal& refusal) {
            throw Refusal{fileName + ":" + std::to_string(number) + ": " + refusal.reason};
        }
    }
    if (table.rows.empty())
        throw Refusal{fileName + ": no rows"};
    return table;
}

// A number in as many digits.
std::string Digits(std::uint32_t number, unsigned base, int count)
{
    std::string digits(static_cast<std::size_t>(count), '0');
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, number /= base)
        *digit = "0123456789ABCDEF"[number % base];
    return digits;
}

std::string Quoted(std::string_view bytes)
{
    std::string out = "\"";
    for (const char ch : bytes) {
        const auto byte = static_cast<unsigned char>(ch);
        if (byte < 0x20 || byte >= 0x7F) {
            out += '\\' + Digits(byte, 8, 3);
        } else {
            if (ch == '"' || ch == '\\')
                out += '\\';
            out += ch;
        }
    }
    return out + '"';
}

std::string SourceOf(const std::vector<Table>& tables)
{
    std::ostringstream out;
    out << "// Made by make_message_tables; change the data files instead.\n"
           "#include \"foundation/message_tables.h\"\n\n"
           "namespace zn::messages {\n";
    std::string directory;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        const std::string name = i == 0 ? "kDefaultTable" : "kTable" + std::to_string(tables[i].codePage);
        out << (i == 0 ? "\nconst" : "\nstatic constexpr") << " Zn_ErrorMsgRow " << name << "[] = {\n";
        for (const Row& row : tables[i].rows)
            out << "    {"
                << "0x" << Digits(row.code, 16, 8) << "u, " << Quoted(row.bytes) << "},\n";
        out << "    {0, nullptr},\n};\n";
        directory += "    {" + std::to_string(tables[i].codePage) + ", " + name + "},\n";
    }
    out << "\nconst Zn_ErrorMsgLanguage kLanguages[] = {\n"
        << directory << "    {0, nullptr},\n};\n\n} // namespace zn::messages\n";
    return out.str();
}

int Run(const std::vector<std::string>& args)
{
    if (args.size() < 3 || args.size() % 2 == 0)
        throw Refusal{"usage: make_message_tables OUT.cpp default.txt CODEPAGE [translation.txt CODEPAGE]..."};
    std::vector<Table> tables;
    for (std::size_t i = 1; i < args.size(); i += 2) {
        const auto codePage = ReadNumber<unsigned>(args[i + 1], 10);
        if (!codePage)
            throw Refusal{args[i + 1] + ": no code page"};
        tables.push_back(ReadTable(args[i], *codePage, tables.empty() ? nullptr : &tables.front()));
    }
    std::ofstream out(args[0], std::ios::binary);
    out << SourceOf(tables);
    out.close();
    if (!out)
        throw Refusal{args[0] + ": cannot be written"};
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return Run({argv + 1, argv + argc});
    } catch (const Refusal& refusal) {
        std::cerr << refusal.reason << '\n';
        return 1;
    }
}
