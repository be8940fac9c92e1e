#include "Zn_DatasetList.h"

#include "dataset/dataset_access.h"

Zn_DatasetHandler& Zn_DatasetHandler::Instance()
{
    return Zn_Global<Zn_DatasetHandler>();
}

const Zn_Dataset& Zn_DatasetHandler::EmptyItem()
{
    return Zn_Global<Zn_Dataset>();
}

int Zn_DatasetHandler::_CompareItem(void* a, void* b)
{
    return zn_icompare(static_cast<Zn_Dataset*>(a)->GetId(), static_cast<Zn_Dataset*>(b)->GetId());
}

namespace {

// The list's place of a new table; -1, and the table goes, when there is no memory.
int AddOrDrop(Zn_DatasetList& list, Zn_Dataset* fresh)
{
    const int place = list.AddLink(fresh);
    if (place < 0)
        list.GetHandler()->Drop(fresh);
    return place;
}

} // namespace

int Zn_DatasetList::AddDataset(const char16_t* id, const Zn_Dataset* dataset)
{
    if (!id || !dataset)
        return -1;
    const int place = FindId(id);
    if (place >= 0) {
        GetSafeItem(place)->AssignNF(dataset);
        return place;
    }
    Zn_Dataset* copy = NewItem();
    if (!copy)
        return -1;
    copy->AssignNF(dataset);
    // Callers rely on its place being that of its own id, unless the list has a table of that id already.
    if (FindId(copy->GetId()) >= 0)
        copy->SetId(id);
    const int added = AddOrDrop(*this, copy);
    if (added >= 0 && !zn_iequal(copy->GetId(), id))
        copy->SetId(id);
    return added;
}

long Zn_DatasetList::DeleteDataset(const char16_t* id)
{
    const int place = FindId(id);
    return place < 0 ? -1 : Delete(place);
}

Zn_Dataset* Zn_DatasetList::GetSafeItem(int idx, int create)
{
    return static_cast<Zn_Dataset*>(Zn_ObjList::GetSafeItem(idx, create));
}

Zn_Dataset* Zn_DatasetList::GetSafeItem(const char16_t* id, int create)
{
    const int place = FindId(id);
    if (place >= 0 || !create || !id)
        return GetSafeItem(place);
    const Zn_Dataset empty(id, 0);
    return GetSafeItem(AddDataset(id, &empty));
}

int Zn_DatasetList::Append(const Zn_DatasetList* other)
{
    return other ? AppendList(*other) : Count();
}

Zn_Dataset* Zn_DatasetAccess::AddEmpty(Zn_DatasetList& list, const Zn_WString& id)
{
    Zn_Dataset* fresh = list.NewItem();
    if (!fresh)
        return nullptr;
    fresh->SetId(id);
    return list.GetSafeItem(AddOrDrop(list, fresh));
}
