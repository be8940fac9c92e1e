#include "commands.h"

#include "output.h"

#include "Zn_ErrorMsg.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace zntool {
namespace {

struct MessageWishes {
    std::string code;
    std::vector<std::string> params;
    unsigned language = 0; // the locale's
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

// A code as tables and logs show it (83B04002, 0x83B04002), or as a signed number (-1).
int ReadCode(std::string_view text)
{
    const bool marked = text.starts_with("0x") || text.starts_with("0X");
    if (marked || text.size() == 8) {
        if (const auto code = ReadNumber<std::uint32_t>(marked ? text.substr(2) : text, 16))
            return static_cast<int>(*code);
    }
    if (const auto code = ReadNumber<std::int32_t>(text, 10))
        return *code;
    throw Failure(BadUsage, std::string(text) + ": no message code; one looks like 83B04002, 0x83B04002 or -1");
}

std::string CodeText(std::uint32_t code)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (int shift = 28; shift >= 0; shift -= 4)
        text += kDigits[code >> shift & 0xF];
    return text;
}

void PrintMessage(const MessageWishes& wishes)
{
    const int code = ReadCode(wishes.code);
    Zn_WStrList params;
    for (const std::string& param : wishes.params)
        params.Add(Zn_WString::FromUtf8(param));
    Zn_WString text;
    if (!Zn_ErrorMsg().GetText(wishes.language, text, code, params))
        throw Failure(BadUsage, CodeText(static_cast<std::uint32_t>(code)) + ": no such message; see zn messages");
    Output out;
    out.Write(text.ToUtf8() + "\n");
    out.Flush();
}

void PrintMessages(unsigned language)
{
    const Zn_ErrorMsg texts;
    Output out;
    for (const Zn_ErrorMsgRow* row = texts.GetTable(language); row && row->text; ++row)
        out.Write(CodeText(row->code) + "  " + texts.GetRowText(language, *row).ToUtf8() + "\n");
    out.Flush();
}

void AddLanguageOption(CLI::App& command, MessageWishes& wishes)
{
    command
        .add_option("--language", wishes.language,
                    "1252 English, 949 Korean, 932 Japanese (else that of the locale, or English)")
        ->check(CLI::IsMember({1252, 949, 932}).description(""))
        ->type_name("1252|949|932");
}

} // namespace

void AddMessage(CLI::App& app, ExitCode&)
{
    const auto wishes = std::make_shared<MessageWishes>();
    CLI::App* command = app.add_subcommand("message", "Print the message of a code");
    command->add_option("CODE", wishes->code, "eight hexadecimal digits, with or without 0x, or a signed number")
        ->required();
    command->add_option("PARAM", wishes->params, "what its placeholders stand for, in order");
    AddLanguageOption(*command, *wishes);
    command->footer("A placeholder without a PARAM is left empty; the language falls back to English.\n"
                    "Example: zn message 84A60110 10.0.0.7 --language 949");
    command->callback([wishes] { PrintMessage(*wishes); });
}

void AddMessages(CLI::App& app, ExitCode&)
{
    const auto wishes = std::make_shared<MessageWishes>();
    CLI::App* command = app.add_subcommand("messages", "List all messages of a language");
    AddLanguageOption(*command, *wishes);
    command->footer("A code that stands more than once is looked up by its first line.\n"
                    "Example: zn messages --language 932");
    command->callback([wishes] { PrintMessages(wishes->language); });
}

} // namespace zntool
