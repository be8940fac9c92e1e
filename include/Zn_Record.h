// A row of a table, and the list of rows.
//
// A record is a list of values, one place per ordinary column; a place may be absent and then reads
// as the empty value. Beside them it carries the row's type, the marks of filter and selection, and
// the link to the row's original values in the table's buffer of originals.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_VariantList.h"

namespace zn {
class ByteWriter;
} // namespace zn
class Zn_OriginalIndex;

class ZN_API Zn_Record : public Zn_VariantList {
public:
    // Row types. A group row is only reported by a table, never stored.
    enum : int { Normal = 1, Inserted = 2, Updated = 4, Deleted = 8, Group = 16 };

    Zn_Record() noexcept = default;
    // Room for n values at once.
    explicit Zn_Record(int n) { AllocItems(n); }
    Zn_Record(const Zn_Record& other);
    Zn_Record& operator=(const Zn_Record& other);
    ~Zn_Record();

    // No values, row type 1, no marks, no link.
    void Clear();
    // Values, flags and link; a null argument clears, the record itself changes nothing. Returns the value count.
    int Assign(const Zn_Record* other);
    void Set(const Zn_Record& other) { Assign(&other); }
    // Copies a value into a place; places up to it that are missing become absent ones. Returns the index, -1 when it
    // can't.
    int SetColumn(int idx, const Zn_Variant* value);
    // The place's value, made (empty) when absent; so are all places up to it that are missing.
    Zn_Variant* GetSafeItem(int idx) { return Zn_VariantList::GetSafeItem(idx, 1); }
    // The same, but the places before it become absent ones.
    Zn_Variant* MakeSlot(int idx);

    int GetType() const noexcept { return static_cast<int>(flags_ & 0xFF); }
    void SetType(int type) noexcept { flags_ = (flags_ & 0xFF00) | static_cast<std::uint32_t>(type); }
    // The mark's bit itself: 0x100 for hidden by a filter, else 0.
    int GetFilter() const noexcept { return static_cast<int>(flags_ & 0x100); }
    void SetFilter(int on) noexcept { flags_ = (flags_ & 0xF0FF) | (on ? 0x100u : 0u); }
    // The mark's bit itself: 0x1000 for selected, else 0.
    int GetSelect() const noexcept { return static_cast<int>(flags_ & 0x1000); }
    // Callers rely on this keeping the row type alone: selecting a row also takes its filter mark away,
    // while SetFilter keeps the selection.
    void SetSelect(int on) noexcept { flags_ = (flags_ & 0xFF) | (on ? 0x1000u : 0u); }
    std::uint32_t GetFlags() const noexcept { return flags_; }
    void SetFlags(std::uint32_t flags) noexcept { flags_ = flags; }

    // Index of the row's original in its table's buffer of originals, -1 for none.
    int GetOrgIdx() const noexcept { return links_ ? LinkedOrgIdx() : orgIdx_; }
    void SetOrgIdx(int idx) noexcept;

    // Appends the binary form and returns the end offset; type replaces the flags unless it is -1.
    int Save(Zn_Buffer& out, int type, unsigned codePage) const;
    // Writes it where an encoder of the library writes its own.
    void SaveTo(zn::ByteWriter& out, int type) const;
    // Reads it at offset; returns the offset behind it. Data cut short gives the buffer's length; a value that
    // can't be read clears the record and gives its negative result.
    int Load(const Zn_Buffer& in, int offset, unsigned codePage);
    // The same from a buffer that is none of the record's values.
    int LoadFrom(const Zn_Buffer& in, int offset, unsigned codePage);

    static void InitWithMemory(Zn_Record* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_Record* item) { Zn_FreeInPlace(item); }

private:
    friend class Zn_OriginalIndex;
    friend class Zn_RecList;
    int LinkedOrgIdx() const noexcept;
    void DropLink() noexcept;

    std::uint32_t flags_ = Normal;
    std::int32_t orgIdx_ = -1;          // the link itself, or the key in links_
    Zn_OriginalIndex* links_ = nullptr; // counted; where a link's present index is looked up
};

class ZN_API Zn_RecordHandler final : public Zn_TypedHandler<Zn_Record> {
public:
    Zn_RecordHandler() noexcept : Zn_TypedHandler("Zn_Record", 128) {}
    // 0 for the same record object only: rows are never ordered by content.
    int _CompareItem(void* a, void* b) override { return a == b ? 0 : -1; }
    static Zn_RecordHandler& Instance();
    static const Zn_Record& EmptyItem();
};

class ZN_API Zn_RecList : public Zn_TypedList<Zn_Record, Zn_RecordHandler> {
public:
    using Base = Zn_TypedList<Zn_Record, Zn_RecordHandler>;
    using Base::Base;

    // Adds a record that NewItem made, without looking whether it is one; its index, -1 when there is no memory.
    int AddNew(Zn_Record* record);
    // Makes an absent place at idx in every record that has more than idx values.
    void InsertColumn(int idx);
    // Deletes every record of a row type in one walk; returns how many.
    int DeleteType(int type);
    // Puts the records from start on into a new order: place start + k gets the one that stood at start + order[k].
    int Arrange(int start, std::span<const std::int32_t> order) noexcept { return ArrangeItems(start, order); }
    // Replaces by copies; returns the new count. Null changes nothing and returns 0.
    int Assign(const Zn_RecList* other);
    // Adds copies; returns the count.
    int Append(const Zn_RecList* other);
};
