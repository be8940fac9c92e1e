// One table as comma-separated values: RFC 4180 in UTF-8, the first record names the columns.
//
// An empty field is no value; a quoted empty one ("") is an empty text. Amounts are exact, bytes are Base64.
#pragma once

#include "Zn_Dataset.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zntool {

struct ColumnType {
    short type = Zn_ColInfo::String;
    short size = -1; // -1: what the values need
};
// By column name.
using ColumnTypes = std::map<std::string, ColumnType>;

// Reads "Id:INT,Name:STRING:40"; fails on anything else.
ColumnTypes ParseColumnTypes(const std::vector<std::string>& items);

// The present rows, columns in the order they were defined in.
std::string WriteCsv(const Zn_Dataset& table, char delimiter);

// Fills an empty table. A column that types does not name gets the narrowest type that all of its values fit: DATE
// (YYYYMMDD), INT, DECIMAL, else STRING; numbers with leading zeros or more than 15 digits are texts. A byte order
// mark is passed over. Fails naming file and line.
void ReadCsv(std::string_view bytes, const std::string& label, char delimiter, const ColumnTypes& types,
             Zn_Dataset& table);

} // namespace zntool
