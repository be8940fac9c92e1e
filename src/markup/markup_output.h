// Where markup is written to: wide text, or bytes of a code page. Both grow by doubling, and what was written
// reaches its target at the end in one piece: when memory runs out the target stays as it was.
//
// Put takes text of the program as it is, PutAscii 8-bit text that needs no conversion (numbers, Base64, names
// converted before), PutEscaped text that is escaped on the way.
//
// Use WriteMarkup for bytes: it also serves the code pages that are not built on ASCII.
#pragma once

#include "foundation/encoding.h"
#include "foundation/utf8.h"
#include "foundation/xml_escape.h"

#include "Zn_Buffer.h"
#include "Zn_WString.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace zn {

// Room that grows in a target (Zn_WString or Zn_Buffer) of its own.
template <class Target, class Char>
class GrowingText {
public:
    // Where the next `count` characters go, null when memory ran out: then nothing more is taken.
    Char* Room(std::size_t count) noexcept { return static_cast<std::size_t>(end_ - at_) >= count ? at_ : Grow(count); }
    void Advance(std::size_t count) noexcept { at_ += count; }
    void Fail() noexcept
    {
        failed_ = true;
        begin_ = at_ = end_ = nullptr;
    }
    bool HasFailed() const noexcept { return failed_; }
    void PutChar(char ascii) noexcept
    {
        if (Char* to = Room(1)) {
            *to = static_cast<Char>(ascii);
            Advance(1);
        }
    }
    // CR LF and that many tabs.
    void PutNewLine(std::size_t tabs) noexcept
    {
        if (Char* to = Room(tabs + 2)) {
            to[0] = Char('\r');
            to[1] = Char('\n');
            std::fill_n(to + 2, tabs, Char('\t'));
            Advance(tabs + 2);
        }
    }

protected:
    // Gives up what was written, with its exact length; writing begins anew.
    Target TakeBody() noexcept
    {
        const int length = static_cast<int>(at_ - begin_);
        if constexpr (requires { body_.FreeExtra(length); })
            body_.FreeExtra(length);
        else
            body_.SetSize(length);
        begin_ = at_ = end_ = nullptr;
        return std::exchange(body_, Target());
    }

private:
    Char* Grow(std::size_t count) noexcept
    {
        constexpr std::size_t kMost = 0x7FFFFF00 / sizeof(Char);
        constexpr std::size_t kLeast = 1024;
        const auto used = static_cast<std::size_t>(at_ - begin_);
        const auto capacity = static_cast<std::size_t>(end_ - begin_);
        if (failed_ || count > kMost || used + count > kMost) {
            Fail();
            return nullptr;
        }
        const std::size_t wanted = std::min(kMost, std::max({kLeast, 2 * capacity, used + count}));
        begin_ = reinterpret_cast<Char*>(body_.GetSafeBuffer(static_cast<int>(wanted)));
        if (!begin_) {
            Fail();
            return nullptr;
        }
        at_ = begin_ + used;
        end_ = begin_ + wanted;
        return at_;
    }

    Target body_;
    Char* begin_ = nullptr;
    Char* at_ = nullptr;
    Char* end_ = nullptr;
    bool failed_ = false;
};

class WideOutput : public GrowingText<Zn_WString, char16_t> {
public:
    void Put(std::u16string_view text) noexcept
    {
        if (char16_t* to = text.empty() ? nullptr : Room(text.size())) {
            std::copy(text.begin(), text.end(), to);
            Advance(text.size());
        }
    }
    void PutAscii(std::string_view text) noexcept
    {
        if (char16_t* to = text.empty() ? nullptr : Room(text.size())) {
            std::transform(text.begin(), text.end(), to, [](char ch) { return static_cast<unsigned char>(ch); });
            Advance(text.size());
        }
    }
    void PutEscaped(std::u16string_view text, EndBlanks blanks = EndBlanks::Reference) noexcept;

    // Appends what was written and begins anew; false when memory ran out on the way.
    bool AppendTo(Zn_WString& target) noexcept;
    // The same, converted.
    bool AppendTo(Zn_Buffer& target, unsigned codePage, Missing missing) noexcept;
};

// For the pages in which an ASCII character is the byte of the same number.
class ByteOutput : public GrowingText<Zn_Buffer, char> {
public:
    // `missing` says what becomes of characters that the page lacks where text is escaped; elsewhere they
    // are replaced.
    explicit ByteOutput(unsigned codePage, Missing missing = Missing::Replace) noexcept
        : names_(codePage), texts_(codePage, missing)
    {
    }
    static bool Serves(unsigned codePage) noexcept;

    void Put(std::u16string_view text) noexcept
    {
        if (char* to = text.empty() ? nullptr : Room(text.size())) {
            const std::size_t ascii = CopyAscii(text, to, text.size());
            Advance(ascii);
            if (ascii != text.size())
                PutEncoded(text.substr(ascii), names_);
        }
    }
    void PutAscii(std::string_view text) noexcept
    {
        if (char* to = text.empty() ? nullptr : Room(text.size())) {
            std::memcpy(to, text.data(), text.size());
            Advance(text.size());
        }
    }
    void PutEscaped(std::u16string_view text, EndBlanks blanks = EndBlanks::Reference) noexcept;

    bool AppendTo(Zn_Buffer& target) noexcept;

private:
    void PutEncoded(std::u16string_view text, TextEncoder& encoder) noexcept;

    TextEncoder names_;
    TextEncoder texts_;
};

// Appends to a buffer what write(output) writes, in a code page; false, and the buffer stays as it was, when
// memory runs out. The output is a ByteOutput, or a WideOutput that is converted at the end.
template <class Write>
bool WriteMarkup(Zn_Buffer& target, unsigned codePage, Missing missing, Write write)
{
    if (ByteOutput::Serves(codePage)) {
        ByteOutput output(codePage, missing);
        write(output);
        return output.AppendTo(target);
    }
    WideOutput output;
    write(output);
    return output.AppendTo(target, codePage, missing);
}

} // namespace zn
