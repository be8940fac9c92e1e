// Which of many consecutive parts an index falls into, when the parts change their lengths.
//
// A tree of fan-out 64: each node says where it starts within its parent, so a step down is one run of
// independent comparisons and a change of a length touches one node's later siblings on each floor. The memory
// is the caller's.
#pragma once

#include <cstdint>

namespace zn {

class PartIndex {
public:
    struct Found {
        int part;
        int offset;
    };

    // How many numbers of memory an index of that many parts needs.
    static int MemoryFor(int parts) noexcept;

    PartIndex(std::int32_t* memory, int room) noexcept;
    // Takes as many parts as there is room for, at most.
    void Build(const std::int32_t* lengths, int parts) noexcept;
    // A part has become longer or shorter.
    void Add(int part, int delta) noexcept;
    // The part of an index that is below the sum of all lengths.
    Found Find(int index) const noexcept;

private:
    static constexpr int kShift = 6;
    static constexpr int kFan = 1 << kShift;
    static constexpr int kFloors = 6; // 64 to that power is more than there are ints

    std::int32_t* starts_[kFloors] = {}; // of the parts, of groups of 64 parts, and so on up
    int floors_ = 0;
    int parts_ = 0;
};

} // namespace zn
