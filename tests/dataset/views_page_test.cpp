// The page docs/views.md: its statements are those below, and its tables are what they give.

#include "Zn_Dataset.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The blocks of a language, in the page's order.
std::vector<std::string> Blocks(const std::string& page, const std::string& language)
{
    std::vector<std::string> blocks;
    const std::string fence = "```" + language + "\n";
    for (std::size_t at = page.find(fence); at != page.npos; at = page.find(fence, at)) {
        at += fence.size();
        blocks.push_back(page.substr(at, page.find("```", at) - at));
    }
    return blocks;
}

std::string Shown(const Zn_Dataset& table)
{
    std::string shown = "row  Country  City       Total\n";
    for (int row = 0; row < table.GetRowCount(); ++row) {
        const auto text = [&](const char16_t* id) { return table.GetColumnNN(row, id)->ToString().ToUtf8(); };
        char line[80];
        std::snprintf(line, sizeof line, "%3d  %-7s  %-9s  %5s", row, text(u"Country").c_str(), text(u"City").c_str(),
                      text(u"Total").c_str());
        shown += line;
        if (const int level = table.GetRowLevel(row))
            shown += "  level " + std::to_string(level);
        shown += '\n';
    }
    return shown;
}

std::vector<std::string> RunThePage()
{
    std::vector<std::string> outputs;
    Zn_Dataset sales(u"sales", 65001);
    sales.AddColumn(u"Country", Zn_ColInfo::String);
    sales.AddColumn(u"City", Zn_ColInfo::String);
    sales.AddColumn(u"Total", Zn_ColInfo::Int);
    const struct {
        const char16_t* country;
        const char16_t* city;
        int total;
    } kSales[] = {{u"Norway", u"Oslo", 40},    {u"Germany", u"Stuttgart", 20}, {u"Norway", u"Bergen", 15},
                  {u"Germany", u"Berlin", 70}, {u"Norway", u"Oslo", 5},        {nullptr, u"Oslo", 1}};
    for (const auto& sale : kSales) {
        const int row = sales.AppendRow(0);
        if (sale.country)
            sales.SetColumn(row, u"Country", sale.country);
        sales.SetColumn(row, u"City", sale.city);
        sales.SetColumn(row, u"Total", sale.total);
    }
    outputs.push_back(Shown(sales));
    sales.Sort(u"Country:d,City", 1);
    outputs.push_back(Shown(sales));
    sales.ShowOnly(u"City", u"Oslo");
    outputs.push_back(Shown(sales));
    sales.Filter(0);
    outputs.push_back(Shown(sales));
    sales.UnFilter();
    sales.SetGroupStr(u"Country");
    outputs.push_back(Shown(sales));
    std::ostringstream figures;
    for (int row = 0; row < sales.GetRowCount(); ++row) {
        if (sales.GetRowLevel(row) == 0)
            continue;
        const int start = sales.GetRowIndex(row);
        const Zn_ColSummary total = sales.Summarize(u"Total", start, row);
        Zn_Variant sum;
        sales.GetSum(u"Total", start, row, sum);
        EXPECT_EQ(sum, total.sum);
        figures << sales.GetColumnNN(row, u"Country")->ToString().ToUtf8() << ": " << total.count << " rows, sum "
                << total.sum.ToInteger() << ", largest " << total.most.ToInteger() << ", average " << total.average
                << '\n';
    }
    outputs.push_back(figures.str());
    return outputs;
}

} // namespace

TEST(ViewsPage, ShowsWhatItsStatementsGive)
{
    const std::string page = ReadFile(ZN_TEST_DATA "/../../docs/views.md");
    EXPECT_EQ(Blocks(page, "text"), RunThePage());
    const std::string program = ReadFile(ZN_TEST_DATA "/../dataset/views_page_test.cpp");
    const std::vector<std::string> blocks = Blocks(page, "cpp");
    EXPECT_EQ(blocks.size(), 7u);
    for (const std::string& block : blocks) {
        std::istringstream lines(block);
        for (std::string line; std::getline(lines, line);)
            EXPECT_NE(program.find("    " + line + "\n"), program.npos) << line;
    }
}
