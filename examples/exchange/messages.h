// What the two sides of the exchange send each other: messages as frames, in XML or binary.
//
// A request has the parameters "client" (a name) and "request": "load", answered with all tables, or "change", whose
// tables hold the changes alone. A change also has "number": a client counts its changes, so that one whose answer got
// lost can be sent again and is applied once. An answer has the parameters "code" (0, or the negative code of what went
// wrong), "applied" (rows), "number" (of the client's last change) and "result" (the lines of a Zn_Result). It comes in
// the form that the request had. docs/exchange.md tells it step by step.
#pragma once

#include "ZnClassLib.h"

namespace exchange {

enum class Form { Binary, Xml };
enum DataMode { AllRows = 0, ChangesOnly = 2 };

constexpr int kTimeoutSeconds = 10;

struct Message {
    Zn_VariableList params;
    Zn_DatasetList tables{0};
};

Zn_Buffer Encode(Message& message, Form form, DataMode mode);
// Tells the form by the first byte; false for bytes that are no message.
bool Decode(Message& message, const Zn_Buffer& bytes, Form& form);

// The column whose values find the rows of a table.
Zn_WString KeyOf(const Zn_Dataset& table);
// Rows that a table's changes touch.
int CountChanges(const Zn_Dataset& table);
// A line for each change, "updated 14: City Edmonton -> Calgary"; rows are named by their keys.
void PrintChanges(const Zn_Dataset& table);
// The texts of a result with their parameters.
void PrintResult(const Zn_Result& result);

bool ReadFile(const char* path, Zn_Buffer& bytes);
bool WriteFile(const char* path, const Zn_Buffer& bytes);

} // namespace exchange
