// Whole messages, byte for byte: against files that an independent encoder wrote, through both encodings, all data
// modes and code pages, and the reader straight from the tokenizer against the one through a document.

#include "Zn_Stream.h"

#include "Zn_CodePage.h"
#include "Zn_XmlDOM.h"
#include "long_tests.h"
#include "messages.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

// The XML message read the long way: the document first, then its elements.
int LoadThroughDocument(Message& message, const std::string& bytes)
{
    Zn_XmlDOM document;
    document.Load(bytes.data(), static_cast<int>(bytes.size()), 0);
    const Zn_DOMElement* declaration = document.GetItem(u"xml", 0);
    message.codePage = ZnGetLocaleCP();
    if (declaration && !declaration->attributes.Str(u"encoding").IsEmpty())
        message.codePage = zn_findcodepageW(declaration->attributes.Str(u"encoding"));
    const Zn_DOMElement* root = document.GetItem(u"root", 0);
    if (!root || !root->IsHaveChild())
        return -1;
    if (const Zn_DOMElement* params = root->children.GetItem(u"params", 0))
        message.params.LoadXml(*params, 1);
    for (const Zn_DOMElement& child : root->children) {
        if (!zn_iequal(child.tag.GetView(), u"dataset"))
            continue;
        Zn_Dataset scratch;
        scratch.LoadDataXml(child, 1);
        message.tables.AddDataset(scratch.GetId(), &scratch);
    }
    return message.tables.Count();
}

void ExpectSameOutcome(const std::string& xml)
{
    Message straight;
    Message throughDocument;
    ASSERT_EQ(straight.LoadXml(xml), LoadThroughDocument(throughDocument, xml)) << xml.substr(0, 2000);
    EXPECT_EQ(straight.codePage, throughDocument.codePage) << xml.substr(0, 2000);
    ASSERT_EQ(straight.Xml(1), throughDocument.Xml(1)) << xml.substr(0, 2000);
    ASSERT_EQ(straight.Binary(1), throughDocument.Binary(1)) << xml.substr(0, 2000);
}

} // namespace

TEST(Stream, RealBinaryMessagesAreWrittenBackAsTheyWere)
{
    const struct {
        const char* name;
        int mode;
        int tables;
    } kFiles[] = {{"store", 0, 3}, {"changes-mode1", 1, 2}, {"changes-mode2", 2, 2}};
    for (const auto& file : kFiles) {
        const std::string bytes = StoreFile(std::string(file.name) + ".bin");
        Message message;
        ASSERT_EQ(message.LoadBinary(bytes), file.tables) << file.name;
        EXPECT_TRUE(message.Binary(file.mode) == bytes) << file.name;
        EXPECT_TRUE(message.Xml(file.mode) == StoreFile(std::string(file.name) + ".xml")) << file.name;
    }
}

TEST(Stream, RealXmlMessageIsWrittenBackAsItWas)
{
    const std::string xml = StoreFile("store.xml");
    Message message;
    ASSERT_EQ(message.LoadXml(xml), 3);
    EXPECT_EQ(message.codePage, 65001u);
    EXPECT_TRUE(message.Xml(0) == xml);
    EXPECT_TRUE(message.Binary(0) == StoreFile("store.bin"));
    EXPECT_EQ(message.tables.GetItem(u"invoices")->GetRowCount(), 412);
    EXPECT_EQ(message.params.Var(u"ratio").ToDouble(), 0.75);
}

TEST(Stream, ChangesInXmlComeBackWithAllTheirStates)
{
    for (int mode : {1, 2}) {
        const std::string name = "changes-mode" + std::to_string(mode);
        const std::string xml = StoreFile(name + ".xml");
        Message fromXml;
        Message fromBinary;
        ASSERT_EQ(fromXml.LoadXml(xml), 2);
        ASSERT_EQ(fromBinary.LoadBinary(StoreFile(name + ".bin")), 2);
        // An original without text is absent in one and empty in the other, and says so.
        std::string again = fromXml.Xml(mode);
        for (std::size_t at = 0; (at = again.find("></", at)) != std::string::npos;) {
            const std::size_t tag = again.rfind('<', at);
            const std::string id = again.substr(tag + 1, at - tag - 1);
            if (again.compare(at + 3, id.size() + 1, id + ">") == 0)
                again.replace(at, id.size() + 4, "/>");
            ++at;
        }
        EXPECT_TRUE(again == xml) << name;
        EXPECT_TRUE(fromXml.Xml(0) == fromBinary.Xml(0)) << name;
    }
}

TEST(Stream, EmptyMessages)
{
    Message empty;
    EXPECT_EQ(empty.Binary(0), std::string("\0\1\xFF\x10\x07\xD0\0\0", 8));
    Message loaded;
    EXPECT_EQ(loaded.LoadBinary(empty.Binary(0)), 0);
    EXPECT_EQ(empty.Xml(0), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<root>\r\n\t<params/>\r\n</root>");
    EXPECT_EQ(loaded.LoadXml(empty.Xml(0)), 0);
    loaded.params.AddStr(u"a", u"b");
    EXPECT_EQ(loaded.LoadBinary(std::string("\0\0\xFF\x10", 4)), static_cast<int>(0x83B10209));
    EXPECT_EQ(loaded.params.Count(), 0);
    EXPECT_EQ(loaded.LoadXml("<root/>"), -1);
    EXPECT_EQ(loaded.LoadXml(""), -1);
    ZnSetLocaleCP(949);
    EXPECT_EQ(loaded.LoadXml("<root><params/></root>"), 0);
    EXPECT_EQ(loaded.codePage, 949u);
    ZnSetLocaleCP(0);
}

// What is read may be a value of what it is read into, and of nothing else.
TEST(Stream, SourceMayStandInTheTarget)
{
    const auto own = [](const Zn_Buffer& bytes) { return MakeBuffer(BytesOf(bytes)); };
    Message message;
    Zn_VariableList& params = message.params;
    params.SetStr(u"a=1");
    Zn_Buffer block, form;
    params.Save(block, 0);
    params.AddVariable(u"m", own(block));
    EXPECT_EQ(params.Load(*params.Var(u"m").GetConstBinary(), 0, 0), block.GetLength());
    params.AddStr(u"text", u"b=2 c='a text of some length'");
    EXPECT_EQ(params.SetStr(params.Var(u"text").GetConstStr()->GetText()), 2);

    Zn_Dataset table(u"t", 65001);
    table.Save(form, 0);
    const std::string xml = "<dataset><colinfo id='z'/><record><z>1</z></record></dataset>";
    Zn_Variant sources[] = {own(form), MakeBuffer(xml), Zn_WString::FromUtf8(xml)};
    for (Zn_Variant& source : sources) {
        const bool isText = source.type == Zn_Variant::String;
        table.AddColumn(u"b", isText ? Zn_ColInfo::String : Zn_ColInfo::Blob);
        table.SetColumn(table.AppendRow(0), u"b", source);
        source.Clear();
        const Zn_Variant& cell = *table.GetColumnNF(table.GetRowCount() - 1, u"b");
        const Zn_Buffer& bytes = *cell.GetConstBinary();
        if (bytes.GetAt(0) == 0xFF)
            EXPECT_EQ(table.Load(bytes, 0), form.GetLength());
        else
            EXPECT_EQ(isText ? table.LoadDataXml(*cell.GetConstStr(), -1, 1) : table.LoadDataXml(bytes, 1), 1);
    }
    for (const bool isXml : {false, true}) {
        params.AddVariable(u"m", MakeBuffer(isXml ? message.Xml(0) : message.Binary(0)));
        const Zn_Buffer& bytes = *params.Var(u"m").GetConstBinary();
        EXPECT_EQ(isXml ? ZnXmlStreamLoad(params, message.tables, bytes, message.codePage)
                        : ZnBinStreamLoad(params, message.tables, bytes),
                  0);
        EXPECT_EQ(params.Var(u"b").ToInteger(), 2);
    }
}

TEST(Stream, EveryCodePageKeepsTheText)
{
    Message message;
    message.LoadXml(StoreFile("store.xml"));
    message.params.AddStr(u"mixed", u"\uD55C\uAE00 \u65E5\u672C \u00FC \U0001F600");
    const std::string utf8 = message.Xml(0);
    for (unsigned codePage : {1252u, 949u, 932u, 1200u, 65001u}) {
        const std::string xml = message.Xml(0, codePage);
        Message loaded;
        if (codePage == 1200)
            continue; // a reader can't tell UTF-16 from a declaration in bytes
        ASSERT_EQ(loaded.LoadXml(xml), 3) << codePage;
        EXPECT_EQ(loaded.codePage, codePage);
        EXPECT_TRUE(loaded.Xml(0) == utf8) << codePage;
    }
}

TEST(Stream, BlanksAtTheEndsOfAValueTravel)
{
    const char16_t* kValues[] = {u" a ", u"  a", u"a\t", u"\n a", u" ", u" \n ", u"a & b ", u" & ", u"\r", u" a\r\n"};
    Message message;
    for (const char16_t* value : kValues) {
        Zn_WString id(u"v");
        id += message.params.Count();
        message.params.AddStr(id, value);
    }
    const std::string xml = message.Xml(0);
    EXPECT_NE(xml.find("> a </param>"), std::string::npos) << xml;
    Message loaded;
    ASSERT_EQ(loaded.LoadXml(xml), 0);
    for (int i = 0; i < message.params.Count(); ++i)
        EXPECT_EQ(loaded.params.Var(i).ToString(), kValues[i]) << i;
    ASSERT_EQ(loaded.LoadXml("<root><params><param id='p'>\n  a\n</param><param id='q'> <![CDATA[b]]> </param>"
                             "<param id='r'>c<!-- --> </param></params></root>"),
              0);
    EXPECT_EQ(loaded.params.Var(u"p").ToString(), u"a") << "a line break is layout";
    EXPECT_EQ(loaded.params.Var(u"q").ToString(), u"b");
    EXPECT_EQ(loaded.params.Var(u"r").ToString(), u"c");
}

TEST(Stream, BothReadersAgree)
{
    for (const char* name : {"store.xml", "changes-mode1.xml", "changes-mode2.xml"}) {
        std::string xml = StoreFile(name);
        // Only the reader of messages keeps the blank at the end of this name.
        for (std::size_t at = 0; (at = xml.find("Edinburgh <", at)) != std::string::npos;)
            xml.erase(at + 9, 1);
        ExpectSameOutcome(xml);
    }
    const char* kOdd[] = {
        "<root>text</root>",
        "<a/><root><dataset id='x'/></root><root><dataset id='y'/></root>",
        "<?xml encoding='euc-kr'?><XML encoding='utf-8'/><root><dataset id='x'/></root>",
        "<root><dataset id='b'><colinfo id='c'/><record><c>1</c></record></dataset><params><param id='p'>1</param>"
        "</params><dataset id='B'><colinfo id='d'/></dataset><params><param id='q'/></params></root>",
        "<root><dataset><colinfo/><record>text<c/></record></dataset></root>",
        "<root><dataset><colinfo id='org_record'/><colinfo id='c'/><record type='u'><org_record>o<c>2</c></org_record>"
        "<c>1</c><org_record><c>3</c></org_record></record></dataset></root>",
        "<root><dataset><colinfo id='c'/><record type='u'><org_record><c>2</c>text<c>3</c></org_record></record>",
        "<root><dataset><colinfo id='c'/><record type='u'><c>1</c><org_record><c>2",
        "<root><dataset><colinfo id='c'/><record><c>1</c></wrong>",
        "<root><dataset><column id='k' type='INTEGER'>5<b/>6</column><colinfo id='k'/><?record x?><record><?k 7?>"
        "<k><!-- c -->8</k></record><colinfo id='l'/></dataset></root>",
        "<ROOT><Params><PARAM id='a' type='INT'>1</PARAM><param id='A'>2</param><x><param id='n'/></x></Params></ROOT>",
    };
    for (const char* xml : kOdd)
        ExpectSameOutcome(xml);
}

TEST(Stream, BothReadersAgreeOnRandomSoup)
{
    std::vector<std::string> pieces(1);
    for (const char ch : std::string_view(
             "<root>|</root>|<dataset id='a'>|<dataset id='B'>|</dataset>|<record>|<record type='u'>|"
             "<record type='delete'>|</record>|<org_record>|</org_record>|<colinfo id='c' type='INT'/>|"
             "<colinfo id='d'/>|<c>|</c>|<d>|</d>|<c/>|text|7|<column id='k'>|</column>|<params>|</params>|"
             "<param id='p' type='INTEGER'>|</param>|<![CDATA[x]]>|<!-- -->|\n |<?c x?>|&lt;|<d")) {
        if (ch == '|')
            pieces.emplace_back();
        else
            pieces.back() += ch;
    }
    const int rounds = LongTests() ? 300000 : 4000;
    for (int round = 0; round < rounds; ++round) {
        std::mt19937 random(static_cast<unsigned>(round));
        std::string xml = "<root><dataset id='a'>";
        for (auto left = 3 + random() % 40; left > 0; --left)
            xml += pieces[random() % pieces.size()];
        ExpectSameOutcome(xml);
        if (HasFatalFailure())
            return;
    }
}
