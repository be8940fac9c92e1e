// The XML form of a table: its ways through a document (docs/formats/xml-message.md).

#include "Zn_Dataset.h"

#include "Zn_XmlDOM.h"
#include "dataset/dataset_xml_reader.h"
#include "dataset/dataset_xml_writer.h"
#include "foundation/vector_list.h"
#include "markup/dom_builder.h"
#include "markup/first_text.h"
#include "stream/variable_xml_writer.h"

int Zn_Dataset::SaveDataXml(Zn_Buffer& out, int format, int headMode, int dataMode, unsigned codePage) const
{
    Zn_DOMElement root;
    if (SaveDataXml(root, headMode, dataMode) < 0)
        return -1;
    root.children.SetCodePage(codePage);
    root.children.Save(out, 1, format, 0);
    return out.GetLength();
}

int Zn_Dataset::SaveDataXml(Zn_DOMElement& parent, int headMode, int dataMode) const
{
    int count = -1;
    const bool hasRoom = zn::Guarded([&] {
        Zn_DOMElement* element = parent.children.GetSafeItem(SaveXmlHead(parent, headMode));
        if (!element)
            return;
        count = SaveXmlData(*element, dataMode);
        if (dataMode == 1 || dataMode == 2)
            count += SaveXmlDeleteData(*element);
    });
    return hasRoom ? count : -1;
}

int Zn_Dataset::SaveXmlHead(Zn_DOMElement& parent, int headMode) const
{
    zn::DomBuilder builder(parent.children);
    if (headMode == 1)
        zn::WriteLocaleXmlDeclaration(builder);
    const int place = parent.children.Count();
    zn::DatasetXmlWriter writer(*this, rows_, orgBuffer_, builder);
    writer.Open();
    writer.WriteColumns();
    return parent.children.Count() > place ? place : -1;
}

int Zn_Dataset::SaveXmlData(Zn_DOMElement& datasetElement, int dataMode) const
{
    zn::DomBuilder builder(datasetElement.children);
    return zn::DatasetXmlWriter(*this, rows_, orgBuffer_, builder).WriteRows(dataMode);
}

int Zn_Dataset::SaveXmlDeleteData(Zn_DOMElement& datasetElement) const
{
    zn::DomBuilder builder(datasetElement.children);
    return zn::DatasetXmlWriter(*this, rows_, orgBuffer_, builder).WriteDeleted();
}

int Zn_Dataset::GetXmlTypeValue(const Zn_NamedStrList& attributes)
{
    switch (attributes.Str(u"type").GetAt(0)) {
    case u'I':
    case u'i':
        return Zn_Record::Inserted;
    case u'U':
    case u'u':
        return Zn_Record::Updated;
    case u'D':
    case u'd':
        return Zn_Record::Deleted;
    default:
        return Zn_Record::Normal;
    }
}

int Zn_Dataset::LoadDataXml(const Zn_Buffer& in, int clear)
{
    Zn_XmlDOM document;
    const int whole = document.Load(reinterpret_cast<const char*>(in.GetData()), in.GetLength(), 0);
    if (clear)
        ClearAll(); // not before: the bytes may be the value of a cell
    if (!whole)
        return -1;
    const Zn_DOMElement* element = document.GetItem(u"dataset", 0);
    return element ? LoadDataXml(*element, clear) : -1;
}

int Zn_Dataset::LoadDataXml(const char16_t* text, int length, int clear)
{
    Zn_XmlDOM document;
    const int whole = document.Load(text, length);
    if (clear)
        ClearAll();
    if (!whole)
        return -1;
    const Zn_DOMElement* root = document.GetItem(u"root", 0);
    const Zn_DOMElement* element = (root ? root->children : document).GetItem(u"dataset", 0);
    return element ? LoadDataXml(*element, clear) : -1;
}

namespace {

void ReadRecord(Zn_DatasetXmlReader& reader, const Zn_DOMElement& record)
{
    reader.BeginRecord(Zn_Dataset::GetXmlTypeValue(record.attributes));
    const Zn_DOMElement* original = record.children.GetItem(u"org_record", 0);
    if (original && reader.BeginOriginal()) {
        for (const Zn_DOMElement& field : original->children)
            reader.OriginalField(field.tag, zn::FirstText(field));
    }
    for (const Zn_DOMElement& field : record.children)
        reader.Field(field.tag, zn::FirstText(field));
    reader.EndRecord();
}

} // namespace

int Zn_Dataset::LoadDataXml(const Zn_DOMElement& element, int clear)
{
    if (clear)
        ClearAll();
    bool isWhole = false;
    const bool hasRoom = zn::Guarded([&] {
        Zn_DatasetXmlReader reader(*this);
        if (zn_iequal(element.tag, u"dataset"))
            reader.Begin(element.attributes);
        for (const Zn_DOMElement& child : element.children) {
            if (zn_iequal(child.tag, u"column"))
                reader.ConstColumn(child.attributes, zn::FirstText(child));
            else if (zn_iequal(child.tag, u"colinfo"))
                reader.Column(child.attributes);
            else if (zn_iequal(child.tag, u"record") && child.IsHaveChild())
                ReadRecord(reader, child);
        }
        isWhole = !reader.IsOverdrawn();
    });
    if (!hasRoom)
        ClearAll();
    Regroup();
    return isWhole ? GetRowCount() : -1;
}
