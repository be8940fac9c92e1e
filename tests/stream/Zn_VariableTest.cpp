#include "Zn_Variable.h"

#include "Zn_DOMElement.h"

#include <gtest/gtest.h>

namespace {

std::string Show(const Zn_VariableList& list)
{
    std::string shown;
    for (const Zn_Variable& variable : list) {
        shown += variable.id.ToUtf8() + ":" + Zn_WString(variable.value.GetTypeString()).ToUtf8() + "=" +
                 variable.value.ToString().ToUtf8() + ";";
    }
    return shown;
}

} // namespace

TEST(Variable, OperatorsThatCallersRelyOn)
{
    const Zn_Variable a(u"a", Zn_Variant(1));
    EXPECT_NE(a == Zn_Variable(u"b", Zn_Variant(2)), 0) << "different ids answer equal";
    EXPECT_EQ(a == Zn_Variable(u"a", Zn_Variant(2)), 0);
    EXPECT_EQ(a == Zn_Variable(u"a", Zn_Variant(1)), 1);
    EXPECT_EQ(a == Zn_Variant(1), 1);
    EXPECT_EQ(a == u"a", 0) << "against a text 0 means the id equals it";
}

TEST(VariableList, OneValuePerIdThroughAddVariable)
{
    Zn_VariableList list;
    EXPECT_EQ(list.AddVariable(u"Name", Zn_Variant(1)), 0);
    EXPECT_EQ(list.AddStr(u"NAME", u"two"), 0);
    EXPECT_EQ(Show(list), "Name:STRING=two;");
    EXPECT_EQ(list.AddVariable(u"", Zn_Variant(1)), -1);
    EXPECT_EQ(list.AddVariable(static_cast<const char16_t*>(nullptr), Zn_Variant(1)), -1);
    EXPECT_EQ(list.AddVariable(u"none", nullptr), 1);
    EXPECT_EQ(list.Add(Zn_Variable(u"name", Zn_Variant(3))), 2) << "Add does not look for the id";
    EXPECT_EQ(list.Var(u"NAME").ToString(), u"two");
    EXPECT_EQ(list.Add(Zn_Variable()), -1);
    EXPECT_EQ(list.SetStr(9, u"x"), -1);
    EXPECT_EQ(list.AddVariable(u"none", 0), 1);
    EXPECT_EQ(list.Var(1).type, Zn_Variant::Integer) << "0 is a number, not a null pointer";
    EXPECT_EQ(Zn_Variable(u"a", u"text").value.ToString(), u"text");
    EXPECT_EQ(list.SetVariant(1, 2.5), 1);
    EXPECT_EQ(list.Var(1).ToDouble(), 2.5);
    EXPECT_EQ(list.Id(9), u"");
    EXPECT_EQ(list.Var(9).type, Zn_Variant::Empty);
}

TEST(VariableList, TextForm)
{
    const struct {
        const char16_t* text;
        const char* shown;
    } kCases[] = {
        {u"a=1 b=2.5 c='7' d", "a:INTEGER=1;b:DECIMAL=2.5;c:STRING=7;d:STRING=;"},
        {u"a = 1\tb= -3\r\nc =\"x y\"", "a:INTEGER=1;b:INTEGER=-3;c:STRING=x y;"},
        {u"a=1 A=2", "a:INTEGER=2;"},
        {u"a=1.2.3 b=x", "a:STRING=1.2.3;b:STRING=x;"},
        {u"x y=1", "x:STRING=;"},
        {u"", ""},
    };
    for (const auto& entry : kCases) {
        Zn_VariableList list;
        list.AddStr(u"old", u"gone");
        list.SetStr(entry.text);
        EXPECT_EQ(Show(list), entry.shown) << Zn_WString(entry.text).ToUtf8();
    }
    EXPECT_EQ(Zn_VariableList().SetStr(nullptr), -1);
}

TEST(VariableList, BinaryBlock)
{
    Zn_VariableList list;
    list.SetStr(u"user=kim limit=500 ratio=0.75");
    list.AddVariable(u"none", Zn_Variant());
    list.AddStr(u"last", u"x");
    Zn_Buffer out;
    const int saved = list.Save(out, 65001);
    Zn_VariableList loaded;
    EXPECT_EQ(loaded.Load(out, 0, 65001), saved);
    EXPECT_EQ(Show(loaded), Show(list));

    for (int length = 0; length < out.GetLength(); ++length) {
        Zn_Buffer cut;
        cut.Set(out.GetData(), length);
        const int end = loaded.Load(cut, 0, 65001);
        EXPECT_TRUE(end == length || (end == -1 && loaded.Count() == 0)) << length;
    }
    EXPECT_EQ(loaded.Load(Zn_Buffer(), 0, 65001), 0);
    out.GetSafeBuffer(1)[1] = 8;
    EXPECT_EQ(loaded.Load(out, 0, 65001), -1);
}

TEST(VariableList, UnnamedItemIsSkippedInStep)
{
    Zn_VariableList list;
    list.AddStr(u"a", u"1");
    list.AddVariable(u"b", Zn_Variant(5));
    list.AddStr(u"c", u"3");
    list.GetSafeItem(1)->id.Empty();
    Zn_Buffer out;
    list.Save(out, 65001);
    Zn_VariableList loaded;
    EXPECT_EQ(loaded.Load(out, 0, 65001), out.GetLength());
    EXPECT_EQ(Show(loaded), "a:STRING=1;c:STRING=3;");
}

TEST(VariableList, XmlForms)
{
    Zn_VariableList list;
    list.SetStr(u"n=12 d=0.5 s='a<b'");
    list.AddVariable(u"e", Zn_Variant());
    Zn_Buffer text;
    list.SaveXml(text, 0, 65001);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(text.GetData()), static_cast<std::size_t>(text.GetLength())),
              "<params>\n<param id=\"n\" type=\"INTEGER\">12</param>\n<param id=\"d\" type=\"DECIMAL\">0.5</param>\n"
              "<param id=\"s\" type=\"STRING\">a<b</param>\n<param id=\"e\" type=\"null\"></param>\n</params>\n")
        << "nothing is escaped";

    Zn_DOMElement element;
    EXPECT_EQ(list.SaveXml(element, 1), 4);
    ASSERT_EQ(element.children.Count(), 2);
    const Zn_DOMElement& params = element.children[1];
    EXPECT_EQ(params.children[3].kind, Zn_DOMElement::EmptyElement);
    Zn_VariableList loaded;
    loaded.AddStr(u"kept", u"k");
    EXPECT_EQ(loaded.LoadXml(params, 0), 5);
    EXPECT_EQ(Show(loaded), "kept:STRING=k;n:INTEGER=12;d:DECIMAL=0.5;s:STRING=a<b;e:STRING=;");
    Zn_VariableList ordered(1);
    ordered.SetStr(u"z=1 m=2 a=3 z=4");
    EXPECT_EQ(Show(ordered), "a:INTEGER=3;m:INTEGER=2;z:INTEGER=4;");
    EXPECT_EQ(list.SaveXml(element, 65001), 4);
    EXPECT_EQ(element.children.Count(), 1);
    EXPECT_EQ(Zn_VariableList().SaveXml(element, 0), 0);
    EXPECT_EQ(element.children[0].kind, Zn_DOMElement::EmptyElement);
}

TEST(VariableListChain, FirstListWins)
{
    Zn_VariableList form;
    Zn_VariableList global;
    form.AddStr(u"x", u"form");
    global.AddStr(u"X", u"global");
    global.AddStr(u"y", u"why");
    Zn_VariableListChain chain(&form);
    EXPECT_EQ(chain.Add(&global), 1);
    EXPECT_EQ(chain.Add(&form), 0);
    EXPECT_EQ(chain.Add(nullptr), -1);
    EXPECT_EQ(chain.GetVar(u"X")->ToString(), u"form");
    chain.GetSafeVar(u"Y")->Set(5);
    EXPECT_EQ(global.Var(u"y").ToInteger(), 5);
    EXPECT_EQ(chain.GetVar(u"z"), nullptr);
}
