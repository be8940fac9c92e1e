#include "foundation/part_index.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace zn {

int PartIndex::MemoryFor(int parts) noexcept
{
    int numbers = 0;
    do {
        parts = (parts + kFan - 1) >> kShift;
        numbers += parts << kShift;
    } while (parts > 1);
    return numbers;
}

PartIndex::PartIndex(std::int32_t* memory, int room) noexcept
{
    do {
        starts_[floors_++] = memory;
        room = (room + kFan - 1) >> kShift;
        memory += room << kShift;
    } while (room > 1);
}

void PartIndex::Build(const std::int32_t* lengths, int parts) noexcept
{
    parts_ = parts;
    std::copy_n(lengths, parts, starts_[0]);
    int nodes = parts;
    for (int floor = 0; floor < floors_; ++floor) {
        const int groups = std::max((nodes + kFan - 1) >> kShift, 1);
        for (int group = 0; group < groups; ++group) {
            // Lengths become starts; where no node is, no search goes.
            std::int32_t* const first = starts_[floor] + (group << kShift);
            std::int32_t* const last = first + std::min(nodes - (group << kShift), kFan);
            std::int32_t sum = 0;
            for (std::int32_t* node = first; node != last; ++node)
                sum += std::exchange(*node, sum);
            std::fill(last, first + kFan, INT_MAX);
            if (floor + 1 < floors_)
                starts_[floor + 1][group] = sum;
        }
        nodes = groups;
    }
}

void PartIndex::Add(int part, int delta) noexcept
{
    int nodes = parts_;
    for (int floor = 0; floor < floors_; ++floor) {
        const int end = std::min((part | (kFan - 1)) + 1, nodes);
        for (int i = part + 1; i < end; ++i)
            starts_[floor][i] += delta;
        part >>= kShift;
        nodes = (nodes + kFan - 1) >> kShift;
    }
}

PartIndex::Found PartIndex::Find(int index) const noexcept
{
    int node = 0;
    for (int floor = floors_; floor-- > 0;) {
        const std::int32_t* starts = starts_[floor] + (node << kShift);
        int behind = 0; // starts after the one sought: the first is 0, so there is one
        for (int i = 0; i < kFan; ++i)
            behind += starts[i] > index ? 1 : 0;
        const int child = kFan - 1 - behind;
        index -= starts[child];
        node = (node << kShift) + child;
    }
    return {node, index};
}

} // namespace zn
