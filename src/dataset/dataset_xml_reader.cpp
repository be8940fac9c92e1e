#include "dataset/dataset_xml_reader.h"

#include "Zn_AString.h"
#include "dataset/original_index.h"
#include "foundation/base64.h"
#include "foundation/number_text.h"

#include <algorithm>
#include <utility>

Zn_DatasetXmlReader::Zn_DatasetXmlReader(Zn_Dataset& dataset) : dataset_(dataset), constColumns_(dataset.constColumns_)
{
    ColumnsChanged();
}

void Zn_DatasetXmlReader::ColumnsChanged()
{
    columnsChanged_ = false;
    columns_.clear();
    for (const Zn_ColInfo& column : dataset_.columns_)
        columns_.push_back(&column);
}

void Zn_DatasetXmlReader::Begin(const Zn_NamedStrList& attributes)
{
    const Zn_WString& id = attributes.Str(u"id");
    if (!id.IsEmpty())
        dataset_.id_ = id;
}

namespace {

Zn_Variant ConstValue(int type, std::u16string_view text)
{
    switch (type) {
    case Zn_Variant::Integer:
        return Zn_Variant(zn::ReadInteger(text));
    case Zn_Variant::Decimal:
        return Zn_Variant(zn::ReadDouble(text));
    case Zn_Variant::Currency:
        return Zn_Variant(Zn_Currency(Zn_WString(text).GetText()));
    default:
        return Zn_Variant(Zn_WString(text));
    }
}

struct SummName {
    short code;
    std::u16string_view name;
};

constexpr SummName kSummNames[] = {
    {Zn_ColInfo::Count, u"count"}, {Zn_ColInfo::Sum, u"sum"}, {Zn_ColInfo::Max, u"max"},
    {Zn_ColInfo::Min, u"min"},     {Zn_ColInfo::Avg, u"avg"},
};

short SummOf(std::u16string_view text)
{
    for (const SummName& entry : kSummNames) {
        if (zn_iequal(text, entry.name))
            return entry.code;
    }
    return zn_iequal(text.substr(0, 4), u"text") ? Zn_ColInfo::Text : Zn_ColInfo::None;
}

} // namespace

void Zn_DatasetXmlReader::ConstColumn(const Zn_NamedStrList& attributes, std::u16string_view text)
{
    constColumns_.Put(attributes.Str(u"id"), ConstValue(Zn_Variant::GetTypeNo(attributes.Str(u"type")), text));
}

void Zn_DatasetXmlReader::Column(const Zn_NamedStrList& attributes)
{
    const Zn_WString& summ = attributes.Str(u"summ");
    Zn_ColInfo column(attributes.Str(u"id"));
    column.type = static_cast<short>(Zn_ColList::GetTypeNo(attributes.Str(u"type")));
    column.size = static_cast<short>(attributes.Str(u"size").ToInteger());
    column.summ = SummOf(summ);
    // The sixth character on: "text:Total" means Total. The same cut is made for the computed kinds.
    constexpr int kHasText = 0x60;
    constexpr int kTextStart = 5;
    if (column.summ & kHasText)
        column.text = summ.Mid(kTextStart);
    places_ -= dataset_.rows_.Count() + dataset_.orgBuffer_.Count();
    if (!IsOverdrawn() && !constColumns_.Has(column.id) && dataset_.columns_.FindId(column.id) < 0)
        columnsChanged_ |= dataset_.DefineColumn(column) >= 0;
}

void Zn_DatasetXmlReader::BeginRecord(int rowType)
{
    const int row = dataset_.AppendRow(1);
    rawRow_ = dataset_.rows_.Count() - 1;
    row_ = row < 0 ? nullptr : dataset_.rows_.GetSafeItem(rawRow_);
    original_ = nullptr;
    originalEnded_ = false;
    nextColumn_ = 0;
    nextOriginalColumn_ = 0;
    if (columnsChanged_)
        ColumnsChanged();
    lastFieldCount_ = std::exchange(fieldCount_, 0);
    if (!row_)
        return;
    row_->SetType(rowType);
    BeginValues(*row_);
}

// Takes room for all values at once where the record before had most of them. The others may be a text's way to ask for
// much with little.
void Zn_DatasetXmlReader::BeginValues(Zn_Record& record)
{
    const auto likely = static_cast<int>(columns_.size());
    if (lastFieldCount_ > likely / 2)
        record.AllocItems(likely);
}

int Zn_DatasetXmlReader::FindColumn(std::u16string_view name, int& guess) const
{
    const bool isNext =
        guess < static_cast<int>(columns_.size()) && columns_[static_cast<std::size_t>(guess)]->id == name;
    const int col = isNext ? guess : dataset_.columns_.FindId(name);
    guess = col + 1;
    return col;
}

void Zn_DatasetXmlReader::Field(std::u16string_view name, std::u16string_view text)
{
    const int before = nextColumn_;
    const int col = FindColumn(name, nextColumn_);
    if (col < 0)
        nextColumn_ = before;
    else if (row_)
        Store(*row_, col, text);
}

bool Zn_DatasetXmlReader::BeginOriginal()
{
    if (!row_ || original_ || row_->GetType() != Zn_Record::Updated)
        return false;
    Zn_RecList& originals = dataset_.orgBuffer_;
    Zn_Record* fresh = originals.NewItem();
    const int place = fresh ? originals.AddLink(fresh) : -1;
    if (place < 0 || !dataset_.NoteOriginal(false))
        return false;
    original_ = fresh;
    original_->SetType(row_->GetType());
    original_->SetOrgIdx(rawRow_);
    BeginValues(*original_);
    dataset_.Originals().Link(*row_, place);
    return true;
}

void Zn_DatasetXmlReader::OriginalField(std::u16string_view name, std::u16string_view text)
{
    if (!original_ || originalEnded_)
        return;
    const int col = FindColumn(name, nextOriginalColumn_);
    // Callers rely on the first name that is no column ending the originals.
    if (col < 0)
        originalEnded_ = true;
    else
        Store(*original_, col, text);
}

void Zn_DatasetXmlReader::Store(Zn_Record& record, int col, std::u16string_view text)
{
    ++fieldCount_;
    places_ += kPlacesPerField - std::max(0, col + 1 - record.Count());
    Zn_Variant* value = IsOverdrawn() ? nullptr : record.MakeSlot(col);
    if (!value)
        return;
    if (text.empty()) {
        value->Clear();
        return;
    }
    switch (columns_[static_cast<std::size_t>(col)]->type) {
    case Zn_ColInfo::Int:
        value->Set(zn::ReadInteger(text));
        break;
    case Zn_ColInfo::Decimal:
        value->Set(zn::ReadDouble(text));
        break;
    case Zn_ColInfo::Currency:
        value->SetCurrency(Zn_WString(text).GetText());
        break;
    case Zn_ColInfo::Blob:
        value->SetBinary(Zn_AString(text.data(), static_cast<int>(text.size()), 0).DecodeBase64());
        break;
    default:
        value->SetStr(text.data(), static_cast<int>(text.size()));
        break;
    }
}

void Zn_DatasetXmlReader::EndRecord()
{
    if (row_ && row_->GetType() == Zn_Record::Deleted && dataset_.MoveToOriginals(*row_, -1))
        dataset_.rows_.Delete(rawRow_);
    row_ = nullptr;
}
