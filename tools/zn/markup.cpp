// The commands html and xml: what stands in a document, as a tree or the parts of it that were asked for.
#include "commands.h"

#include "cell_text.h"
#include "files.h"
#include "output.h"
#include "table_view.h"

#include "Zn_HtmlDOM.h"
#include "Zn_XmlDOM.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <vector>

namespace zntool {
namespace {

struct MarkupWishes {
    std::string file;
    bool text = false;
    bool links = false;
    std::string select;
    unsigned codePage = 0;
};

// The nodes in document order, each with its depth, and what is below those for which visit says true. Depth costs
// no calls.
template <class Visit>
void Walk(const Zn_DOMElemList& list, Visit visit)
{
    struct Level {
        const Zn_DOMElemList* list;
        int next;
    };
    std::vector<Level> levels{{&list, 0}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.list->Count()) {
            levels.pop_back();
            continue;
        }
        const Zn_DOMElement& node = (*level.list)[level.next++];
        if (visit(node, levels.size() - 1))
            levels.push_back({&node.children, 0});
    }
}

bool IsBlank(std::u16string_view text)
{
    return std::ranges::all_of(text, zn_isspace<char16_t>);
}

// Text on one line: white space of any length is one blank.
std::string OnOneLine(std::u16string_view text)
{
    std::u16string line;
    for (const char16_t unit : text) {
        if (!zn_isspace(unit))
            line += unit;
        else if (!line.empty() && line.back() != u' ')
            line += u' ';
    }
    if (!line.empty() && line.back() == u' ')
        line.pop_back();
    return ToUtf8(Printable(line));
}

bool HoldsText(const Zn_DOMElement& node)
{
    return node.kind == Zn_DOMElement::Text || node.kind == Zn_DOMElement::CData;
}

void PrintNode(Output& out, const Zn_DOMElement& node, std::size_t depth)
{
    constexpr std::size_t kDeepest = 40; // deeper nodes are indented no more, so that output stays in proportion
    if (node.tag.IsEmpty() && IsBlank(node.text.GetView()))
        return;
    out.Write(std::string(2 * std::min(depth, kDeepest), ' '));
    if (node.tag.IsEmpty()) {
        const bool comment = node.kind == Zn_DOMElement::Comment;
        out.Write((comment ? "# " : "") + OnOneLine(node.text.GetView()) + "\n", comment ? Style::Faint : Style::Plain);
        return;
    }
    out.Write(OnOneLine(node.tag.GetView()), Style::Title);
    Zn_WString attributes;
    node.GetAttribute(attributes);
    if (!attributes.IsEmpty())
        out.Write(" " + OnOneLine(attributes.GetView()));
    out.Write("\n");
    if (!IsBlank(node.text.GetView()))
        out.Write(std::string(2 * std::min(depth + 1, kDeepest), ' ') + OnOneLine(node.text.GetView()) + "\n");
}

void PrintTree(Output& out, const Zn_DOMElemList& list)
{
    Walk(list, [&out](const Zn_DOMElement& node, std::size_t depth) {
        PrintNode(out, node, depth);
        return true;
    });
}

// The runs of text, one a line, entities resolved.
void PrintText(Output& out, const Zn_DOMElemList& list, bool decode)
{
    Walk(list, [&](const Zn_DOMElement& node, std::size_t) {
        if (!HoldsText(node) || IsBlank(node.text.GetView()))
            return true;
        Zn_WString text = node.text;
        if (decode && node.kind == Zn_DOMElement::Text)
            text = text.DecodeXml();
        out.Write(OnOneLine(text.GetView()) + "\n");
        return true;
    });
}

void PrintLinks(Output& out, const Zn_DOMElemList& list)
{
    Walk(list, [&out](const Zn_DOMElement& node, std::size_t) {
        for (const char16_t* name : {u"href", u"src"}) {
            const Zn_WString& link = node.attributes.Str(name);
            if (!link.IsEmpty())
                out.Write(OnOneLine(link.GetView()) + "\n");
        }
        return true;
    });
}

// The elements of a tag as markup, each from a line of its own. Those inside of others are not repeated.
void PrintSelected(Output& out, const Zn_DOMElemList& list, const std::string& tag, bool encode)
{
    const Zn_WString wanted = Zn_WString::FromUtf8(tag);
    Walk(list, [&](const Zn_DOMElement& node, std::size_t) {
        if (!zn_iequal(node.tag.GetView(), wanted.GetView()))
            return true;
        Zn_DOMElemList one;
        one.Add(node);
        Zn_WString markup;
        one.Save(markup, encode ? 1 : 0, 0, 0);
        out.Write(ToUtf8(markup.GetView()) + "\n");
        return false;
    });
}

void Print(const Zn_DOMElemList& document, const MarkupWishes& wishes, bool html)
{
    Output out;
    if (wishes.text)
        PrintText(out, document, html);
    else if (wishes.links)
        PrintLinks(out, document);
    else if (!wishes.select.empty())
        PrintSelected(out, document, wishes.select, !html);
    else
        PrintTree(out, document);
    out.Flush();
}

// What was read is printed, and what was wrong is told.
template <class Document>
ExitCode Show(const MarkupWishes& wishes, bool html, const char* fault)
{
    const Zn_Buffer bytes = ReadFile(wishes.file);
    Document document;
    const int good = document.Load(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetLength(), wishes.codePage);
    Print(document, wishes, html);
    if (good || bytes.GetLength() == 0)
        return Done;
    Complain(FileLabel(wishes.file) + ": " + fault);
    return BadData;
}

CLI::App* AddMarkup(CLI::App& app, const char* name, const char* help, const std::shared_ptr<MarkupWishes>& wishes)
{
    CLI::App* command = app.add_subcommand(name, help);
    command->add_option("FILE", wishes->file, "the document, or -")->required();
    CLI::Option* text = command->add_flag("-t,--text", wishes->text, "only the text, a run a line");
    CLI::Option* links = command->add_flag("-l,--links", wishes->links, "only what href and src name");
    CLI::Option* select =
        command->add_option("-s,--select", wishes->select, "only the elements of this tag, as markup");
    select->type_name("TAG");
    text->excludes(links)->excludes(select);
    links->excludes(select);
    command
        ->add_option("--code-page", wishes->codePage,
                     "of a document that does not name its own: 65001, 1252, 949, 932 ... (else the locale's)")
        ->type_name("NUMBER");
    return command;
}

} // namespace

void AddHtml(CLI::App& app, ExitCode& exitCode)
{
    const auto wishes = std::make_shared<MarkupWishes>();
    CLI::App* command = AddMarkup(app, "html", "Show the tree, text or links of an HTML page", wishes);
    command->footer("Any page is read, well formed or not.\nExample: zn html page.html --links");
    command->callback([wishes, &exitCode] { exitCode = Show<Zn_HtmlDOM>(*wishes, true, "a comment has no end"); });
}

void AddXml(CLI::App& app, ExitCode& exitCode)
{
    const auto wishes = std::make_shared<MarkupWishes>();
    CLI::App* command = AddMarkup(app, "xml", "Show the tree, text or links of an XML document", wishes);
    command->footer("Example: zn xml message.xml --select column");
    command->callback([wishes, &exitCode] {
        exitCode = Show<Zn_XmlDOM>(*wishes, false, "malformed; what stands in front of the fault is shown");
    });
}

} // namespace zntool
