// The binary form of a table (docs/formats/binary-message.md).

#include "Zn_Dataset.h"

#include "dataset/original_index.h"
#include "foundation/byte_writer.h"
#include "foundation/vector_list.h"

#include <algorithm>
#include <vector>

namespace {

constexpr std::uint16_t kMarker = 0xFF01;
constexpr std::uint16_t kVersion = 3000;
constexpr unsigned kColumnsCodePage = 0;

bool IsChanged(const Zn_Record& row)
{
    return row.GetType() == Zn_Record::Inserted || row.GetType() == Zn_Record::Updated;
}

} // namespace

int Zn_Dataset::Save(Zn_Buffer& out, int mode) const
{
    const int start = out.GetLength();
    if (SaveHead(out) < 0) {
        out.SetSize(start);
        return -1;
    }
    SaveData(out, mode);
    if (mode == 1 || mode == 2)
        SaveDeleteData(out);
    zn::AppendBe32(out, 0);
    return out.GetLength();
}

int Zn_Dataset::SaveHead(Zn_Buffer& out) const
{
    zn::ByteWriter writer(out, codePage_);
    writer.Put16(kMarker);
    writer.Put16(kVersion);
    writer.Put32(codePage_);
    writer.PutText(id_);
    writer.Finish();
    constColumns_.Save(out, codePage_);
    return columns_.Save(out, kColumnsCodePage);
}

int Zn_Dataset::SaveData(Zn_Buffer& out, int mode) const
{
    const bool withChanges = mode == 1 || mode == 2;
    const int count = mode == 2 ? GetUpdateRowCount() : rows_.Count();
    if (count == 0)
        return out.GetLength();
    zn::ByteWriter writer(out, codePage_);
    writer.Put32(static_cast<std::uint32_t>(count));
    for (const Zn_Record& row : rows_) {
        if (mode == 2 && !IsChanged(row))
            continue;
        row.SaveTo(writer, withChanges ? row.GetType() : static_cast<int>(Zn_Record::Normal));
        // A reader expects an original behind every updated row, so one that is missing is written as an empty record.
        if (withChanges && row.GetType() == Zn_Record::Updated)
            orgBuffer_.GetItemNN(row.GetOrgIdx())->SaveTo(writer, Zn_Record::Updated);
    }
    return writer.Finish();
}

int Zn_Dataset::SaveDeleteData(Zn_Buffer& out) const
{
    const int count = GetDelRowCount();
    if (count == 0)
        return out.GetLength();
    zn::ByteWriter writer(out, codePage_);
    writer.Put32(static_cast<std::uint32_t>(count));
    for (const Zn_Record& row : orgBuffer_) {
        if (row.GetType() == Zn_Record::Deleted)
            row.SaveTo(writer, Zn_Record::Deleted);
    }
    return writer.Finish();
}

int Zn_Dataset::SaveNext(Zn_Buffer& out, int start, int count) const
{
    const int rowCount = rows_.Count();
    if (start < 0 || start >= rowCount || count == 0)
        return out.GetLength();
    const int rest = rowCount - start;
    zn::ByteWriter writer(out, codePage_);
    writer.Put32(static_cast<std::uint32_t>(count > 0 ? std::min(count, rest) : rest));
    for (int i = start; i < rowCount; ++i)
        rows_.GetItemNN(i)->SaveTo(writer, Zn_Record::Normal);
    return writer.Finish();
}

int Zn_Dataset::Load(const Zn_Buffer& source, int offset)
{
    // It may be the value of a cell, which goes now.
    const Zn_Buffer in(source); // NOLINT(performance-unnecessary-copy-initialization)
    ClearAll();
    offset = LoadHead(in, offset);
    if (offset < 0)
        return offset;
    int count = 0;
    const bool hasRoom = zn::Guarded([&] {
        do
            offset = LoadData(in, offset, count);
        while (count > 0 && offset > 0 && offset < in.GetLength());
    });
    if (!hasRoom) {
        ClearAll();
        return -1;
    }
    Regroup();
    return offset;
}

int Zn_Dataset::LoadNext(const Zn_Buffer& in, int offset, int& count)
{
    if (!zn::Guarded([&] { offset = LoadData(in, offset, count); })) {
        ClearAll();
        offset = -1;
    }
    rowMap_.Clear();
    rowMapActive_ = 0;
    Regroup();
    return offset;
}

int Zn_Dataset::LoadHead(const Zn_Buffer& in, int offset)
{
    const int length = in.GetLength();
    const unsigned char* data = in.GetData();
    if (offset < 0 || length - offset < 2)
        return length;
    if (zn::GetBe16(data + offset) != kMarker)
        return -1;
    constexpr int kFixed = 10;
    if (length - offset < kFixed)
        return length;
    if (const std::uint32_t codePage = zn::GetBe32(data + offset + 4); codePage != 0)
        codePage_ = codePage;
    const int idLength = zn::GetBe16(data + offset + 8);
    offset += kFixed;
    if (length - offset < idLength)
        return length;
    if (idLength > 0)
        id_.Set(reinterpret_cast<const char*>(data + offset), idLength, codePage_);
    offset += idLength;
    if (offset >= length)
        return length;
    offset = constColumns_.Load(in, offset, codePage_);
    if (offset >= 0)
        offset = columns_.Load(in, offset, kColumnsCodePage);
    if (offset < 0)
        ClearAll();
    return offset;
}

int Zn_Dataset::LoadData(const Zn_Buffer& in, int offset, int& count)
{
    const int length = in.GetLength();
    count = 0;
    if (offset < 0 || length - offset < 4)
        return length;
    count = static_cast<std::int32_t>(zn::GetBe32(in.GetData() + offset));
    offset += 4;
    for (int i = 0; i < count && offset < length; ++i) {
        Zn_Record* row = rows_.NewItem();
        const int rawRow = row ? rows_.AddNew(row) : -1;
        if (rawRow < 0)
            return 0;
        offset = row->LoadFrom(in, offset, codePage_);
        if (offset >= 0 && row->GetType() == Zn_Record::Updated)
            offset = LoadOriginal(in, offset, *row, rawRow);
        if (offset < 0)
            ClearAll();
        if (offset <= 0)
            return offset;
        if (row->GetType() == Zn_Record::Deleted) {
            if (!MoveToOriginals(*row, row->GetOrgIdx()))
                return 0;
            rows_.Delete(rawRow);
        } else if (row->GetType() != Zn_Record::Updated && row->GetOrgIdx() >= 0) {
            Originals().SetHasPlainLinks();
        }
    }
    return offset;
}

// Reads the original behind an updated row and links both.
int Zn_Dataset::LoadOriginal(const Zn_Buffer& in, int offset, Zn_Record& row, int rawRow)
{
    Zn_Record* original = orgBuffer_.NewItem();
    const int place = original ? orgBuffer_.AddNew(original) : -1;
    if (place < 0)
        return 0;
    offset = original->LoadFrom(in, offset, codePage_);
    original->SetOrgIdx(rawRow);
    if (!NoteOriginal(original->GetType() == Zn_Record::Deleted))
        return 0;
    Originals().Link(row, place);
    return offset;
}
