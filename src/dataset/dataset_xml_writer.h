// The XML form of a table, written once for both ways out: nodes of a document, and text without one.
//
// The sink is a MarkupWriter or a DomBuilder.
#pragma once

#include "Zn_AString.h"
#include "Zn_DOMElement.h"
#include "Zn_Dataset.h"
#include "dataset/column_order.h"
#include "foundation/number_text.h"

#include <string_view>

namespace zn {

template <class Sink>
class DatasetXmlWriter {
public:
    DatasetXmlWriter(const Zn_Dataset& dataset, const Zn_RecList& rows, const Zn_RecList& originals, Sink& sink)
        : dataset_(dataset), rows_(rows), originals_(originals), sink_(sink)
    {
    }

    void Open()
    {
        sink_.Open(Zn_DOMElement::Element, "dataset");
        sink_.Attribute("id", dataset_.GetId().GetView());
    }

    // The children that describe the columns.
    void WriteColumns()
    {
        for (const Zn_Variable& column : dataset_.GetConstColumns()) {
            sink_.Open(Zn_DOMElement::Element, "column");
            sink_.Attribute("id", column.id.GetView());
            sink_.Attribute("type", std::u16string_view(column.value.GetTypeString()));
            sink_.Text(Zn_DOMElement::Text, column.value.ToString().GetView());
            sink_.Close();
        }
        for (const Zn_ColInfo* column : ColumnsInDefinitionOrder(dataset_.GetColumns())) {
            if (!column)
                continue;
            sink_.Open(Zn_DOMElement::EmptyElement, "colinfo");
            sink_.Attribute("id", column->id.GetView());
            char size[kNumberRoom];
            sink_.Attribute("size", std::string_view(size, static_cast<std::size_t>(WriteInteger(column->size, size))));
            sink_.Attribute("type", std::u16string_view(Zn_ColList::GetTypeStr(column->type)));
            if (column->type == Zn_ColInfo::Blob)
                sink_.Attribute("encrypt", std::string_view("base64"));
            sink_.Close();
        }
    }

    // The rows of a data mode; the count of rows whatever the mode.
    int WriteRows(int dataMode)
    {
        const bool withChanges = dataMode == 1 || dataMode == 2;
        for (const Zn_Record& row : rows_) {
            const int type = row.GetType();
            const bool changed = type == Zn_Record::Inserted || type == Zn_Record::Updated;
            if (dataMode == 2 && !changed)
                continue;
            OpenRecord(withChanges && changed ? (type == Zn_Record::Inserted ? "insert" : "update") : "");
            WriteValues<false>(row);
            const Zn_Record* original =
                withChanges && type == Zn_Record::Updated ? originals_.GetItem(row.GetOrgIdx()) : nullptr;
            if (original) {
                sink_.Open(Zn_DOMElement::Element, "org_record");
                WriteValues<true>(*original);
                sink_.Close();
            }
            sink_.Close();
        }
        return rows_.Count();
    }

    // The deleted rows; returns how many.
    int WriteDeleted()
    {
        int written = 0;
        for (const Zn_Record& row : originals_) {
            if (row.GetType() != Zn_Record::Deleted)
                continue;
            OpenRecord("delete");
            WriteValues<true>(row);
            sink_.Close();
            ++written;
        }
        return written;
    }

private:
    void OpenRecord(std::string_view type)
    {
        sink_.Open(Zn_DOMElement::Element, "record");
        if (!type.empty())
            sink_.Attribute("type", type);
    }

    template <bool IsOriginal>
    void WriteValues(const Zn_Record& record)
    {
        int k = 0;
        for (const Zn_ColInfo& column : dataset_.GetColumns())
            WriteValue<IsOriginal>(column, record.GetItem(k++));
    }

    // A value without text is an empty element. Among originals only an absent one and a string without text
    // are: callers tell from that whether there was a value.
    template <bool IsOriginal>
    void WriteValue(const Zn_ColInfo& column, const Zn_Variant* value)
    {
        if (value && column.type == Zn_ColInfo::Blob) {
            WriteText<IsOriginal>(column, value->GetConstBinary()->EncodeBase64().GetView());
        } else if (value && value->type == Zn_Variant::Integer) {
            char digits[kNumberRoom];
            WriteAscii(column, {digits, static_cast<std::size_t>(WriteInteger(value->ToInteger(), digits))});
        } else if (value && value->type == Zn_Variant::Decimal) {
            char digits[kNumberRoom];
            WriteAscii(column, {digits, static_cast<std::size_t>(WriteDouble(value->ToDouble(), digits))});
        } else if (value && value->type == Zn_Variant::String) {
            WriteText<false>(column, value->GetConstStr()->GetView());
        } else if (value) {
            WriteText<IsOriginal>(column, value->ToString().GetView());
        } else {
            WriteText<false>(column, std::u16string_view());
        }
    }

    void WriteAscii(const Zn_ColInfo& column, std::string_view text)
    {
        sink_.Open(Zn_DOMElement::Element, column.id);
        sink_.Text(Zn_DOMElement::Text, text);
        sink_.Close();
    }

    template <bool KeepEmpty>
    void WriteText(const Zn_ColInfo& column, std::string_view text)
    {
        if (text.empty())
            WriteText<KeepEmpty>(column, std::u16string_view());
        else
            WriteAscii(column, text);
    }

    template <bool KeepEmpty>
    void WriteText(const Zn_ColInfo& column, std::u16string_view text)
    {
        if (text.empty() && !KeepEmpty) {
            sink_.Open(Zn_DOMElement::EmptyElement, column.id);
        } else {
            sink_.Open(Zn_DOMElement::Element, column.id);
            sink_.Text(Zn_DOMElement::Text, text);
        }
        sink_.Close();
    }

    const Zn_Dataset& dataset_;
    const Zn_RecList& rows_;
    const Zn_RecList& originals_;
    Sink& sink_;
};

} // namespace zn
