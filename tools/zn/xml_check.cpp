#include "xml_check.h"

#include "cell_text.h"
#include "files.h"
#include "progress.h"

#include "Zn_SAXIterator.h"

#include <algorithm>
#include <string_view>

namespace zntool {
namespace {

// Remembers how far the reader came and which elements are open.
class Follower final : public Zn_SAXCtxHandler {
public:
    Follower(std::u16string_view text, Progress& progress) : text_(text), progress_(progress) {}

    int OnCharSet(unsigned) override { return 1; }
    int OnProcInstr(const char16_t* name, int, const char16_t*, int) override { return Pass(name); }
    int OnDeclaration(const char16_t* name, int, const char16_t*, int) override { return Pass(name); }
    int OnEmptyElement(const char16_t* name, int, const char16_t*, int) override { return Pass(name); }
    int OnStartElement(const char16_t* name, int length, const char16_t*, int) override
    {
        open_.emplace_back(name, static_cast<std::size_t>(length));
        return Pass(name);
    }
    int OnEndElement(const char16_t*, int) override
    {
        if (!open_.empty())
            open_.pop_back();
        return 1;
    }
    int OnWhiteSpace(const char16_t* text, int) override { return Pass(text); }
    int OnText(const char16_t* text, int) override { return Pass(text); }
    int OnCData(const char16_t* text, int) override { return Pass(text); }
    int OnComment(const char16_t* text, int) override { return Pass(text); }

    std::string Fault() const
    {
        const std::string place = "line " + std::to_string(LineOf(reached_)) + ": ";
        if (open_.empty())
            return place + "malformed XML: an end tag without its start, or markup without its end, after here";
        const std::u16string_view name = open_.back();
        return place + "malformed XML after here: <" + ToUtf8(name) + "> of line " +
               std::to_string(LineOf(name.data())) + " has no end tag in its place";
    }

private:
    int Pass(const char16_t* at)
    {
        reached_ = std::max(reached_, at);
        if (++passed_ % 4096 == 0)
            progress_.Set(reached_ - text_.data(), static_cast<long long>(text_.size()));
        return 1;
    }
    long long LineOf(const char16_t* at) const { return 1 + std::count(text_.data(), at, u'\n'); }

    std::u16string_view text_;
    Progress& progress_;
    const char16_t* reached_ = text_.data();
    long long passed_ = 0;
    std::vector<std::u16string_view> open_;
};

struct Declaration final : Zn_SAXIterator {
    using Zn_SAXIterator::GetCharSet_A;
};

} // namespace

Zn_WString DeclaredCharset(const Zn_Buffer& xml)
{
    Zn_AString name;
    const std::string_view text = AsText(xml);
    if (Declaration::GetCharSet_A(text.data(), xml.GetLength(), name) != 1)
        return {};
    return Zn_WString(name.GetText(), name.GetLength(), 1252);
}

std::string FindXmlFault(const Zn_Buffer& xml, unsigned codePage, Progress& progress)
{
    const std::string_view bytes = AsText(xml);
    const Zn_WString text(bytes.data(), xml.GetLength(), codePage);
    Follower follower(text.GetView(), progress);
    Zn_SAXIterator reader(&follower);
    const int whole = reader.Parse(text.GetText(), text.GetLength());
    progress.Set(0, 0);
    return whole ? std::string() : follower.Fault();
}

std::vector<long long> DatasetBytes(const Zn_Buffer& xml)
{
    constexpr std::string_view kStart = "<dataset";
    constexpr std::string_view kEnd = "</dataset>";
    const std::string_view text = AsText(xml);
    std::vector<long long> sizes;
    for (std::size_t pos = text.find(kStart); pos != std::string_view::npos; pos = text.find(kStart, pos)) {
        std::size_t tagEnd = text.find('>', pos);
        if (tagEnd == std::string_view::npos)
            break;
        std::size_t end = tagEnd + 1;
        if (text[tagEnd - 1] != '/') {
            const std::size_t endTag = text.find(kEnd, tagEnd);
            end = endTag == std::string_view::npos ? text.size() : endTag + kEnd.size();
        }
        sizes.push_back(static_cast<long long>(end - pos));
        pos = end;
    }
    return sizes;
}

} // namespace zntool
