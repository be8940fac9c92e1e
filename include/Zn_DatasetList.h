// Several tables addressed by their ids, as one message carries them. Ids match without regard to case.
// The default list keeps its tables in the order of their ids (ordering option 1).
#pragma once

#include "Zn_Dataset.h"

class ZN_API Zn_DatasetHandler final : public Zn_TypedHandler<Zn_Dataset> {
public:
    Zn_DatasetHandler() noexcept : Zn_TypedHandler("Zn_Dataset", 32) {}
    int _CompareItem(void* a, void* b) override;
    static Zn_DatasetHandler& Instance();
    static const Zn_Dataset& EmptyItem();
};

struct Zn_DatasetIdOf {
    std::u16string_view operator()(const Zn_Dataset& item) const noexcept { return item.GetId().GetView(); }
};

class ZN_API Zn_DatasetList : public Zn_IdList<Zn_Dataset, Zn_DatasetHandler, Zn_DatasetIdOf, 1> {
public:
    using Base = Zn_IdList<Zn_Dataset, Zn_DatasetHandler, Zn_DatasetIdOf, 1>;
    using Base::Base;

    // Adds a copy of a table under an id, or gives the table of that id its contents; returns its position, -1 for
    // null.
    int AddDataset(const char16_t* id, const Zn_Dataset* dataset);
    int AddDataset(const Zn_WString& id, const Zn_Dataset* dataset) { return AddDataset(id.GetText(), dataset); }
    // -1 when no table has that id.
    long DeleteDataset(const char16_t* id);
    // Writable table. With create, an index past the end grows the list, and an unknown id adds an empty table of that
    // id.
    Zn_Dataset* GetSafeItem(int idx, int create = 0);
    Zn_Dataset* GetSafeItem(const char16_t* id, int create = 0);
    // Adds copies of the other list's tables; returns the count.
    int Append(const Zn_DatasetList* other);
};
