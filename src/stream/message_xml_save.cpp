// Writes the XML message: variables and tables under one "root" (docs/formats/xml-message.md). It goes out as text
// straight away; what stands where is decided by the same code that builds the nodes of a document.

#include "Zn_Stream.h"

#include "dataset/dataset_access.h"
#include "foundation/vector_list.h"
#include "markup/markup_writer.h"
#include "stream/variable_xml_writer.h"

namespace {

template <class Output>
void WriteMessage(Output& output, const Zn_VariableList& variables, const Zn_DatasetList& datasets,
                  std::u16string_view charset, unsigned codePage, int option)
{
    zn::MarkupWriter writer(output, zn::MarkupLayout{.blanks = zn::EndBlanks::Plain});
    zn::WriteXmlDeclaration(writer, charset);
    writer.Open(Zn_DOMElement::Element, "root");
    // Callers rely on the code page standing where a second declaration is asked for by a 1.
    if (codePage == 1)
        zn::WriteLocaleXmlDeclaration(writer);
    zn::WriteVariables(variables, writer);
    for (const Zn_Dataset& dataset : datasets)
        Zn_DatasetAccess::WriteXml(dataset, writer, option);
    writer.Close();
}

} // namespace

int ZnXmlStreamSave(const Zn_VariableList& variables, Zn_DatasetList& datasets, Zn_Buffer& out, unsigned codePage,
                    const char16_t* charsetName, int option)
{
    out.Release();
    const Zn_WString charset = charsetName ? Zn_WString(charsetName) : Zn_WString(zn_findcharset(codePage), -1, 0);
    bool isWritten = false;
    const bool hasRoom = zn::Guarded([&] {
        isWritten = zn::WriteMarkup(out, codePage, zn::Missing::XmlReference, [&](auto& output) {
            WriteMessage(output, variables, datasets, charset.GetView(), codePage, option);
        });
    });
    return hasRoom && isWritten ? out.GetLength() : -1;
}
