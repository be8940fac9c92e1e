// Text in the binary encodings: a 16-bit count of bytes, then the text in a code page, unterminated.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_WString.h"
#include "foundation/byteorder.h"

namespace zn {

// The count is the low 16 bits of the length: callers keep ids and texts below 64 KiB.
inline void AppendCountedText(Zn_Buffer& out, const Zn_WString& text, unsigned codePage)
{
    const int head = out.AddSize(2);
    if (head < 0)
        return;
    out.AppendStr(text, text.GetLength(), codePage);
    const int length = out.GetLength() - head - 2;
    if (unsigned char* bytes = out.GetSafeBuffer(head + 2))
        PutBe16(bytes + head, static_cast<std::uint16_t>(length));
}

} // namespace zn
