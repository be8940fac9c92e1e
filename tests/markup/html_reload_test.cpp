// A page that is written and read again is the same tree, but for what is listed in docs/compatibility.md: these
// differences, and no others, are foretold here.
#include "Zn_HtmlDOM.h"

#include "long_tests.h"
#include "real_pages.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

// The nodes of a tree, a line for each, indented by their depth.
class Listing {
public:
    // As it is, or as it is foretold to come back.
    Listing(const Zn_DOMElemList& tree, bool foretold, bool keepText) : foretold_(foretold), keepText_(keepText)
    {
        struct Level {
            const Zn_DOMElemList* list;
            int next;
        };
        std::vector<Level> levels = {{&tree, 0}};
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next == level.list->Count()) {
                Flush(levels.size());
                levels.pop_back();
                continue;
            }
            const Zn_DOMElement& node = (*level.list)[level.next++];
            if (!PutText(node, levels.size()))
                PutNode(node, levels.size());
            if (node.IsHaveChild())
                levels.push_back({&node.children, 0});
        }
    }
    const Lines& Get() const { return lines_; }

private:
    // Texts beside each other become one, and so does with them what is read as text again.
    bool PutText(const Zn_DOMElement& node, std::size_t depth)
    {
        if (node.kind == Zn_DOMElement::Text)
            return text_ += node.text.ToUtf8(), true;
        if (foretold_ && node.kind == Zn_DOMElement::EmptyElement && node.attributes.Count() == 0)
            return text_ += "<" + node.tag.ToUtf8() + "/>", true;
        if (foretold_ && node.kind == Zn_DOMElement::Declaration)
            text_ += "\r\n";
        return Flush(depth), false;
    }
    void PutNode(const Zn_DOMElement& node, std::size_t depth)
    {
        std::string line = std::to_string(node.kind) + node.tag.ToUtf8() + "{" + node.rawAttributes.ToUtf8() + "}";
        for (const Zn_NamedStr& attribute : node.attributes) {
            if (!foretold_ || !attribute.Str().IsEmpty())
                line += "[" + attribute.Id().ToUtf8() + "=" + attribute.Str().ToUtf8() + "]";
        }
        lines_.push_back(std::string(depth, ' ') + line + node.text.ToUtf8());
    }
    void Flush(std::size_t depth)
    {
        // Tables and rows are written with end tags that come back as text.
        for (const std::string_view end : {"</table>", "</TABLE>", "</Table>", "</tr>", "</TR>"}) {
            for (std::size_t at; (at = text_.find(end)) != std::string::npos;)
                text_.erase(at, end.size());
        }
        constexpr const char* kSpace = " \t\r\n\v\f";
        if (!keepText_)
            text_.erase(text_.find_last_not_of(kSpace) + 1).erase(0, text_.find_first_not_of(kSpace));
        if (!text_.empty())
            lines_.push_back(std::string(depth, ' ') + "'" + text_);
        text_.clear();
    }

    bool foretold_;
    bool keepText_;
    std::string text_;
    Lines lines_;
};

void ExpectForetold(const RealPage& page)
{
    for (const bool keepText : {true, false}) {
        Zn_HtmlDOM first(1, 1, keepText);
        first.Load(page.text.data(), static_cast<int>(page.text.size()), 65001);
        Zn_WString written;
        first.Save(written, 0, 0, 0);
        Zn_HtmlDOM second(1, 1, keepText);
        second.Load(written.GetText(), written.GetLength());
        const Lines foretold = Listing(first, true, keepText).Get();
        const Lines found = Listing(second, false, keepText).Get();
        const auto [a, b] = std::mismatch(foretold.begin(), foretold.end(), found.begin(), found.end());
        EXPECT_TRUE(a == foretold.end() && b == found.end())
            << page.name << (keepText ? "\n" : ", texts trimmed\n") << (a == foretold.end() ? "nothing" : *a)
            << "\nbut found\n"
            << (b == found.end() ? "nothing" : *b);
    }
}

TEST(HtmlReload, ListedDifferences)
{
    for (const char* page :
         {"<b>x<i title='a \"b\" &amp; c' id=1>y</b>z", "<table><tr><td>a</td></tr></table>b",
          "<table><tr><td>a<td>b</table>c", "<p>a<b></p>c<p>d", "<p>a<br />b<br class=x />c",
          "<!DOCTYPE html>\n<html><input checked value=''>x</html>", "<script>a<b</script><style>c</style>",
          "a<!-- c -->b", "<ul><li>a<li>b</ul>", "<tr><td>a</tr>b"})
        ExpectForetold({page, page});
}

TEST(HtmlReload, RealPages)
{
    constexpr std::size_t kShort = 20000; // longer pages are read in the long form of the test
    const std::vector<RealPage> pages = ReadRealPages();
    if (pages.empty())
        GTEST_SKIP() << "no pages here";
    for (const RealPage& page : pages) {
        if (page.text.size() < kShort || LongTests())
            ExpectForetold(page);
    }
}

} // namespace
