// The fields of a CSV text.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace zntool {

struct CsvField {
    std::string_view text; // without quotes
    bool quoted = false;
};

struct CsvRecord {
    std::size_t first = 0; // of its fields
    std::size_t count = 0;
    int line = 0;
};

class CsvRecords {
public:
    // The text must stay as long as the fields are used. Fails on a quote that is not closed or is followed by
    // something else than a delimiter.
    CsvRecords(std::string_view text, const std::string& label, char delimiter);

    const std::vector<CsvRecord>& Records() const { return records_; }
    const CsvField& Field(const CsvRecord& record, std::size_t index) const { return fields_[record.first + index]; }

private:
    void ReadRecord();
    CsvField ReadQuoted();
    CsvField ReadPlain();
    bool EndLine();
    [[noreturn]] void Fail(int line, const std::string& reason) const;

    std::string_view text_;
    const std::string& label_;
    const char delimiter_;
    std::size_t pos_ = 0;
    int line_ = 1;
    std::vector<CsvField> fields_;
    std::vector<CsvRecord> records_;
    std::deque<std::string> unquoted_; // fields whose doubled quotes are taken out
};

} // namespace zntool
