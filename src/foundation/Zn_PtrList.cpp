#include "Zn_PtrList.h"

#include "foundation/vector_list.h"

int Zn_PtrList::Add(void* pointer)
{
    return zn::InsertInto(items_, Count(), pointer);
}

void* Zn_PtrList::GetItem(int index) const noexcept
{
    return zn::IsIndexOf(items_, index) ? items_[static_cast<std::size_t>(index)] : nullptr;
}

int Zn_PtrList::IndexOf(const void* pointer) const noexcept
{
    for (int i = 0; i < Count(); ++i)
        if (GetItem(i) == pointer)
            return i;
    return -1;
}

int Zn_PtrList::Delete(int start, int count)
{
    return zn::DeleteFrom(items_, start, count);
}
