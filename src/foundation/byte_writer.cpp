#include "foundation/byte_writer.h"

#include "Zn_CodePage.h"
#include "foundation/utf8.h"

#include <algorithm>
#include <cstring>

namespace zn {

namespace {

constexpr std::size_t kBlockUnits = 0x4000; // of a text that are converted at once
constexpr std::size_t kUtf8Slack = 4;       // room that EncodeUtf8 asks for beyond what it needs

} // namespace

ByteWriter::ByteWriter(Zn_Buffer& out, unsigned codePage) noexcept
    : out_(out), codePage_(zn_activecodepage(codePage)), isUtf8_(codePage_ == kUtf8), length_(out.GetLength())
{
}

// Doubles the room that was used up. What is new of it is not touched before it is written.
bool ByteWriter::Grow(std::size_t count) noexcept
{
    constexpr std::size_t kFirst = 64;
    constexpr std::size_t kMost = 0x7FFFFF00;
    const std::size_t used = begin_ ? static_cast<std::size_t>(at_ - begin_) : static_cast<std::size_t>(length_);
    if (count > kMost - used)
        return false;
    const std::size_t wanted = std::max(used + count, std::min(kMost, begin_ ? 2 * used : used + kFirst));
    // The first step is the buffer's own, so that a buffer to which many writers add a little grows as it always does.
    const bool grown = begin_ ? out_.MakeOwn(static_cast<int>(wanted)) : out_.MakeRoom(static_cast<int>(wanted - used));
    if (!grown)
        return false;
    begin_ = out_.data_;
    at_ = begin_ + used;
    end_ = begin_ + Zn_Buffer::HeaderOf(begin_)->capacity;
    return true;
}

int ByteWriter::Finish() noexcept
{
    if (begin_)
        Zn_Buffer::HeaderOf(begin_)->length = static_cast<int>(at_ - begin_);
    begin_ = at_ = end_ = nullptr;
    length_ = out_.GetLength();
    return length_;
}

void ByteWriter::PutBytes(std::span<const unsigned char> bytes) noexcept
{
    unsigned char* to = bytes.empty() ? nullptr : Open(bytes.size());
    if (!to)
        return;
    std::memcpy(to, bytes.data(), bytes.size());
    Close(to + bytes.size());
}

void ByteWriter::PutText(std::u16string_view text) noexcept
{
    constexpr std::size_t kCount = 2;
    const std::size_t room = isUtf8_ ? kUtf8Slack + 3 * std::min(text.size(), kBlockUnits) : 0;
    unsigned char* to = Open(kCount + room);
    if (!to)
        return;
    // A long text, or an unpaired surrogate, is left to the encoder.
    const Converted whole = EncodeUtf8(text, reinterpret_cast<char*>(to + kCount), room);
    std::size_t length = whole.written;
    if (whole.read < text.size()) {
        const auto start = static_cast<std::size_t>(to - begin_);
        Close(to + kCount + length);
        length += PutEncoded(text.substr(whole.read));
        to = begin_ + start;
    }
    const auto counted = static_cast<std::uint16_t>(length);
    PutBe16(to, counted);
    Close(to + kCount + counted);
}

std::size_t ByteWriter::PutEncoded(std::u16string_view text) noexcept
{
    constexpr std::size_t kSlack = 64;
    if (!encoder_)
        encoder_.emplace(codePage_);
    std::size_t written = 0;
    while (!text.empty()) {
        const std::size_t room = 3 * std::min(text.size(), kBlockUnits) + kSlack;
        unsigned char* to = Open(room);
        if (!to)
            return written;
        const std::size_t count = encoder_->Next(text, reinterpret_cast<char*>(to), room);
        Close(to + count);
        written += count;
    }
    if (unsigned char* to = Open(kSlack)) {
        const std::size_t count = encoder_->Finish(reinterpret_cast<char*>(to));
        Close(to + count);
        written += count;
    }
    return written;
}

} // namespace zn
