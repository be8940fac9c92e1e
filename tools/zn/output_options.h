// The options of every command that writes a message.
#pragma once

#include "message_io.h"

#include <CLI/CLI.hpp>

namespace zntool {

inline void AddEncodingOption(CLI::App& command, OutputWishes& wishes, bool csv)
{
    std::vector<std::string> names{"xml", "bin"};
    if (csv)
        names.emplace_back("csv");
    const auto take = [&wishes](const std::string& name) {
        wishes.encoding = name == "xml" ? Encoding::Xml : name == "bin" ? Encoding::Binary : Encoding::Csv;
    };
    command.add_option_function<std::string>("--to", take, "write this form, whatever OUT is called")
        ->transform(CLI::IsMember(names, CLI::ignore_case).description(""))
        ->type_name(csv ? "xml|bin|csv" : "xml|bin");
}

inline CLI::Option* AddModeOption(CLI::App& command, OutputWishes& wishes)
{
    return command
        .add_option("--mode", wishes.mode,
                    "0 all rows as they are now, 1 all rows and their changes (default), 2 changes only")
        ->check(CLI::Range(0, 2).description(""))
        ->type_name("0|1|2");
}

inline void AddCodePageOption(CLI::App& command, OutputWishes& wishes)
{
    command
        .add_option("--code-page", wishes.codePage,
                    "write in this code page: 65001, 1252, 949, 932 ... (else that of IN)")
        ->type_name("NUMBER");
}

} // namespace zntool
