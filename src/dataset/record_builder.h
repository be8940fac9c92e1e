// Collects the values of a record that is being read and hands them over at once, which costs far less than
// adding them one by one. Values are made several at a time, too; those that were not used are given back.
#pragma once

#include "Zn_Record.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace zn {

class RecordBuilder {
public:
    // About so many values will come.
    explicit RecordBuilder(int likely = 0) : handler_(Zn_VariantHandler::Instance()) { Begin(likely); }
    ~RecordBuilder()
    {
        Begin(0);
        handler_.DropItems(stock_ + next_, stocked_ - next_);
    }
    RecordBuilder(const RecordBuilder&) = delete;
    RecordBuilder& operator=(const RecordBuilder&) = delete;

    // Drops what was collected.
    void Begin(int likely)
    {
        handler_.DropItems(values_.data(), static_cast<int>(values_.size()));
        values_.clear();
        likely_ = likely;
        values_.reserve(static_cast<std::size_t>(std::min(likely, kMostLikely)));
    }
    // The value of a place, made when there is none yet; null when memory runs out.
    Zn_Variant* At(int place)
    {
        SkipTo(place + 1);
        void*& value = values_[static_cast<std::size_t>(place)];
        if (!value)
            value = Take();
        return static_cast<Zn_Variant*>(value);
    }
    int Count() const noexcept { return static_cast<int>(values_.size()); }
    // Makes places absent up to a count.
    void SkipTo(int count)
    {
        if (values_.size() < static_cast<std::size_t>(count))
            values_.resize(static_cast<std::size_t>(count));
    }
    // Gives the values to a record behind those that it has; false, and they are dropped, when memory runs out.
    bool MoveTo(Zn_Record& record)
    {
        const int count = static_cast<int>(values_.size());
        if (count > 0 && !record.AppendValues(values_.data(), count)) {
            Begin(0);
            return false;
        }
        values_.clear();
        return true;
    }

private:
    void* Take()
    {
        if (next_ == stocked_) {
            next_ = 0;
            // More with every time: one builder may read many records.
            const int wanted = std::max(likely_ - static_cast<int>(values_.size()) + 1, 2 * stocked_);
            stocked_ = handler_.NewItems(stock_, std::clamp(wanted, 1, static_cast<int>(std::size(stock_))));
            if (stocked_ == 0)
                return nullptr;
        }
        return stock_[next_++];
    }

    static constexpr int kMostLikely = 4096;

    Zn_VariantHandler& handler_;
    std::vector<void*> values_;
    int likely_ = 0;
    void* stock_[32];
    int next_ = 0;
    int stocked_ = 0;
};

} // namespace zn
