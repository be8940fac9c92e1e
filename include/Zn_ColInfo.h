// Columns of a table: Zn_ColInfo describes one, Zn_ColList keeps them in name order.
//
// A column's position in the list is also the index of its value in every record; orgIdx remembers
// the order in which columns were defined, which is the order in which messages carry them. Ids match
// without regard to case.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_TypedList.h"
#include "Zn_WString.h"

class ZN_API Zn_ColInfo {
public:
    Zn_ColInfo() noexcept = default;
    explicit Zn_ColInfo(const Zn_WString& columnId) : id(columnId) {}

    // Column type codes.
    enum : short { String = 1, Int = 2, Decimal = 4, Currency = 5, Date = 8, Blob = 9, Url = 10, Char = 12 };
    // Summary kinds of group rows.
    enum : short { None = 0x01, Count = 0x11, Sum = 0x21, Max = 0x31, Min = 0x41, Avg = 0x51, Text = 0x61 };

    void Clear();
    void Set(const Zn_ColInfo& other) { *this = other; }
    void SetId(const Zn_WString& newId) { id = newId; }
    void SetId(const char16_t* newId, int length = -1) { id.Set(newId, length); }
    // 8-bit text in the locale's code page.
    void SetId(const char* newId, int length = -1) { id.Set(newId, length, 0); }
    void SetOrgIdx(short newIdx) noexcept { orgIdx = newIdx; }
    int GetOrgIdx() const noexcept { return orgIdx; }

    // By id without regard to case, then by type, then by size: the difference, 0 when equal.
    int Compare(const Zn_ColInfo& other) const noexcept;
    // The id alone.
    int Compare(const char16_t* otherId) const noexcept { return zn_stricmpW(id, otherId); }
    // Callers rely on these giving what Compare gives: 0 when equal.
    int operator==(const Zn_ColInfo& other) const noexcept { return Compare(other); }
    int operator==(const char16_t* otherId) const noexcept { return Compare(otherId); }

    static void InitWithMemory(Zn_ColInfo* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_ColInfo* item) { Zn_FreeInPlace(item); }

    Zn_WString id;
    short type = String;
    short size = 0;
    short summ = None;
    short orgIdx = -1; // position in definition order, -1 for none
    Zn_WString text;   // text of a summary
};

class ZN_API Zn_ColInfoHandler final : public Zn_TypedHandler<Zn_ColInfo> {
public:
    Zn_ColInfoHandler() noexcept : Zn_TypedHandler("Zn_ColInfo", 64) {}
    int _CompareItem(void* a, void* b) override;
    static Zn_ColInfoHandler& Instance();
    static const Zn_ColInfo& EmptyItem();
};

class ZN_API Zn_ColList : public Zn_TypedList<Zn_ColInfo, Zn_ColInfoHandler, 1> {
public:
    using Base = Zn_TypedList<Zn_ColInfo, Zn_ColInfoHandler, 1>;
    using Base::Base;

    // What can put a column out of name order makes look-ups scan from then on.
    Zn_ColInfo* GetSafeItem(int index) noexcept { return Touched().Base::GetSafeItem(index); }
    int Insert(int index, const Zn_ColInfo& column) { return Touched().Base::Insert(index, column); }
    int InsertLink(int index, const Zn_ColInfo* column) { return Touched().Base::InsertLink(index, column); }
    int Set(int index, const Zn_ColInfo& column, int grow = 0) { return Touched().Base::Set(index, column, grow); }
    int SetLink(int index, const Zn_ColInfo* column, int grow = 0)
    {
        return Touched().Base::SetLink(index, column, grow);
    }
    int Exchange(int a, int b) noexcept { return Touched().Base::Exchange(a, b); }
    void ReleaseList() noexcept
    {
        Base::ReleaseList();
        touched_ = false;
    }

    // First column, in list order, with that place in definition order; null when there is none.
    const Zn_ColInfo* GetItemByOrgIdx(int orgIdx) const noexcept;
    // Position of the column with that id, -1 for none or null: a search in name order, else a scan.
    int FindId(Zn_NameArg id) const noexcept;

    // Adds a copy (the Link forms: the object itself) at its place in name order and returns its position; a
    // column whose id is there already is not added, and its position is returned. -1 for null.
    int Add(const Zn_ColInfo* column);
    int Add(const Zn_ColInfo& column) { return Add(&column); }
    int AddColumn(const Zn_ColInfo* column) { return Add(column); }
    // Sets added to 1 when the list grew, else 0.
    int Add(const Zn_ColInfo* column, int& added);
    int AddLink(const Zn_ColInfo* column);
    int AddLink(const Zn_ColInfo* column, int& added);
    // Replaces the contents by copies; returns the new count. Null changes nothing and returns 0.
    int Assign(const Zn_ColList* other);
    // The same, but every column keeps the position that it has there, as the values of a table's rows do.
    void TakePlaces(const Zn_ColList& other);
    // Adds copies; returns the count.
    int Append(const Zn_ColList* other);

    // Appends the binary form (names, types and sizes in definition order) and returns the end offset, -1 without
    // memory.
    int Save(Zn_Buffer& out, unsigned codePage) const;
    // Empties the list and reads that form at offset; returns the offset behind it, -1 for a wrong marker. Data cut
    // short gives the buffer's length and leaves the columns read so far.
    int Load(const Zn_Buffer& in, int offset, unsigned codePage);

    // Type code of a name ("INTEGER" is an INT, "DATETIME" a DATE; case ignored), 1 (STRING) for an unknown one.
    static int GetTypeNo(const char16_t* name) noexcept;
    // Name of a type code, "STRING" for an unknown one; never null.
    static const char16_t* GetTypeStr(int code) noexcept;
    // The Zn_Variant type that a column of a type holds; callers rely on date columns holding text.
    static std::uint16_t GetValueType(int code) noexcept;

private:
    Zn_ColList& Touched() noexcept
    {
        touched_ = true;
        return *this;
    }

    int FindInOrder(std::u16string_view id) const noexcept;

    bool touched_ = false;
};
