#include "markup_output.h"

#include "Zn_CodePage.h"

namespace zn {

namespace {

template <class Target>
void Deliver(Target body, Target& target)
{
    if (target.GetLength() == 0)
        target = std::move(body);
    else if constexpr (requires { target += body; })
        target += body;
    else
        target.Append(body.GetData(), body.GetLength());
}

// What the escaping of texts writes to: a function of a view.
template <class Put>
class EscapeSink {
public:
    explicit EscapeSink(Put put) noexcept : put_(put) {}
    friend void Append(EscapeSink& sink, std::u16string_view text) { sink.put_(text); }

private:
    Put put_;
};

} // namespace

void WideOutput::PutEscaped(std::u16string_view text, EndBlanks blanks) noexcept
{
    EscapeSink sink([this](std::u16string_view piece) { Put(piece); });
    AppendXml(text, sink, blanks);
}

bool WideOutput::AppendTo(Zn_WString& target) noexcept
{
    if (HasFailed())
        return false;
    Deliver(TakeBody(), target);
    return true;
}

bool WideOutput::AppendTo(Zn_Buffer& target, unsigned codePage, Missing missing) noexcept
{
    if (HasFailed())
        return false;
    const Zn_WString body = TakeBody();
    Zn_Buffer bytes;
    EncodeText(body.GetView(), codePage, bytes, missing);
    Deliver(std::move(bytes), target);
    return true;
}

bool ByteOutput::Serves(unsigned codePage) noexcept
{
    switch (KindOfPage(zn_activecodepage(codePage))) {
    case PageKind::Utf16Le:
    case PageKind::Utf16Be:
    case PageKind::PlatformOther:
        return false;
    default:
        return true;
    }
}

void ByteOutput::PutEncoded(std::u16string_view text, TextEncoder& encoder) noexcept
{
    while (!text.empty()) {
        constexpr std::size_t kSlack = 64; // the encoder goes on while there is room for 32
        constexpr std::size_t kBlockUnits = 0x10000;
        const std::size_t room = 3 * std::min(text.size(), kBlockUnits) + kSlack;
        char* to = Room(room);
        if (!to)
            return;
        Advance(encoder.Next(text, to, room));
    }
}

void ByteOutput::PutEscaped(std::u16string_view text, EndBlanks blanks) noexcept
{
    if (text.empty())
        return;
    EscapeSink sink([this](std::u16string_view piece) { PutEncoded(piece, texts_); });
    if (zn_isspace(text.front()) || zn_isspace(text.back()))
        return AppendXml(text, sink, blanks);
    char* to = Room(text.size());
    if (!to)
        return;
    const std::size_t plain = CopyPlainXml(text, to);
    Advance(plain);
    AppendXmlMiddle(text.substr(plain), sink);
}

bool ByteOutput::AppendTo(Zn_Buffer& target) noexcept
{
    if (HasFailed())
        return false;
    Deliver(TakeBody(), target);
    return true;
}

} // namespace zn
