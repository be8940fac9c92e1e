#include "stream/lzss_block.h"

#include <cstring>
#include <memory>
#include <new>

namespace zn {
namespace {

// The bytes before the next one, at least 4,096 of them, in one row: what stands in the ring at a position stands here
// at a distance, and no position wraps.
class Decoder {
public:
    Decoder(std::span<const unsigned char> in, Zn_Buffer& out) noexcept : next_(in.data()), left_(in.size()), out_(out)
    {
        std::memset(bytes_, kBlank, kRingSize);
    }

    bool Run() noexcept
    {
        while (isWhole_ && left_ > 0) {
            if (end_ > kSize - kItemsInGroup * kLongestMatch)
                Flush();
            const unsigned flags = Take();
            if (left_ >= kWholeGroup)
                TakeWholeGroup(flags);
            else
                TakeLastItems(flags);
        }
        Flush();
        return isWhole_;
    }

private:
    static constexpr int kSize = 1 << 16;
    static constexpr std::size_t kWholeGroup = std::size_t{2} * kItemsInGroup;

    unsigned Take() noexcept
    {
        --left_;
        return *next_++;
    }

    // The items of a group that is known to be there.
    void TakeWholeGroup(unsigned flags) noexcept
    {
        const unsigned char* next = next_;
        unsigned char* to = bytes_ + end_;
        if (flags == 0xFF) {
            std::memcpy(to, next, kItemsInGroup);
            next += kItemsInGroup;
            to += kItemsInGroup;
        } else {
            for (int item = 0; item < kItemsInGroup; ++item, flags >>= 1) {
                if (flags & 1) {
                    *to++ = *next++;
                } else {
                    to = CopyMatch(to, next[0], next[1]);
                    next += 2;
                }
            }
        }
        left_ -= static_cast<std::size_t>(next - next_);
        next_ = next;
        end_ = static_cast<int>(to - bytes_);
    }

    void TakeLastItems(unsigned flags) noexcept
    {
        for (int item = 0; item < kItemsInGroup && left_ > 0; ++item, flags >>= 1) {
            const unsigned first = Take();
            if (flags & 1)
                bytes_[end_++] = static_cast<unsigned char>(first);
            else if (left_ > 0)
                end_ = static_cast<int>(CopyMatch(bytes_ + end_, first, Take()) - bytes_);
        }
    }

    // Copies what a reference stands for; returns the end of the copy.
    unsigned char* CopyMatch(unsigned char* to, unsigned first, unsigned second) const noexcept
    {
        const int length = static_cast<int>(second & 0x0F) + kShortestMatch;
        const int position = static_cast<int>(first | (second & 0xF0) << 4);
        const int here = static_cast<int>(to - bytes_) + base_; // equals the ring's write position modulo its size
        const int distance = ((here - position - 1) & kRingMask) + 1;
        const unsigned char* from = to - distance;
        if (distance >= kLongestMatch) {
            std::memcpy(to, from, 16);
            std::memcpy(to + 16, from + 16, 2);
        } else { // the reference runs into the bytes it makes, which are the first ones again
            for (int i = 0, j = 0; i < length; ++i, j = j + 1 < distance ? j + 1 : 0)
                to[i] = from[j];
        }
        return to + length;
    }

    void Flush() noexcept
    {
        const int made = end_ - kRingSize;
        isWhole_ = isWhole_ && AppendAll(out_, bytes_ + kRingSize, made);
        std::memmove(bytes_, bytes_ + made, kRingSize);
        base_ = (base_ + made) & kRingMask;
        end_ = kRingSize;
    }

    const unsigned char* next_;
    std::size_t left_;
    Zn_Buffer& out_;
    bool isWhole_ = true;
    int base_ = kFirstPosition - kRingSize;
    int end_ = kRingSize;
    unsigned char bytes_[kSize];
};

} // namespace

bool LzssDecode(std::span<const unsigned char> in, Zn_Buffer& out) noexcept
{
    const std::unique_ptr<Decoder> decoder(new (std::nothrow) Decoder(in, out));
    return decoder && decoder->Run();
}

} // namespace zn
