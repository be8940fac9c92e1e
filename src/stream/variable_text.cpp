// The text forms of variables: XML and blank-separated pairs.

#include "Zn_Variable.h"

#include "Zn_DOMElement.h"
#include "foundation/number_text.h"
#include "foundation/vector_list.h"
#include "markup/dom_builder.h"
#include "markup/first_text.h"
#include "markup/name_values.h"
#include "stream/variable_xml_reader.h"
#include "stream/variable_xml_writer.h"

#include <utility>

namespace {

Zn_Variant ValueOf(const zn::NameValue& pair)
{
    Zn_WString text(pair.value);
    if (pair.IsQuoted())
        return text.TrimBrace(1);
    if (!text.IsNumber())
        return text;
    return pair.value.find(u'.') == std::u16string_view::npos ? Zn_Variant(text.ToInteger())
                                                              : Zn_Variant(text.ToDouble());
}

} // namespace

int Zn_VariableList::SetStr(const char16_t* text)
{
    if (!text)
        return -1;
    Zn_VariableList read(GetOption()); // the text may be one of the values
    const bool hasRoom = zn::Guarded([&] {
        zn::VariableFiller variables(read);
        const auto put = [&](const zn::NameValue& pair) { variables.Put(Zn_WString(pair.name), ValueOf(pair)); };
        zn::ReadNameValues(text, put);
    });
    *this = std::move(read);
    return hasRoom ? Count() : -1;
}

int Zn_VariableList::SaveXml(Zn_Buffer& out, int, unsigned codePage) const
{
    Zn_WString text(u"<params>\n");
    for (const Zn_Variable& variable : *this) {
        text += u"<param id=\"";
        text += variable.id;
        text += u"\" type=\"";
        text += variable.value.GetTypeString();
        text += u"\">";
        text += variable.value.ToString();
        text += u"</param>\n";
    }
    text += u"</params>\n";
    out.AppendStr(text, text.GetLength(), codePage);
    return out.GetLength();
}

int Zn_VariableList::SaveXml(Zn_DOMElement& element, int withDeclaration) const
{
    element.Clear();
    const bool hasRoom = zn::Guarded([&] {
        zn::DomBuilder builder(element.children);
        if (withDeclaration == 1)
            zn::WriteLocaleXmlDeclaration(builder);
        zn::WriteVariables(*this, builder);
    });
    return hasRoom ? Count() : -1;
}

int Zn_VariableList::LoadXml(const Zn_DOMElement& params, int clear)
{
    if (clear)
        ReleaseList();
    const bool hasRoom = zn::Guarded([&] {
        zn::VariableXmlReader reader(*this);
        for (const Zn_DOMElement& child : params.children) {
            if (zn_iequal(child.tag, u"param"))
                reader.Param(child.attributes, zn::FirstText(child));
        }
    });
    return hasRoom ? Count() : -1;
}

void zn::VariableXmlReader::Param(const Zn_NamedStrList& attributes, std::u16string_view text)
{
    Zn_Variant value;
    switch (Zn_Variant::GetTypeNo(attributes.Str(u"type"))) {
    case Zn_Variant::Integer:
        value = zn::ReadInteger(text);
        break;
    case Zn_Variant::Decimal:
        value = zn::ReadDouble(text);
        break;
    default:
        value = text;
        break;
    }
    variables_.Put(attributes.Str(u"id"), value);
}
