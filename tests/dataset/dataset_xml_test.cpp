#include "Zn_DOMElement.h"
#include "Zn_XmlDOM.h"
#include "tables.h"

#include <gtest/gtest.h>

namespace {

std::string SaveText(const Zn_Dataset& table, int dataMode)
{
    Zn_Buffer out;
    table.SaveDataXml(out, 0, 0, dataMode, 65001);
    return std::string(reinterpret_cast<const char*>(out.GetData()), static_cast<std::size_t>(out.GetLength()));
}

std::string LoadedState(const char16_t* xml)
{
    Zn_Dataset table;
    if (table.LoadDataXml(xml, -1, 1) < 0)
        return "failed";
    return StateOf(table);
}

} // namespace

TEST(DatasetXml, WritesEachDataMode)
{
    Zn_Dataset table(u"t", 65001);
    table.AddColumn(u"name", Zn_ColInfo::String, 9);
    table.AddColumn(u"at", Zn_ColInfo::Int, 4);
    table.AddConstColumn(u"rate", Zn_Variant(1.25));
    for (const char16_t* name : {u"a", u"b", u"c"})
        table.SetColumn(table.AppendRow(0), u"name", name);
    table.SetUpdate(1);
    table.SetColumn(1, u"name", u"x<y");
    table.DeleteRow(2);
    table.SetColumn(table.AppendRow(1), u"at", 7);

    const std::string head =
        "<dataset id=\"t\"><column id=\"rate\" type=\"DECIMAL\">1.25</column>"
        "<colinfo id=\"name\" size=\"9\" type=\"STRING\"/><colinfo id=\"at\" size=\"4\" type=\"INT\"/>";
    const std::string a = "<at/><name>a</name></record>";
    const std::string changes = "<record type=\"update\"><at/><name>x&lt;y</name>"
                                "<org_record><at/><name>b</name></org_record></record>"
                                "<record type=\"insert\"><at>7</at><name/></record>"
                                "<record type=\"delete\"><at/><name>c</name></record></dataset>";
    EXPECT_EQ(SaveText(table, 0), head + "<record>" + a + "<record><at/><name>x&lt;y</name></record>" +
                                      "<record><at>7</at><name/></record></dataset>");
    EXPECT_EQ(SaveText(table, 1), head + "<record>" + a + changes);
    EXPECT_EQ(SaveText(table, 2), head + changes);
    Zn_DOMElement parent;
    EXPECT_EQ(table.SaveDataXml(parent, 1, 1), 4) << "three rows and a deleted one";
    EXPECT_EQ(parent.children.Count(), 2) << "declaration and table";
}

TEST(DatasetXml, EmptyOriginalsTellWhetherThereWasAValue)
{
    Zn_Dataset table(u"t", 65001);
    for (const char16_t* id : {u"absent", u"empty", u"text", u"z"})
        table.AddColumn(id);
    table.AppendRow(0);
    table.SetColumn(0, u"empty", static_cast<const Zn_Variant*>(nullptr));
    table.SetColumn(0, u"text", u"");
    table.SetUpdate(1);
    table.SetColumn(0, u"z", u"1");
    EXPECT_NE(SaveText(table, 2).find("<org_record><absent/><empty></empty><text/><z/></org_record>"),
              std::string::npos)
        << SaveText(table, 2);
}

TEST(DatasetXml, ReadsWhatOthersWrite)
{
    const char16_t* kHead = u"<dataset id='t'><colinfo id='name' type='string'/><colinfo id='n' type='INT'/>";
    const struct {
        const char16_t* records;
        const char* state;
    } kCases[] = {
        {u"<record><name>a</name></record>", "a=1 |"},
        {u"<record type='normal'><NAME>a</NAME></record>", "a=1 |"},
        {u"<record type='Deleted'><name>a</name></record>", "| a"},
        {u"<record type='INSERT'><name>a</name><other>x</other></record>", "a=2 |"},
        {u"<record type='update'><name>a</name></record>", "a=4 |"},
        {u"<record type='update'><name>a</name><org_record><name>b</name></org_record></record>", "a=4<b> |"},
        {u"<record type='u'><org_record><x/><name>b</name></org_record><name>a</name></record>", "a=4<> |"},
        {u"<record type='insert'><name>a</name><org_record><name>b</name></org_record></record>", "a=2 |"},
        {u"<record/><record></record><record> </record><record><name/></record>", "=1 |"},
        {u"<record><name><![CDATA[<a>]]></name></record>", "<a>=1 |"},
        {u"<record><name><b>x</b>a</name></record>", "=1 |"},
        {u"<record><name>1</name><name>2</name></record>", "2=1 |"},
        {u"<other><record><name>a</name></record></other>", "|"},
        {u"<record><name>&#xAC00;&unknown;</name></record>", "\xEA\xB0\x80&unknown;=1 |"},
    };
    for (const auto& entry : kCases) {
        Zn_WString xml(kHead);
        xml += entry.records;
        xml += u"</dataset>";
        EXPECT_EQ(LoadedState(xml), entry.state) << xml.ToUtf8();
    }
    EXPECT_EQ(LoadedState(u"<root><x/><dataset><colinfo id='name'/><record><name>a</name></record></dataset></root>"),
              "a=1 |");
    EXPECT_EQ(LoadedState(u"<x/>"), "failed");
    EXPECT_EQ(LoadedState(u"<dataset><record>"), "failed");
}

TEST(DatasetXml, SummariesAndConstantColumns)
{
    Zn_Dataset table;
    table.LoadDataXml(u"<dataset><column id='i' type='INTEGER'>12x</column><column id='d' type='DECIMAL'>1.5</column>"
                      u"<column id='c' type='CURRENCY'>1.23</column><column id='s' type='DATE'>x</column><column/>"
                      u"<colinfo id='a' summ='Text:Total'/><colinfo id='b' summ='SUM'/><colinfo id='e' summ='sums'/>"
                      u"<colinfo id='f' summ='avg:Mean'/></dataset>",
                      -1, 1);
    EXPECT_EQ(table.GetConstCount(), 4);
    EXPECT_EQ(table.GetConstColumn(u"i")->ToInteger(), 12);
    EXPECT_EQ(table.GetConstColumn(u"d")->type, Zn_Variant::Decimal);
    EXPECT_EQ(table.GetConstColumn(u"c")->type, Zn_Variant::Currency);
    EXPECT_EQ(table.GetConstColumn(u"s")->type, Zn_Variant::String);
    EXPECT_EQ(table.GetColInfo(0)->summ, Zn_ColInfo::Text);
    EXPECT_EQ(table.GetColInfo(0)->text, u"Total");
    EXPECT_EQ(table.GetColInfo(1)->summ, Zn_ColInfo::Sum);
    EXPECT_EQ(table.GetColInfo(1)->text, u"");
    EXPECT_EQ(table.GetColInfo(2)->summ, Zn_ColInfo::None);
    EXPECT_EQ(table.GetColInfo(3)->summ, Zn_ColInfo::None);
}

TEST(DatasetXml, BytesTravelAsBase64)
{
    const unsigned char bytes[] = {0, 1, 254, 255, 60};
    Zn_Dataset table = MakeTable(1);
    Zn_Buffer picture;
    picture.Set(bytes, sizeof bytes);
    table.SetColumn(0, u"picture", picture);
    Zn_DOMElement parent;
    table.SaveDataXml(parent, 0, 1);
    Zn_Dataset loaded;
    EXPECT_EQ(loaded.LoadDataXml(*parent.children.GetItem(0), 1), 1);
    EXPECT_EQ(*loaded.GetColumn(0, u"picture")->GetConstBinary(), picture);
    EXPECT_EQ(loaded.GetOrgColumnNN(0, u"picture")->type, Zn_Variant::Empty);
    EXPECT_NE(SaveText(table, 0).find("type=\"BLOB\" encrypt=\"base64\""), std::string::npos);
}

TEST(DatasetXml, LoadingTwiceWithoutClearAddsRows)
{
    Zn_Buffer out;
    MakeTable(2).SaveDataXml(out, 1, 1, 1, 65001);
    Zn_Dataset table;
    table.SetUpdate(1);
    EXPECT_EQ(table.LoadDataXml(out, 0), 2);
    EXPECT_EQ(table.LoadDataXml(out, 0), 4);
    EXPECT_EQ(table.GetColCount(), 4);
    EXPECT_EQ(table.IsUpdated(), 1) << "rows that are read while tracking is on count as inserted";
    EXPECT_EQ(table.LoadDataXml(out, 1), 2);
}
