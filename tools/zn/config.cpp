// config: the settings of a file shown and set.
#include "commands.h"

#include "files.h"
#include "output.h"

#include "Zn_Config.h"
#include "Zn_ErrorMsg.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace zntool {
namespace {

struct Options {
    std::string file;
    std::string section;
    std::string name;
    std::vector<std::string> assignments;
};

constexpr int kNotThere = 2;

// File names are bytes of the locale's code page here, as the library's are off Windows.
Zn_WString PathOf(const std::string& path)
{
    return {path.c_str(), -1, 0};
}

[[noreturn]] void FailOnFile(const std::string& path, const char* action, int error)
{
    throw Failure(BadData, FileLabel(path) + ": " + action + ": " + ZnSysErrorStr(error).ToUtf8());
}

void Load(const std::string& path, Zn_Config& config, bool mayBeMissing = false)
{
    if (path == "-")
        throw Failure(BadUsage, "config: FILE is the name of a file; it can't be standard input");
    if (config.Load(PathOf(path)) < 0 && !(mayBeMissing && config.lastError == kNotThere))
        FailOnFile(path, "can't be read", config.lastError);
}

[[noreturn]] void FailOnName(const Options& options, const std::string& what)
{
    throw Failure(BadUsage, FileLabel(options.file) + ": has no " + what);
}

const Zn_ConfigSection& SectionOf(const Zn_Config& config, const Options& options)
{
    const Zn_ConfigSection* section = config.GetSection(Zn_WString::FromUtf8(options.section));
    if (!section)
        FailOnName(options, "section " + options.section);
    return *section;
}

void Get(const Options& options)
{
    Zn_Config config;
    Load(options.file, config);
    const Zn_NamedStr* entry = SectionOf(config, options).GetItem(Zn_WString::FromUtf8(options.name));
    if (!entry)
        FailOnName(options, "entry " + options.name + " in section " + options.section);
    Output out;
    out.Write(entry->Str().ToUtf8() + "\n");
    out.Flush();
}

void ListSection(const Zn_ConfigSection& section, Output& out)
{
    out.Write("[" + section.id.ToUtf8() + "]", Style::Title);
    out.Write("\n");
    for (const Zn_NamedStr& entry : section)
        out.Write(entry.Id().ToUtf8() + "=" + entry.Str().ToUtf8() + "\n");
}

void List(const Options& options)
{
    Zn_Config config;
    Load(options.file, config);
    Output out;
    if (!options.section.empty()) {
        ListSection(SectionOf(config, options), out);
    } else {
        for (int i = 0; i < config.Count(); ++i) {
            out.Write(i > 0 ? "\n" : "");
            ListSection(*config.GetSection(i), out);
        }
    }
    out.Flush();
}

// How many lines of a file hold neither a section nor an entry that was read: they are not written again.
int CountOtherLines(const std::string& path, const Zn_Config& config)
{
    const Zn_Buffer bytes = ReadFile(path);
    int lines = 0;
    bool blank = true;
    for (const char ch : AsText(bytes)) {
        lines += blank && !zn_isspace(ch) ? 1 : 0;
        blank = ch == '\n' || (blank && zn_isspace(ch));
    }
    for (const Zn_ConfigSection& section : config)
        lines -= 1 + section.Count();
    return lines;
}

void Set(const Options& options)
{
    Zn_Config config;
    Load(options.file, config, true);
    const int others = config.lastError == 0 ? CountOtherLines(options.file, config) : 0;
    for (const std::string& assignment : options.assignments) {
        const std::size_t equals = assignment.find('=');
        if (equals == 0 || equals == std::string::npos)
            throw Failure(BadUsage, "config: " + assignment + ": give NAME=VALUE");
        config.SetItem(Zn_WString::FromUtf8(options.section), Zn_WString::FromUtf8(assignment.substr(0, equals)),
                       Zn_WString::FromUtf8(assignment.substr(equals + 1)));
    }
    Zn_WString refused;
    const int result = config.SaveWithValues(PathOf(options.file), &refused);
    if (result == Zn_Config::CannotKeep)
        throw Failure(BadData, FileLabel(options.file) + ": " + refused.ToUtf8() +
                                   ": a file of settings can't hold this so that it reads back; nothing is written");
    if (result < 0)
        FailOnFile(options.file, "can't be written", config.lastError);
    if (others > 0)
        Complain(options.file + ": " + std::to_string(others) + (others == 1 ? " line that is" : " lines that are") +
                 " no setting (comments, ...) not kept");
}

constexpr const char* kFooter =
    "Names of sections and entries match in any case. The file is in the code page of the locale (LC_ALL, LC_CTYPE, "
    "LANG).\n"
    "set makes file, section and entry where they are missing, and puts the new file in place when it is whole.\n"
    "Examples: zn config client.ini get server port\n"
    "          zn config client.ini set server host=example.org port=5000\n"
    "          zn config client.ini list server";

} // namespace

void AddConfig(CLI::App& app, ExitCode&)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("config", "Show and set the settings of a file");
    command->add_option("FILE", options->file, "the file of settings")->required();
    command->require_subcommand(1);
    command->footer(kFooter);

    CLI::App* get = command->add_subcommand("get", "Print a value");
    get->add_option("SECTION", options->section, "the section")->required();
    get->add_option("NAME", options->name, "the entry")->required();
    get->callback([options] { Get(*options); });

    CLI::App* set = command->add_subcommand("set", "Set values");
    set->add_option("SECTION", options->section, "the section")->required();
    set->add_option("NAME=VALUE", options->assignments, "the entries")->required();
    set->callback([options] { Set(*options); });

    CLI::App* list = command->add_subcommand("list", "Print all settings, or those of a section");
    list->add_option("SECTION", options->section, "the section");
    list->callback([options] { List(*options); });
}

} // namespace zntool
