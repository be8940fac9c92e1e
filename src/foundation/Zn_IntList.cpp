#include "Zn_IntList.h"

#include "foundation/vector_list.h"

#include <numeric>

int Zn_IntList::Add(int value)
{
    return zn::InsertInto(items_, Count(), value);
}

int Zn_IntList::Insert(int index, int value)
{
    return zn::InsertInto(items_, index, value);
}

int Zn_IntList::Delete(int start, int count)
{
    return zn::DeleteFrom(items_, start, count);
}

int Zn_IntList::GetItem(int index) const noexcept
{
    return zn::IsIndexOf(items_, index) ? items_[static_cast<std::size_t>(index)] : 0;
}

int Zn_IntList::SetItem(int index, int value) noexcept
{
    if (!zn::IsIndexOf(items_, index))
        return -1;
    items_[static_cast<std::size_t>(index)] = value;
    return index;
}

void Zn_IntList::Reset(int n)
{
    if (zn::Guarded([&] { items_.resize(static_cast<std::size_t>(n < 0 ? 0 : n)); }))
        std::iota(items_.begin(), items_.end(), 0);
}

int Zn_IntList::AssignList(const Zn_IntList& other) noexcept
{
    zn::Guarded([&] { items_ = other.items_; });
    return Count();
}
