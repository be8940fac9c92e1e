#include "Zn_ListObjHandler.h"

Zn_ListObjHandler::~Zn_ListObjHandler() = default;

void* Zn_ListObjHandler::NewItem()
{
    void* memory = pool_.Alloc();
    return memory ? _InitItem(memory) : nullptr;
}

void* Zn_ListObjHandler::NewCopy(const void* source)
{
    void* item = NewItem();
    if (item)
        _AssignItem(item, const_cast<void*>(source));
    return item;
}

void Zn_ListObjHandler::Drop(void* item)
{
    if (Zn_ObjBufData::FromItem(item)->Release() > 0)
        return;
    _FreeItem(item);
    pool_.Free(item);
}
