#include "Zn_Record.h"

#include "dataset/original_index.h"
#include "foundation/byte_writer.h"

#include <algorithm>

Zn_RecordHandler& Zn_RecordHandler::Instance()
{
    return Zn_Global<Zn_RecordHandler>();
}

const Zn_Record& Zn_RecordHandler::EmptyItem()
{
    return Zn_Global<Zn_Record>();
}

Zn_Record::Zn_Record(const Zn_Record& other) : Zn_VariantList(other), flags_(other.flags_), orgIdx_(other.GetOrgIdx())
{
}

Zn_Record& Zn_Record::operator=(const Zn_Record& other)
{
    Assign(&other);
    return *this;
}

Zn_Record::~Zn_Record()
{
    DropLink();
}

void Zn_Record::DropLink() noexcept
{
    if (links_)
        links_->Release();
    links_ = nullptr;
}

int Zn_Record::LinkedOrgIdx() const noexcept
{
    return links_->PositionOf(orgIdx_);
}

void Zn_Record::SetOrgIdx(int idx) noexcept
{
    DropLink();
    orgIdx_ = idx;
}

void Zn_Record::Clear()
{
    ReleaseList();
    flags_ = Normal;
    SetOrgIdx(-1);
}

int Zn_Record::Assign(const Zn_Record* other)
{
    if (other != this) {
        Clear();
        if (other) {
            flags_ = other->flags_;
            SetOrgIdx(other->GetOrgIdx());
            AssignList(*other);
        }
    }
    return Count();
}

Zn_Variant* Zn_Record::MakeSlot(int idx)
{
    const int count = Count();
    if (idx < 0 || (idx >= count && InsertAbsent(count, idx + 1 - count) < 0))
        return nullptr;
    return Zn_VariantList::GetSafeItem(idx, 1);
}

int Zn_Record::SetColumn(int idx, const Zn_Variant* value)
{
    Zn_Variant* slot = value ? MakeSlot(idx) : nullptr;
    if (!slot)
        return -1;
    slot->Set(*value);
    return idx;
}

void Zn_Record::SaveTo(zn::ByteWriter& out, int type) const
{
    const int count = Count();
    out.Put16(static_cast<std::uint16_t>(count));
    out.Put16(static_cast<std::uint16_t>(type != -1 ? static_cast<std::uint32_t>(type) : flags_));
    out.Put16(static_cast<std::uint16_t>(GetOrgIdx()));
    for (int i = 0; i < count; ++i)
        GetItemNN(i)->SaveTo(out);
}

int Zn_Record::Save(Zn_Buffer& out, int type, unsigned codePage) const
{
    zn::ByteWriter writer(out, codePage);
    SaveTo(writer, type);
    return writer.Finish();
}

namespace {

constexpr int kHeadSize = 6;

}

int Zn_Record::Load(const Zn_Buffer& in, int offset, unsigned codePage)
{
    // It may be one of the values, which go.
    const Zn_Buffer kept(in); // NOLINT(performance-unnecessary-copy-initialization)
    return LoadFrom(kept, offset, codePage);
}

int Zn_Record::LoadFrom(const Zn_Buffer& in, int offset, unsigned codePage)
{
    const int length = in.GetLength();
    const unsigned char* data = in.GetData();
    if (offset < 0 || offset > length || length - offset < kHeadSize)
        return length;
    const int count = zn::GetBe16(data + offset);
    flags_ = zn::GetBe16(data + offset + 2);
    SetOrgIdx(static_cast<std::int16_t>(zn::GetBe16(data + offset + 4)));
    offset += kHeadSize;
    ReleaseList();
    // A count that the data can't hold must not take memory for itself: every value has two bytes at least.
    AllocItems(std::min(count, (length - offset) / 2));
    int end = offset;
    for (int k = 0; k < count && end >= 0; ++k) {
        if (length - end < 2) {
            end = length;
            break;
        }
        const std::uint16_t type = zn::GetBe16(data + end);
        end += 2;
        if (type == 0) {
            if (InsertAbsent(k, 1) < 0)
                end = -1;
            continue;
        }
        if (end >= length)
            break;
        void* place = OpenPlace();
        Zn_Variant* value = place ? new (place) Zn_Variant : Zn_VariantList::GetSafeItem(k, 1);
        end = value ? value->Load(static_cast<short>(type), in, end, codePage) : -1;
    }
    if (end < 0)
        Clear();
    return end;
}

int Zn_RecList::AddNew(Zn_Record* record)
{
    void* item = record;
    if (AppendNew(&item, 1) > 0)
        return Count() - 1;
    GetHandler()->Drop(record);
    return -1;
}

void Zn_RecList::InsertColumn(int idx)
{
    for (int i = 0, n = Count(); i < n; ++i) {
        Zn_Record* record = GetSafeItem(i);
        if (record && record->Count() > idx)
            record->InsertAbsent(idx, 1);
    }
}

int Zn_RecList::DeleteType(int type)
{
    return DeleteIf([type](void* item) { return item && static_cast<Zn_Record*>(item)->GetType() == type; });
}

int Zn_RecList::Assign(const Zn_RecList* other)
{
    return other ? AssignList(*other) : 0;
}

int Zn_RecList::Append(const Zn_RecList* other)
{
    return other ? AppendList(*other) : Count();
}
