#include "stream/lzss_block.h"
#include "stream/sorted_window.h"

#include <algorithm>

namespace zn {
namespace {

// The window sliding over the input.
class Coder {
public:
    explicit Coder(std::span<const unsigned char> in) noexcept : in_(in)
    {
        for (; ahead_ < kLongestMatch && next_ < in_.size(); ++ahead_)
            window_.Put(here_ + ahead_, in_[next_++]);
        for (int i = 1; i <= kLongestMatch; ++i)
            window_.Insert(here_ - i, window_.StringAt(here_ - i));
        InsertHere();
    }

    void WriteItems(GroupWriter& writer) noexcept
    {
        while (ahead_ > 0) {
            int length = std::min(window_.MatchLength(), ahead_);
            if (length < kShortestMatch) {
                length = 1;
                writer.Literal(*window_.StringAt(here_));
            } else {
                writer.Reference(window_.MatchPosition(), length);
            }
            for (; length > 0; --length)
                Advance();
        }
    }

private:
    // At the end of the input the strings run on into the oldest bytes of the ring, which take part in the order.
    void Advance() noexcept
    {
        window_.Remove(oldest_);
        if (next_ < in_.size())
            window_.Put(oldest_, in_[next_++]);
        else
            --ahead_;
        oldest_ = (oldest_ + 1) & kRingMask;
        here_ = (here_ + 1) & kRingMask;
        if (ahead_ > 0)
            InsertHere();
    }

    void InsertHere() noexcept
    {
        const bool isInInput = ahead_ == kLongestMatch;
        window_.Insert(here_, isInInput ? in_.data() + next_ - kLongestMatch : window_.StringAt(here_));
    }

    SortedWindow window_;
    std::span<const unsigned char> in_;
    std::size_t next_ = 0;
    int oldest_ = 0;
    int here_ = kFirstPosition;
    int ahead_ = 0; // bytes from here_ on that are still to be coded
};

} // namespace

bool LzssEncode(std::span<const unsigned char> in, Zn_Buffer& out) noexcept
{
    return EncodeBy<Coder>(in, out);
}

} // namespace zn
