// Messages as the commands work on them: read from a file in either encoding, compressed or not, written in a form of
// choice.
//
// Reading tells XML from binary by content and remembers what the file was in, so that a message written
// again without other wishes is in the same encoding and code page, its tables in the same order, and compressed again.
#pragma once

#include "Zn_Stream.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zntool {

inline constexpr unsigned kUtf8 = 65001;

enum class Encoding { Xml, Binary, Csv };

// The data modes of a message.
enum DataMode { AllRows = 0, AllRowsWithChanges = 1, ChangesOnly = 2 };

struct Message {
    std::string label; // names the file in messages to the user
    Encoding encoding = Encoding::Binary;
    unsigned codePage = 0;      // of the XML text, or of the binary form's tables (0: they differ)
    unsigned paramCodePage = 0; // of the binary form's parameters and column names
    Zn_WString charset;         // as the XML declaration writes it
    long long bytes = 0;
    long long compressedBytes = 0;     // of the container it was in; 0 for none
    std::vector<long long> tableBytes; // as far as they are known
    std::string note;                  // something odd that a whole message can have
    std::string damage;                // where and why reading stopped; empty for a whole message
    bool knowsPlaces = false;          // deleted rows know where they stood
    Zn_VariableList params;
    Zn_DatasetList tables{0}; // in the order of the message
};

// Reads what can be read: a message that breaks off has damage. Fails on anything else.
Message ReadMessage(const std::string& path);
// Fails on a damaged message too.
Message ReadWholeMessage(const std::string& path);

// The table of a name; fails when there is none.
Zn_Dataset& FindTable(Message& message, std::string_view name);
// "customers, invoices", for messages to the user.
std::string TableNames(const Message& message);

// What the user wishes for the written message; what is left open stays as it was read.
struct OutputWishes {
    std::optional<Encoding> encoding; // else by the file's extension
    int mode = AllRowsWithChanges;
    unsigned codePage = 0;
    std::optional<bool> compress; // else when the file's name ends so, or what was read was compressed
};

// The encoding to write a file in: the wish, else by the extension, else the one given (none: fails).
Encoding OutputEncoding(const std::string& path, const OutputWishes& wishes, std::optional<Encoding> otherwise);

// Writes XML or binary and says on standard error what the form can't hold. Fails, and leaves an old file as it
// was, when nobody could read the outcome.
void WriteMessage(Message& message, const std::string& path, const OutputWishes& wishes);

} // namespace zntool
