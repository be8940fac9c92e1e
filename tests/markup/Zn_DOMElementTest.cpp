#include "Zn_DOMElement.h"

#include "Zn_XmlDOM.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

Zn_DOMElement MakeElement(int kind, const char16_t* tag, const char16_t* text = u"")
{
    Zn_DOMElement element;
    element.kind = kind;
    element.tag = tag;
    element.text = text;
    return element;
}

std::string Saved(const Zn_DOMElemList& list, int encode = 1, int indent = 1, int depth = 0)
{
    Zn_WString wide(u"kept");
    EXPECT_EQ(list.Save(wide, encode, indent, depth), 1);
    Zn_Buffer bytes;
    bytes.Set(reinterpret_cast<const unsigned char*>("kept"), 4);
    EXPECT_EQ(list.Save(bytes, encode, indent, depth), 1);
    const std::string text(reinterpret_cast<const char*>(bytes.GetData()), static_cast<std::size_t>(bytes.GetLength()));
    EXPECT_EQ(text, wide.ToUtf8());
    EXPECT_EQ(text.substr(0, 4), "kept");
    return text.substr(4);
}

std::string SavedNode(const Zn_DOMElement& element, int encode = 1, int indent = 1, int depth = 0)
{
    Zn_DOMElemList list;
    list.Add(element);
    return Saved(list, encode, indent, depth);
}

TEST(DOMElement, EachKindAsItIsWritten)
{
    struct {
        int kind;
        std::string_view alone;
        std::string_view withText; // text "<t>" beside a child <b/>
    } rows[] = {
        {0, "&lt;t&gt;", "&lt;t&gt;"},
        {1, "&lt;t&gt;", "&lt;t&gt;"},
        {16, "<?a?>", "<?a?><t>"},
        {17, "\r\n<!a>", "\r\n<!a><t>"},
        {18, "<![CDATA[<t>]]>", "<![CDATA[<t>]]>"},
        {32, "\r\n\t<a>", "\r\n\t<a><t>"},
        {48, "\r\n\t<a></a>", "\r\n\t<a><t>\r\n\t</a>"},
        {49, "\r\n\t<a/>", "\r\n\t<a/><t>"},
        {50, "\r\n\t<a>", "\r\n\t<a><t>"},
        {64, "\r\n\t<a></a>", "\r\n\t<a><t>\r\n\t</a>"},
        {80, "\r\n\t<a></a>", "\r\n\t<a><t>\r\n\t</a>"},
        {81, "\r\n\t<a>", "\r\n\t<a><t>"},
        {96, "\r\n\t<a></a>", "\r\n\t<a><t>\r\n\t</a>"},
        {97, "\r\n\t<a></a>", "\r\n\t<a><t>\r\n\t</a>"},
        {98, "\r\n\t<a></a>", "\r\n\t<a><t>\r\n\t</a>"},
        {153, "\r\n\t<!--<t>-->", "\r\n\t<!--<t>-->"},
    };
    for (const auto& row : rows) {
        const bool leaf = row.kind < 16 || row.kind == 18 || row.kind == 153;
        Zn_DOMElement element = MakeElement(row.kind, u"a", leaf ? u"<t>" : u"");
        EXPECT_EQ(SavedNode(element, 1, 1, 1), row.alone) << row.kind;
        element.text = u"<t>";
        element.children.Add(MakeElement(49, u"b"));
        EXPECT_EQ(SavedNode(element, 1, 1, 1), row.withText) << row.kind;
    }
}

TEST(DOMElement, WhereEndTagsStand)
{
    struct {
        std::vector<int> children;
        std::string_view text;
    } rows[] = {
        {{0}, "\r\n<a>x</a>"},
        {{1}, "\r\n<a>x\r\n</a>"},
        {{18}, "\r\n<a><![CDATA[x]]>\r\n</a>"},
        {{49}, "\r\n<a>\r\n\t<b/>\r\n</a>"},
        {{0, 0}, "\r\n<a>xx\r\n</a>"},
        {{0, 49}, "\r\n<a>x\r\n\t<b/>\r\n</a>"},
    };
    for (const auto& row : rows) {
        Zn_DOMElement element = MakeElement(48, u"a");
        for (const int kind : row.children)
            element.children.Add(MakeElement(kind, u"b", kind == 49 ? u"" : u"x"));
        EXPECT_EQ(SavedNode(element), row.text);
    }
}

TEST(DOMElement, LineBreaksNeedBothEncodeAndIndent)
{
    Zn_DOMElement element = MakeElement(48, u"a");
    element.children.Add(MakeElement(0, u"", u"1 < 2"));
    element.children.Add(MakeElement(153, u"", u"c"));
    element.children.Add(MakeElement(17, u"d"));
    EXPECT_EQ(SavedNode(element, 1, 0), "<a>1 &lt; 2<!--c-->\r\n<!d></a>");
    EXPECT_EQ(SavedNode(element, 0, 1), "<a>1 < 2<!--c-->\r\n<!d></a>");
    EXPECT_EQ(SavedNode(element, 1, 1, -5), "\r\n<a>1 &lt; 2\r\n\t<!--c-->\r\n<!d>\r\n</a>");
}

TEST(DOMElement, AttributesAsTheyAreWritten)
{
    Zn_DOMElement element = MakeElement(49, u"a");
    element.SetAttrib(u"x = <1>");
    EXPECT_EQ(SavedNode(element, 0, 0), "<a x = <1>/>");
    Zn_WString text(u"before");
    element.GetAttribute(text);
    EXPECT_EQ(text, u"x = <1>");

    element.attributes.AddStr(u"e", u"", 0);
    element.attributes.AddStr(u"n", u"1 & \uD55C", 0);
    element.attributes.AddStr(u"f", u"", 0);
    element.attributes.AddStr(u"q", u"say \"it's\"", 0);
    element.attributes.AddStr(u"~v", u"<raw", 0);
    EXPECT_EQ(SavedNode(element, 0, 0), "<a  n=\"1 &amp; \uD55C\"  q='say &quot;it&apos;s&quot;' ~v=\"&lt;raw\"/>");
    element.GetAttributeFromList(text);
    EXPECT_EQ(text.ToUtf8(), "e=\"\" n=\"1 &amp; \uD55C\" f=\"\" q='say &quot;it&apos;s&quot;' <raw");
    Zn_WString separated;
    Zn_DOMElemList list;
    list.Add(element);
    list.Save(separated, 1, 0, u'\n', 0);
    EXPECT_EQ(separated.ToUtf8().substr(0, 9), "<a\n\nn=\"1 ");

    element.rawAttributes.Empty();
    element.attributes.ReleaseList();
    text = u"before";
    element.GetAttribute(text);
    EXPECT_EQ(text, u"before");
}

TEST(DOMElement, SavesInTheCodePageOfTheList)
{
    struct {
        unsigned codePage;
        std::string_view text;
    } rows[] = {
        {65001, "<a x=\"\xED\x95\x9C\">\xC3\xA9\xED\x95\x9C</a>"},
        {1252, "<a x=\"&#xD55C;\">\xE9&#xD55C;</a>"},
        {949, "<a x=\"\xC7\xD1\">&#xE9;\xC7\xD1</a>"},
    };
    Zn_DOMElement element = MakeElement(48, u"a");
    element.attributes.AddStr(u"x", u"\uD55C", 0);
    element.children.Add(MakeElement(0, u"", u"\u00E9\uD55C"));
    for (const auto& row : rows) {
        Zn_DOMElemList list(row.codePage);
        list.Add(element);
        Zn_Buffer out;
        list.Save(out, 1, 0, 0);
        EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(out.GetData()), out.GetSpan().size()), row.text);
    }
    Zn_DOMElemList list(1252);
    list.Add(MakeElement(0, u"", u"\uD55C"));
    Zn_Buffer replaced;
    list.Save(replaced, 0, 0, 0);
    EXPECT_EQ(replaced.GetAt(0), '?'); // text that is not escaped can't hold a reference
    Zn_DOMElemList utf16(1200);
    utf16.Add(MakeElement(49, u"a"));
    Zn_Buffer wide;
    utf16.Save(wide, 1, 0, 0);
    EXPECT_EQ(wide.GetLength(), 8);
}

std::string FieldsOf(const Zn_DOMElement& node)
{
    const Zn_WString* texts[] = {&node.tag, &node.text, &node.rawAttributes, &node.attributes.Str(u"x"),
                                 &node.children[0].tag};
    std::string all = std::to_string(node.kind);
    for (const Zn_WString* text : texts)
        all += " " + text->ToUtf8();
    return all;
}

TEST(DOMElement, CopiesAndParents)
{
    Zn_DOMElement parent;
    Zn_DOMElement element = MakeElement(18, u"a", u"text");
    element.attributes.AddStr(u"x", u"1", 0);
    element.SetAttrib(u"raw");
    EXPECT_EQ(element.SetParent(&parent), nullptr);
    EXPECT_EQ(element.SetParentIndex(7), -1);
    EXPECT_EQ(element.SetParentIndex(8), 7);
    element.children.Add(MakeElement(49, u"b"), &element);

    Zn_DOMElement set;
    EXPECT_EQ(set.Set(nullptr), 1);
    EXPECT_EQ(set.kind, 48);
    EXPECT_EQ(set.Set(&element), 1);
    EXPECT_EQ(FieldsOf(set), "18 a text raw 1 b");
    EXPECT_EQ(set.children[0].GetParent(), nullptr); // copies below stand in no relation to the old tree
    EXPECT_EQ(set.GetParent(), nullptr);
    EXPECT_EQ(set.GetParentIndex(), -1);

    Zn_DOMElement copy(element);
    EXPECT_EQ(copy.GetParent(), &parent);
    EXPECT_EQ(copy.GetParentIndex(), 8);
    copy.Clear();
    EXPECT_EQ(FieldsOf(copy), "48     ");
    EXPECT_FALSE(copy.IsHaveChild() || copy.attributes.Count() > 0);
    EXPECT_EQ(copy.GetParentIndex(), 8);

    // A node below as the source.
    set = set.children[0];
    EXPECT_EQ(set.tag, u"b");
    EXPECT_EQ(set.children.Count(), 0);
}

TEST(DOMElemList, AddAssignAppend)
{
    Zn_DOMElement parent;
    Zn_DOMElemList list(949);
    EXPECT_EQ(list.Add(nullptr, &parent), -1);
    EXPECT_EQ(list.Add(MakeElement(48, u"a"), &parent), 0);
    EXPECT_EQ(list.Add(MakeElement(48, u"b"), &parent), 1);
    EXPECT_EQ(list[1].GetParent(), &parent);
    EXPECT_EQ(list[1].GetParentIndex(), 1);
    EXPECT_EQ(&list[2], &list[-1]);
    EXPECT_EQ(list[2].kind, 48);

    Zn_DOMElemList other;
    EXPECT_EQ(other.Assign(nullptr, &parent), 0);
    EXPECT_EQ(other.Assign(&list, nullptr), 2);
    EXPECT_EQ(other.GetCodePage(), 949u);
    EXPECT_EQ(other[1].GetParentIndex(), 1);
    EXPECT_EQ(other.Append(&other, &parent), 4);
    EXPECT_EQ(other[3].tag, u"b");
    EXPECT_EQ(other[3].GetParentIndex(), 3);
    EXPECT_EQ(other[0].GetParent(), &parent);
    (other += list) += nullptr;
    EXPECT_EQ(other.Count(), 6);
    other = static_cast<const Zn_DOMElemList*>(nullptr);
    EXPECT_EQ(other.Count(), 6);
    Zn_DOMElemList moved(std::move(other));
    EXPECT_EQ(moved.Count(), 6);
    EXPECT_EQ(moved.GetCodePage(), 949u);
    moved.GetSafeItem(0)->children.Add(MakeElement(48, u"below"));
    moved = moved[0].children; // a list below as the source
    EXPECT_EQ(moved.Count(), 1);
    EXPECT_EQ(moved[0].tag, u"below");
}

TEST(DOMElemList, FindsTags)
{
    Zn_XmlDOM doc;
    const std::u16string_view text = u"<a><b/><c><B/></c></a>x<b/>";
    ASSERT_EQ(doc.Load(text.data(), static_cast<int>(text.size())), 1);
    doc.Add(MakeElement(48, u""));
    doc.GetSafeItem(3)->children.Add(MakeElement(49, u"b")); // below an empty tag: not seen
    struct {
        int nth;
        int found;
        const char16_t* tag;
    } level[] = {{-1, 0, u"A"}, {0, 0, u"a"}, {1, -1, u"a"}, {0, 2, u"b"}, {0, -1, u""}, {0, -1, nullptr}};
    for (const auto& row : level)
        EXPECT_EQ(doc.FindTag(row.tag, row.nth), row.found);
    EXPECT_EQ(doc.GetItem(u"a", 0), doc.GetItem(0));
    EXPECT_EQ(doc.GetItem(u"x", 0), nullptr);

    const Zn_DOMElement* a = doc.GetItem(0);
    EXPECT_EQ(doc.FindTagRecurs(u"b", 0), a->children.GetItem(0));
    EXPECT_EQ(doc.FindSafeTagRecurs(u"b", 1), a->children[1].children.GetItem(0));
    EXPECT_EQ(doc.FindTagRecurs(u"b", 2), doc.GetItem(2));
    EXPECT_EQ(doc.FindTagRecurs(u"b", 3), nullptr);
    EXPECT_EQ(doc.FindTagRecurs(u"b", -1), nullptr);
    int count = 0;
    EXPECT_EQ(a->children.FindTagRecurs(u"b", 2, count), nullptr);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(doc.FindTagRecurs(u"b", 2, count), a->children.GetItem(0));
    EXPECT_EQ(count, 3);
}

// Nodes that several places hold live until the last of them goes, however the tree is taken apart.
TEST(DOMElemList, SharedNodes)
{
    const int before = Zn_DOMElemHandler::Instance().GetPool().GetUsedCount();
    {
        Zn_DOMElemList kept;
        {
            Zn_DOMElemList list;
            Zn_DOMElemList* level = &list;
            for (int depth = 0; depth < 1000; ++depth) {
                Zn_DOMElement* node = level->NewItem();
                level->AddLink(node);
                level->AddLink(node);
                if (depth == 500)
                    kept.AddLink(node);
                level = &node->children;
            }
        }
        EXPECT_EQ(kept[0].children.Count(), 2);
        EXPECT_EQ(Zn_DOMElemHandler::Instance().GetPool().GetUsedCount(), before + 500);
    }
    EXPECT_EQ(Zn_DOMElemHandler::Instance().GetPool().GetUsedCount(), before);
}

} // namespace
