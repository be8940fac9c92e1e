// The rows of a table as `show` lists them: filtered, sorted, in groups, with summaries.
#pragma once

#include "Zn_Dataset.h"

#include <string>
#include <utility>
#include <vector>

namespace zntool {

struct ViewOptions {
    std::string sort;                 // as Zn_Dataset::Sort takes it
    std::vector<std::string> filters; // COLUMN=VALUE, all of which hold
    std::vector<std::string> groups;  // columns, the outermost first
    std::vector<std::string> sums, averages, least, most;
    bool count = false;

    bool IsPlain() const
    {
        return sort.empty() && filters.empty() && groups.empty() && sums.empty() && averages.empty() && least.empty() &&
               most.empty() && !count;
    }
    bool HasSummaries() const { return count || !(sums.empty() && averages.empty() && least.empty() && most.empty()); }
    // The columns that the options name.
    std::vector<std::string> Columns() const;
};

// One kind of summary of a run of rows: what it is called, and the text under each column.
struct SummaryLine {
    std::u16string number; // of rows, where they are counted
    std::u16string kind;
    std::vector<std::pair<int, std::u16string>> cells; // by column

    const std::u16string* Find(int col) const;
};

// A line of the list: a row of the table, or a line of a summary.
struct RowLine {
    int row = -1;   // among the stored rows of the table
    int number = 0; // of the row in the message; of the summary among the view's summaries
    bool IsSummary() const { return row < 0; }
};

class RowView {
public:
    // Works on a table of its own, whose order and rows become those of the view. Fails when a summary is asked of a
    // column that has no numbers.
    RowView(Zn_Dataset& table, const ViewOptions& options);

    const std::vector<RowLine>& Lines() const { return lines_; }
    const SummaryLine& Summary(const RowLine& line) const { return summaries_[static_cast<std::size_t>(line.number)]; }
    // Whether the n-th deleted row passes the filter.
    bool ShowsDeleted(int n) const;

private:
    struct Condition {
        int col; // -1: the table has no such column
        std::u16string value;
    };

    void ReadFilters();
    template <class ValueOf>
    bool Passes(ValueOf valueOf) const;
    void FilterAndSort();
    void ListRows();
    int OutermostBreak(int row) const;
    void Summarize(int from, int to, std::size_t groups);
    std::vector<std::pair<int, std::u16string>> GroupCells(int from, std::size_t groups) const;
    void AddSummary(SummaryLine line);

    Zn_Dataset& table_;
    const ViewOptions& options_;
    std::vector<Condition> conditions_;
    std::vector<int> groups_;  // columns, the outermost first
    std::vector<int> numbers_; // of the stored rows, in the message
    std::vector<RowLine> lines_;
    std::vector<SummaryLine> summaries_;
};

} // namespace zntool
