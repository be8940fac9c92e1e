#include "dataset/original_index.h"

#include <algorithm>
#include <bit>
#include <utility>

void Zn_OriginalIndex::BitSums::Append(int bit)
{
    // A node sums the places (i - lowbit(i), i]; all but its own are the nodes below it.
    const std::size_t i = tree_.size() + 1;
    std::int32_t sum = bit;
    for (std::size_t step = 1; step < (i & (~i + 1)); step <<= 1)
        sum += tree_[i - step - 1];
    tree_.push_back(sum);
}

void Zn_OriginalIndex::BitSums::Add(int key, int delta) noexcept
{
    for (std::size_t i = static_cast<std::size_t>(key) + 1; i <= tree_.size(); i += i & (~i + 1))
        tree_[i - 1] += delta;
}

int Zn_OriginalIndex::BitSums::SumBefore(int key) const noexcept
{
    int sum = 0;
    for (std::size_t i = std::min(static_cast<std::size_t>(key), tree_.size()); i > 0; i &= i - 1)
        sum += tree_[i - 1];
    return sum;
}

int Zn_OriginalIndex::BitSums::Find(int n) const noexcept
{
    std::size_t at = 0;
    for (std::size_t step = std::bit_floor(tree_.size()); step > 0; step >>= 1) {
        if (at + step <= tree_.size() && tree_[at + step - 1] <= n) {
            at += step;
            n -= tree_[at - 1];
        }
    }
    return static_cast<int>(at);
}

Zn_OriginalIndex* Zn_OriginalIndex::Create()
{
    return new Zn_OriginalIndex();
}

void Zn_OriginalIndex::Release() noexcept
{
    if (refs_.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

void Zn_OriginalIndex::BitSums::MakeRoom()
{
    if (tree_.size() == tree_.capacity())
        tree_.reserve(2 * tree_.size() + 16);
}

void Zn_OriginalIndex::Append(bool deleted)
{
    alive_.MakeRoom(); // both or neither grow
    deleted_.MakeRoom();
    alive_.Append(1);
    deleted_.Append(deleted ? 1 : 0);
    ++count_;
    deletedCount_ += deleted ? 1 : 0;
}

void Zn_OriginalIndex::Remove(int position)
{
    if (position < 0 || position >= count_)
        return;
    const int key = KeyAt(position);
    if (IsDeleted(key)) {
        deleted_.Add(key, -1);
        --deletedCount_;
    }
    alive_.Add(key, -1);
    --count_;
}

void Zn_OriginalIndex::MarkDeleted(int position)
{
    if (position < 0 || position >= count_)
        return;
    const int key = KeyAt(position);
    if (!IsDeleted(key)) {
        deleted_.Add(key, 1);
        ++deletedCount_;
    }
}

void Zn_OriginalIndex::Clear() noexcept
{
    alive_.Clear();
    deleted_.Clear();
    count_ = 0;
    deletedCount_ = 0;
    hasPlainLinks_ = false;
}

int Zn_OriginalIndex::FindDeleted(int n) const noexcept
{
    return n >= 0 && n < deletedCount_ ? PositionOf(deleted_.Find(n)) : -1;
}

void Zn_OriginalIndex::Link(Zn_Record& row, int position)
{
    row.SetOrgIdx(KeyAt(position));
    row.links_ = this;
    AddRef();
}

void Zn_OriginalIndex::MakePlain(Zn_Record& row) noexcept
{
    if (row.links_)
        row.links_->SetHasPlainLinks();
    row.SetOrgIdx(row.GetOrgIdx());
}

bool Zn_OriginalIndex::IsWorn(int rowCount) const noexcept
{
    constexpr int kSmall = 4096;
    return alive_.Size() / 2 > kSmall + count_ + rowCount;
}

void Zn_OriginalIndex::Renumber()
{
    BitSums alive;
    BitSums deleted;
    for (int position = 0; position < count_; ++position) {
        alive.Append(1);
        deleted.Append(IsDeleted(KeyAt(position)) ? 1 : 0);
    }
    alive_ = std::move(alive);
    deleted_ = std::move(deleted);
}
