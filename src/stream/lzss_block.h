// Bytes on their way to a buffer, collected into large steps; the groups of a coded stream in them; and what runs a
// coder that writes these.
#pragma once

#include "stream/lzss.h"

#include <memory>
#include <new>

namespace zn {

// Whether all the bytes went to the end of out, which they don't when memory or its bound is reached.
inline bool AppendAll(Zn_Buffer& out, const unsigned char* bytes, int count) noexcept
{
    const int before = out.GetLength();
    out.Append(bytes, count);
    return out.GetLength() - before == count;
}

class GroupWriter {
public:
    explicit GroupWriter(Zn_Buffer& out) noexcept : out_(out) { StartGroup(); }

    void Literal(unsigned char byte) noexcept
    {
        block_[flags_] = static_cast<unsigned char>(block_[flags_] | flag_);
        block_[end_++] = byte;
        NextItem();
    }

    void Reference(int position, int length) noexcept
    {
        block_[end_++] = static_cast<unsigned char>(position);
        block_[end_++] = static_cast<unsigned char>((position >> 4 & 0xF0) | (length - kShortestMatch));
        NextItem();
    }

    // Call once, at the end. Returns false when some of the stream could not be written.
    bool Finish() noexcept
    {
        if (flag_ == 1)
            --end_; // a group without items
        Flush();
        return isWhole_;
    }

private:
    void NextItem() noexcept
    {
        flag_ = static_cast<unsigned char>(flag_ << 1);
        if (flag_ == 0)
            StartGroup();
    }

    void StartGroup() noexcept
    {
        if (end_ > kBlock - kLargestGroup)
            Flush();
        flag_ = 1;
        flags_ = end_++;
        block_[flags_] = 0;
    }

    void Flush() noexcept
    {
        isWhole_ = isWhole_ && AppendAll(out_, block_, end_);
        end_ = 0;
    }

    static constexpr int kBlock = 8192;

    Zn_Buffer& out_;
    bool isWhole_ = true;
    unsigned char flag_ = 1; // of the next item
    int flags_ = 0;          // where the group's flag byte stands
    int end_ = 0;
    unsigned char block_[kBlock];
};

// Codes the input with a coder of its own, which is too large for the stack. False, and a part may have been written,
// when memory runs out.
template <class Coder>
bool EncodeBy(std::span<const unsigned char> in, Zn_Buffer& out) noexcept
{
    const std::unique_ptr<Coder> coder(new (std::nothrow) Coder(in));
    if (!coder)
        return false;
    GroupWriter writer(out);
    coder->WriteItems(writer);
    return writer.Finish();
}

} // namespace zn
