// Reading HTML into a tree, against other readers: a generated page of unclosed elements, mixed quoting, entities and
// script, and real pages (see real_pages.h).
#include "pairs.h"

#include "Zn_HtmlDOM.h"

#include "markup/real_pages.h"

#include <cmath>

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

// Each run reads all the pages, one after the other.
void AddPages(Pairs& pairs, const std::string& name, const std::vector<RealPage>& pages)
{
    const auto each = [&pages](void (*read)(const std::string&)) {
        return [&pages, read] {
            for (const RealPage& page : pages)
                read(page.text);
        };
    };
    Pairs::Work work;
    for (const RealPage& page : pages)
        work.bytes += static_cast<double>(page.text.size());
    const std::string label = name + ", " + std::to_string(std::lround(work.bytes / 1e3)) + " KB";
#ifdef ZN_WITH_LIBXML2
    pairs.Add(label, work, each(ReadOurs), each(ReadLibxml), "libxml2");
#endif
#ifdef ZN_WITH_GUMBO
    pairs.Add(label + " ", work, each(ReadOurs), each(ReadGumbo), "gumbo");
#endif
#if !defined(ZN_WITH_LIBXML2) && !defined(ZN_WITH_GUMBO)
    pairs.Add(label, work, each(ReadOurs), nullptr, "");
#endif
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<RealPage> generated = {{"", GeneratedPage()}};
    const std::vector<RealPage> real = ReadRealPages();
    const std::size_t largest = std::min<std::size_t>(real.size(), 3);
    std::vector<std::vector<RealPage>> single;
    for (std::size_t i = 0; i < largest; ++i)
        single.push_back({real[i]});
    Pairs pairs;
    AddPages(pairs, "generated", generated);
    if (real.empty())
        std::printf("No real pages: none in /usr/share/doc, and ZN_HTML_PAGES names none.\n");
    else
        AddPages(pairs, std::to_string(real.size()) + " real pages", real);
    for (const std::vector<RealPage>& page : single)
        AddPages(pairs, page.front().name, page);
    return pairs.Run(argc, argv);
}
