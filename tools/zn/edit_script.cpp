#include "edit_script.h"

#include "files.h"

#include "Zn_WString.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zntool {
namespace {

struct VerbForm {
    std::string_view name;
    EditCommand::Verb verb;
    bool table;
    bool row;
    bool values;
};

constexpr std::array<VerbForm, 5> kVerbs{{
    {"set", EditCommand::Set, true, true, true},
    {"insert", EditCommand::Insert, true, false, true},
    {"delete", EditCommand::Delete, true, true, false},
    {"constant", EditCommand::Constant, true, false, true},
    {"param", EditCommand::Param, false, false, true},
}};

const VerbForm* FindVerb(std::string_view name)
{
    for (const VerbForm& form : kVerbs) {
        if (form.name == name)
            return &form;
    }
    return nullptr;
}

// Cuts a line into words.
class LineReader {
public:
    LineReader(std::string_view line, const EditPlace& place) : line_(line), place_(place) {}

    std::vector<EditWord> Read()
    {
        std::vector<EditWord> words;
        for (SkipBlanks(); pos_ < line_.size(); SkipBlanks()) {
            EditWord word;
            word.text = ReadText(true, word.quoted);
            if (At('=')) {
                ++pos_;
                word.value = ReadText(false, word.quoted);
            }
            if (pos_ < line_.size() && !IsBlank(line_[pos_]))
                place_.Fail("a blank is missing behind a closing quote");
            words.push_back(std::move(word));
        }
        return words;
    }

private:
    static bool IsBlank(char ch) { return ch == ' ' || ch == '\t'; }
    bool At(char ch) const { return pos_ < line_.size() && line_[pos_] == ch; }
    void SkipBlanks()
    {
        while (pos_ < line_.size() && IsBlank(line_[pos_]))
            ++pos_;
    }

    std::string ReadText(bool isName, bool& quoted)
    {
        quoted = At('"');
        if (quoted)
            return ReadQuoted();
        const std::size_t start = pos_;
        while (pos_ < line_.size() && !IsBlank(line_[pos_]) && !(isName && line_[pos_] == '='))
            ++pos_;
        return std::string(line_.substr(start, pos_ - start));
    }

    std::string ReadQuoted()
    {
        std::string text;
        for (++pos_; !At('"'); ++pos_) {
            if (pos_ >= line_.size())
                place_.Fail("a quote is opened and never closed");
            if (At('\\'))
                AppendEscaped(text);
            else
                text += line_[pos_];
        }
        ++pos_;
        return text;
    }

    // Leaves the position at the last character of the escape.
    void AppendEscaped(std::string& text)
    {
        constexpr std::string_view kLetters = "\"\\nrt";
        constexpr std::string_view kMeant = "\"\\\n\r\t";
        if (line_.substr(pos_).starts_with("\\u"))
            return AppendUnits(text);
        const std::size_t known = ++pos_ < line_.size() ? kLetters.find(line_[pos_]) : std::string_view::npos;
        if (known == std::string_view::npos)
            FailEscape();
        text += kMeant[known];
    }

    // One or more \uXXXX in a row: UTF-16, so that two of them may make one character.
    void AppendUnits(std::string& text)
    {
        constexpr std::size_t kLength = 6;
        Zn_WString units;
        for (; line_.substr(pos_).starts_with("\\u"); pos_ += kLength) {
            unsigned unit = 0;
            const std::string_view digits = line_.substr(pos_).substr(2, 4);
            const char* stop = digits.data() + digits.size();
            const auto [end, error] = std::from_chars(digits.data(), stop, unit, 16);
            if (error != std::errc() || digits.size() != 4 || end != stop)
                FailEscape();
            units += static_cast<char16_t>(unit);
        }
        text += units.ToUtf8();
        --pos_;
    }

    [[noreturn]] void FailEscape() const
    {
        place_.Fail(R"(after \ in quotes there is one of " \ n r t or u and four hexadecimal digits)");
    }

    std::string_view line_;
    const EditPlace& place_;
    std::size_t pos_ = 0;
};

// Words that the shell has cut already: no quotes to look at.
EditWord WordOf(const std::string& argument)
{
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos)
        return {argument, std::nullopt, false};
    return {argument.substr(0, equals), argument.substr(equals + 1), false};
}

EditCommand Build(const std::vector<EditWord>& words, const EditPlace& place)
{
    const VerbForm* form = words[0].value ? nullptr : FindVerb(words[0].text);
    if (!form)
        place.Fail("'" + words[0].text + "' is no command; there are set, insert, delete, constant and param");
    EditCommand command{place, form->verb, {}, {}, {}};
    std::size_t next = 1;
    if (form->table) {
        if (next == words.size() || words[next].value)
            place.Fail(std::string(form->name) + " needs the name of a table");
        command.table = words[next++].text;
    }
    if (form->row) {
        if (next == words.size())
            place.Fail(std::string(form->name) + " needs a row: its number, or COLUMN=VALUE");
        command.row = words[next++];
    }
    command.values.assign(words.begin() + static_cast<std::ptrdiff_t>(next), words.end());
    for (const EditWord& word : command.values) {
        if (!form->values || !word.value)
            place.Fail("'" + word.text + "' " + (form->values ? "is no NAME=VALUE" : "is one word too many"));
    }
    if (form->values && command.values.empty() && form->verb != EditCommand::Insert)
        place.Fail(std::string(form->name) + " needs a NAME=VALUE");
    return command;
}

} // namespace

std::vector<EditCommand> ParseEditScript(std::string_view script, const std::string& label)
{
    script = WithoutMark(script);
    std::vector<EditCommand> commands;
    for (int number = 1; !script.empty(); ++number) {
        const std::size_t end = std::min(script.find('\n'), script.size());
        std::string_view line = script.substr(0, end);
        script.remove_prefix(std::min(end + 1, script.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const EditPlace place{label + ": line " + std::to_string(number), BadData};
        const std::size_t first = line.find_first_not_of(" \t");
        if (first != std::string_view::npos && line[first] != '#')
            commands.push_back(Build(LineReader(line, place).Read(), place));
    }
    return commands;
}

std::vector<EditCommand> ParseEditArguments(const std::vector<std::string>& arguments)
{
    std::vector<EditCommand> commands;
    if (!arguments.empty() && FindVerb(arguments[0])) {
        std::vector<EditWord> words;
        std::string line;
        for (const std::string& argument : arguments) {
            words.push_back(WordOf(argument));
            line += (line.empty() ? "" : " ") + argument;
        }
        commands.push_back(Build(words, {"command '" + line + "'", BadUsage}));
        return commands;
    }
    for (const std::string& argument : arguments) {
        const EditPlace place{"command '" + argument + "'", BadUsage};
        const std::vector<EditWord> words = LineReader(argument, place).Read();
        if (words.empty())
            place.Fail("there is nothing in it");
        commands.push_back(Build(words, place));
    }
    return commands;
}

} // namespace zntool
