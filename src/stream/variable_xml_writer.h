// The "params" element of a list of variables, for nodes and for text alike (a MarkupWriter
// or a DomBuilder).
#pragma once

#include "Zn_CodePage.h"
#include "Zn_DOMElement.h"
#include "Zn_Variable.h"

namespace zn {

// The node that begins a document: <?xml version="1.0" encoding="..."?>
template <class Sink>
void WriteXmlDeclaration(Sink& sink, std::u16string_view charset)
{
    sink.Open(Zn_DOMElement::ProcInstr, "xml");
    sink.Attribute("version", std::string_view("1.0"));
    sink.Attribute("encoding", charset);
    sink.Close();
}

// The same with the charset of the locale's code page.
template <class Sink>
void WriteLocaleXmlDeclaration(Sink& sink)
{
    WriteXmlDeclaration(sink, Zn_WString(zn_findcharset(ZnGetLocaleCP()), -1, 0).GetView());
}

template <class Sink>
void WriteVariables(const Zn_VariableList& list, Sink& sink)
{
    sink.Open(list.Count() > 0 ? Zn_DOMElement::Element : Zn_DOMElement::EmptyElement, "params");
    for (const Zn_Variable& variable : list) {
        const bool hasValue = variable.value.type != Zn_Variant::Empty;
        sink.Open(hasValue ? Zn_DOMElement::Element : Zn_DOMElement::EmptyElement, "param");
        sink.Attribute("id", variable.id.GetView());
        sink.Attribute("type", std::u16string_view(variable.value.GetTypeString()));
        if (hasValue)
            sink.Text(Zn_DOMElement::Text, variable.value.ToString().GetView());
        sink.Close();
    }
    sink.Close();
}

} // namespace zn
