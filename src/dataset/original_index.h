// Where each row's original stands in a table's buffer of originals, while originals come and go.
//
// By the rules of change tracking, taking an original out of the buffer lowers the links of all rows
// behind it by one. Rows therefore hold a key that never changes, and this index counts how many
// originals of a lower key are still there. Every operation costs the logarithm of the keys given out.
//
// Records share the index by count, since a record may live longer than its table. A record whose
// link is a plain number (read from a message, or shared between tables) is not known here;
// HasPlainLinks() tells a table that it must lower such links itself.
#pragma once

#include "Zn_Record.h"

#include <atomic>
#include <vector>

class Zn_OriginalIndex {
public:
    static Zn_OriginalIndex* Create();
    void AddRef() noexcept { refs_.fetch_add(1, std::memory_order_relaxed); }
    void Release() noexcept;

    // One more original at the end of the buffer.
    void Append(bool deleted);
    // The original at a position of the buffer is gone.
    void Remove(int position);
    // The original at a position stands for a deleted row from now on.
    void MarkDeleted(int position);
    // Forgets all originals; the caller has cut all links.
    void Clear() noexcept;

    int Count() const noexcept { return count_; }
    int DeletedCount() const noexcept { return deletedCount_; }
    // Position of the n-th (from 0) deleted row's original, -1 when there are fewer.
    int FindDeleted(int n) const noexcept;

    // Links a record to the original at a position.
    void Link(Zn_Record& row, int position);
    // Turns a record's link, to whichever table, into a plain number.
    static void MakePlain(Zn_Record& row) noexcept;
    bool IsLinkedHere(const Zn_Record& row) const noexcept { return row.links_ == this; }
    bool HasPlainLinks() const noexcept { return hasPlainLinks_; }
    void SetHasPlainLinks() noexcept { hasPlainLinks_ = true; }
    int PositionOf(int key) const noexcept { return alive_.SumBefore(key); }

    // Whether so many originals have come and gone that renumbering the keys pays off.
    bool IsWorn(int rowCount) const noexcept;
    // Renumbers the keys to positions; the caller then links every row again at the position it had.
    void Renumber();

private:
    // Sums over a growing array of 0 and 1 (a Fenwick tree).
    class BitSums {
    public:
        // Makes room for one more; all that can want memory.
        void MakeRoom();
        void Append(int bit);
        void Add(int key, int delta) noexcept;
        int SumBefore(int key) const noexcept;
        // Key of the n-th (from 0) 1.
        int Find(int n) const noexcept;
        int Size() const noexcept { return static_cast<int>(tree_.size()); }
        void Clear() noexcept { tree_.clear(); }

    private:
        std::vector<std::int32_t> tree_;
    };

    Zn_OriginalIndex() = default;
    int KeyAt(int position) const noexcept { return alive_.Find(position); }
    bool IsDeleted(int key) const noexcept { return deleted_.SumBefore(key + 1) > deleted_.SumBefore(key); }

    std::atomic<std::int32_t> refs_{1};
    int count_ = 0;
    int deletedCount_ = 0;
    bool hasPlainLinks_ = false;
    BitSums alive_;
    BitSums deleted_;
};
