#include "foundation/byteorder.h"
#include "stream/lzss_block.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <initializer_list>

namespace zn {
namespace {

using Index = std::ptrdiff_t; // of a byte of the input; negative for the blanks before it

// A stretch of the input with the 4,096 bytes before it and some after it. Before the input stand blanks.
class Stretch {
public:
    // Bytes after a position that can be read whenever Reach was called for it; beyond the input they are zero.
    static constexpr int kAhead = 64;

    explicit Stretch(std::span<const unsigned char> in) noexcept : in_(in)
    {
        std::memset(bytes_, kBlank, kRingSize);
        Fill();
    }

    const unsigned char* At(Index index) const noexcept { return bytes_ + (index - first_); }

    // Moves on when the bytes after an index of the input are not all there.
    void Reach(Index index) noexcept
    {
        if (index + kAhead <= first_ + end_ || next_ == in_.size()) [[likely]]
            return;
        const Index gone = index - kRingSize - first_;
        std::memmove(bytes_, bytes_ + gone, static_cast<std::size_t>(end_ - gone));
        end_ -= gone;
        first_ += gone;
        Fill();
    }

private:
    void Fill() noexcept
    {
        const std::size_t count = std::min(in_.size() - next_, static_cast<std::size_t>(kSize - end_));
        if (count > 0)
            std::memcpy(bytes_ + end_, in_.data() + next_, count);
        next_ += count;
        end_ += static_cast<Index>(count);
        std::memset(bytes_ + end_, 0, kAhead);
    }

    static constexpr int kSize = 1 << 16;

    std::span<const unsigned char> in_;
    std::size_t next_ = 0;
    Index first_ = -kRingSize; // the index of bytes_[0] in the input
    Index end_ = kRingSize;
    unsigned char bytes_[kSize + kAhead];
};

int CommonLength(const unsigned char* a, const unsigned char* b) noexcept
{
    for (const int offset : {0, 8, kLongestMatch - 8}) {
        if (const std::uint64_t difference = GetBe64(a + offset) ^ GetBe64(b + offset))
            return offset + std::countl_zero(difference) / 8;
    }
    return kLongestMatch;
}

struct Match {
    int length = kShortestMatch - 1;
    int distance = 0;
};

// Finds longest matches along chains of the places where the same three bytes stand, the latest first.
//
// Places are indices of the input modulo 65,536. One that is older than that looks like a place in the window and is
// compared like any other, which costs time and harms nothing.
class FastCoder {
public:
    explicit FastCoder(std::span<const unsigned char> in) noexcept : text_(in), length_(static_cast<Index>(in.size()))
    {
        std::fill(std::begin(latest_), std::end(latest_), Place{0x8000});
        for (Index index = -kLongestMatch; index < kEntered; ++index)
            Enter(index);
    }

    void WriteItems(GroupWriter& writer) noexcept
    {
        for (Index index = 0; index < length_;) {
            text_.Reach(index);
            const Match match = Find(index);
            int length = static_cast<int>(std::min<Index>(match.length, length_ - index));
            if (length < kShortestMatch) {
                length = 1;
                writer.Literal(*text_.At(index));
            } else {
                writer.Reference(static_cast<int>(kFirstPosition + index - match.distance) & kRingMask, length);
            }
            allowance_ = std::min(allowance_ + length * kStepsForByte, kMostSteps);
            for (const Index end = index + length; index < end; ++index)
                Enter(index + kEntered);
        }
    }

private:
    using Place = std::uint16_t;

    static constexpr int kTableBits = 15;
    // The places before a position and this many from it on are in the chains, enough for every three bytes of a match.
    static constexpr int kEntered = kLongestMatch - kShortestMatch + 1;
    static constexpr int kMuchRarer = 3;
    static constexpr int kMostStrangers = 64;
    // What bounds the time: steps along chains, saved up over some input. Messages take less than one for a byte.
    static constexpr int kStepsForByte = 64;
    static constexpr int kMostSteps = 1 << 16;

    static std::size_t Hash(const unsigned char* bytes) noexcept
    {
        return (GetLe32(bytes) << 8) * 0x9E3779B1u >> (32 - kTableBits);
    }

    void Enter(Index index) noexcept
    {
        Place& latest = latest_[Hash(text_.At(index))];
        earlier_[index & kRingMask] = latest;
        latest = static_cast<Place>(index);
    }

    // A walk over the places where the three bytes at some index stood, back from there.
    struct Chain {
        Place from;
        Place next;
        int distance = 0; // of the place it has come to
        int steps = 0;

        int DistanceOfNext() const noexcept { return static_cast<Place>(from - next); }
    };

    Chain ChainFrom(Index index) const noexcept { return {static_cast<Place>(index), earlier_[index & kRingMask]}; }

    // False at the end, which is where the window ends, or where a place is too old to be told from a later one.
    bool Advance(Chain& chain) const noexcept
    {
        const int distance = chain.DistanceOfNext();
        if (distance <= chain.distance || distance > kLargestDistance)
            return false;
        chain.distance = distance;
        chain.next = earlier_[chain.next & kRingMask];
        ++chain.steps;
        return true;
    }

    Match Find(Index index) noexcept
    {
        const unsigned char* key = text_.At(index);
        Match best;
        Chain chain = ChainFrom(index);
        for (int strangers = 0; allowance_ > 0 && Advance(chain); --allowance_) {
            const unsigned char* place = key - chain.distance;
            if (best.length >= kShortestMatch && std::memcmp(key + best.length - 3, place + best.length - 3, 4) != 0)
                continue;
            const int length = CommonLength(key, place);
            if (length <= best.length) {
                if (best.length < kShortestMatch && ++strangers == kMostStrangers)
                    break; // other bytes with the same hash, which only made-up input has in numbers
                continue;
            }
            best = {length, chain.distance};
            if (length == kLongestMatch)
                break;
            // A longer match holds the next byte too. Where the three bytes that end with it are much rarer than those
            // of this chain, the places where they stand are the candidates to try.
            const Chain ofTail = ChainFrom(index + length + 1 - kShortestMatch);
            if (ofTail.DistanceOfNext() * chain.steps > kMuchRarer * chain.distance)
                chain = ofTail;
        }
        return best;
    }

    Stretch text_;
    Index length_;
    int allowance_ = kMostSteps;
    Place latest_[1 << kTableBits];
    Place earlier_[kRingSize]; // by place: the one before it with the same hash
};

} // namespace

bool LzssEncodeFast(std::span<const unsigned char> in, Zn_Buffer& out) noexcept
{
    return EncodeBy<FastCoder>(in, out);
}

} // namespace zn
