// A compressed container, its stream under a right checksum, and any bytes there and back.
#include "fuzz.h"

#include "Zn_Compress.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Zn_Compress coder;
    const Zn_Buffer in = BufferOf(data, size);
    Zn_Buffer out, again;
    coder.Decode(in, out);
    Require(Zn_Compress::IsCompressBuffer(in) || out == in);

    Zn_Buffer container = in;
    if (unsigned char* head = container.GetLength() >= 18 ? container.GetSafeBuffer(0) : nullptr) {
        const std::uint32_t checksum = zn_crc32(0, head + 6, container.GetLength() - 6);
        head[0] = 0xFF;
        head[1] = 0xAC;
        for (int i = 0; i < 4; ++i)
            head[2 + i] = static_cast<unsigned char>(checksum >> (24 - 8 * i));
        Require(Zn_Compress::IsCompressBuffer(container));
        coder.Decode(container, out);
        Require(out.GetLength() <= container.GetLength() * 9);
    }
    for (const auto encode : {&Zn_Compress::Encode, &Zn_Compress::EncodeFast}) {
        (coder.*encode)(in, out);
        coder.Decode(out, again);
        Require(Zn_Compress::IsCompressBuffer(in) ? out == in : again == in);
    }
    return 0;
}
