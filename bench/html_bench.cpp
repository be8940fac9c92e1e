// Reading HTML into a tree: a generated page of unclosed elements, mixed quoting, entities and script, and pages
// named on the command line by ZN_HTML_PAGES (files, separated by ":"), against other readers.
#include "pairs.h"

#include "Zn_HtmlDOM.h"

#include <fstream>
#include <sstream>

#ifdef ZN_WITH_LIBXML2
#    include <libxml/HTMLparser.h>
#endif
#ifdef ZN_WITH_GUMBO
#    include <gumbo.h>
#endif

namespace {

std::string GeneratedPage()
{
    constexpr std::size_t kSize = 12000000;
    std::string page = "<!DOCTYPE html><html><head><title>Stock</title></head><body>\n";
    for (int row = 0; page.size() < kSize; ++row) {
        const std::string number = std::to_string(row);
        page += "<h2 id=h" + number + ">Part &amp; place " + number + "</h2>\n<ul class='list'><li>one<li>two &lt;" +
                number + "&gt;<li>three</ul>\n<p>A text of some words, with <b>bold</b> and <a href=\"p?n=" + number +
                "&amp;x=1\" title='the \"place\"'>a link</a>\n<p>and another\n<table border=1><tr><td>" + number +
                "<td align=right>12.5<td>&nbsp;<tr><td>x<td>y</table>\n";
        if (row % 20 == 0)
            page += "<script>if (a < b && c > d) { f(\"<p>\", '" + number + "'); }</script>\n<!-- " + number + " -->\n";
    }
    return page + "</body></html>\n";
}

void ReadOurs(const std::string& page)
{
    Zn_HtmlDOM document;
    document.Load(page.data(), static_cast<int>(page.size()), 65001);
    Require(document.Count() > 0, "nothing read");
}

#ifdef ZN_WITH_LIBXML2
void ReadLibxml(const std::string& page)
{
    htmlDocPtr document =
        htmlReadMemory(page.data(), static_cast<int>(page.size()), nullptr, "utf-8",
                       HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | XML_PARSE_HUGE);
    Require(document != nullptr, "libxml2 read nothing");
    xmlFreeDoc(document);
}
#endif

#ifdef ZN_WITH_GUMBO
void ReadGumbo(const std::string& page)
{
    GumboOutput* output = gumbo_parse_with_options(&kGumboDefaultOptions, page.data(), page.size());
    Require(output != nullptr, "gumbo read nothing");
    gumbo_destroy_output(&kGumboDefaultOptions, output);
}
#endif

void AddPage(Pairs& pairs, const std::string& name, const std::string& page)
{
    const Pairs::Work work{.bytes = static_cast<double>(page.size())};
    const auto ours = [page] { ReadOurs(page); };
#ifdef ZN_WITH_LIBXML2
    pairs.Add(
        name, work, ours, [page] { ReadLibxml(page); }, "libxml2");
#endif
#ifdef ZN_WITH_GUMBO
    pairs.Add(
        name + " ", work, ours, [page] { ReadGumbo(page); }, "gumbo");
#endif
#if !defined(ZN_WITH_LIBXML2) && !defined(ZN_WITH_GUMBO)
    pairs.Add(name, work, ours, nullptr, "");
#endif
}

} // namespace

int main(int argc, char** argv)
{
    Pairs pairs;
    AddPage(pairs, "generated 12 MB", GeneratedPage());
    const char* files = std::getenv("ZN_HTML_PAGES");
    std::istringstream names(files ? files : "");
    for (std::string name; std::getline(names, name, ':');) {
        std::ifstream file(name, std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        Require(!content.str().empty(), name.c_str());
        AddPage(pairs, name.substr(name.rfind('/') + 1), content.str());
    }
    return pairs.Run(argc, argv);
}
