// Edit commands: what they say, and the script or arguments they come from.
//
//     set TABLE ROW COLUMN=VALUE ...       changes cells of a row
//     insert TABLE COLUMN=VALUE ...        appends a row
//     delete TABLE ROW                     deletes a row
//     constant TABLE COLUMN=VALUE ...      sets constant columns
//     param NAME=VALUE ...                 sets parameters
//
// ROW is a row's number, counted from 0 as show prints it, or COLUMN=VALUE for the one row with that value. A word ends
// at a blank; in double quotes blanks belong to it, and \" \\ \n \r \t \uXXXX stand for characters. An unquoted
// empty VALUE is no value, a quoted one an empty text. A script has a command per line; a line that begins
// with # is a comment.
#pragma once

#include "failure.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zntool {

// Where a command stands, for messages to the user, and what a mistake in it means for the exit code.
struct EditPlace {
    std::string text;
    ExitCode mistake = BadData;

    [[noreturn]] void Fail(const std::string& reason) const { throw Failure(mistake, text + ": " + reason); }
};

// A word, or a pair of words with "=" between them.
struct EditWord {
    std::string text; // the name of a pair
    std::optional<std::string> value;
    bool quoted = false; // the value is; of a single word: it is
};

struct EditCommand {
    enum Verb { Set, Insert, Delete, Constant, Param };

    EditPlace place;
    Verb verb = Set;
    std::string table; // not for Param
    EditWord row;      // for Set and Delete
    std::vector<EditWord> values;
};

// The commands of a script; fails on the first that is none.
std::vector<EditCommand> ParseEditScript(std::string_view script, const std::string& label);

// Commands given as arguments: each argument one command, or all together the words of one when the first is a verb
// alone (the shell has taken its quotes then).
std::vector<EditCommand> ParseEditArguments(const std::vector<std::string>& arguments);

} // namespace zntool
