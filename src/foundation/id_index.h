// Finds ids without regard to case while a list of them is being read, so that reading n of them does
// not cost n searches through the list.
#pragma once

#include "foundation/casefold.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace zn {

class IdIndex {
public:
    // Numbers the ids 0, 1, 2, ... in the order they come.
    void Add(std::u16string_view id) { first_.try_emplace(Fold(id), count_++); }
    // Number of the first id that matches, -1 for none.
    int Find(std::u16string_view id) const
    {
        const auto found = first_.find(Fold(id));
        return found == first_.end() ? -1 : found->second;
    }

private:
    static std::u16string Fold(std::u16string_view id)
    {
        std::u16string folded(id);
        for (char16_t& unit : folded)
            unit = FoldCase(unit);
        return folded;
    }

    std::unordered_map<std::u16string, int> first_;
    int count_ = 0;
};

} // namespace zn
