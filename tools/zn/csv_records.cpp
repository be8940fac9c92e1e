#include "csv_records.h"

#include "failure.h"
#include "files.h"

#include <algorithm>

namespace zntool {

CsvRecords::CsvRecords(std::string_view text, const std::string& label, char delimiter)
    : text_(WithoutMark(text)), label_(label), delimiter_(delimiter)
{
    while (pos_ < text_.size())
        ReadRecord();
}

void CsvRecords::ReadRecord()
{
    CsvRecord record{fields_.size(), 0, line_};
    for (;;) {
        const bool quoted = pos_ < text_.size() && text_[pos_] == '"';
        fields_.push_back(quoted ? ReadQuoted() : ReadPlain());
        if (pos_ < text_.size() && text_[pos_] == delimiter_) {
            ++pos_;
            continue;
        }
        if (pos_ == text_.size() || EndLine())
            break;
        Fail(line_, "a quoted field is followed by something else than a delimiter; a quote inside is written twice");
    }
    record.count = fields_.size() - record.first;
    records_.push_back(record);
}

CsvField CsvRecords::ReadQuoted()
{
    const int opened = line_;
    const std::size_t start = ++pos_;
    bool doubled = false;
    for (;; ++pos_) {
        const std::size_t quote = text_.find('"', pos_);
        if (quote == std::string_view::npos)
            Fail(opened, "a quote is opened and never closed");
        line_ += static_cast<int>(std::count(text_.data() + pos_, text_.data() + quote, '\n'));
        pos_ = quote + 1;
        if (pos_ == text_.size() || text_[pos_] != '"')
            break;
        doubled = true;
    }
    const std::string_view inner = text_.substr(start, pos_ - 1 - start);
    if (!doubled)
        return {inner, true};
    std::string& text = unquoted_.emplace_back();
    text.reserve(inner.size());
    for (std::size_t i = 0; i < inner.size(); ++i) {
        text += inner[i];
        i += inner[i] == '"';
    }
    return {text, true};
}

CsvField CsvRecords::ReadPlain()
{
    const std::size_t start = pos_;
    while (pos_ < text_.size() && text_[pos_] != delimiter_ && text_[pos_] != '\n' && text_[pos_] != '\r')
        ++pos_;
    return {text_.substr(start, pos_ - start), false};
}

// CR LF, LF or CR.
bool CsvRecords::EndLine()
{
    if (text_[pos_] != '\r' && text_[pos_] != '\n')
        return false;
    pos_ += text_.substr(pos_).starts_with("\r\n") ? 2u : 1u;
    ++line_;
    return true;
}

void CsvRecords::Fail(int line, const std::string& reason) const
{
    throw Failure(BadData, label_ + ": line " + std::to_string(line) + ": " + reason);
}

} // namespace zntool
