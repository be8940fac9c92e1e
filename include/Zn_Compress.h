// Makes buffers smaller and restores them: messages before they are sent or stored.
//
// A compressed buffer is a container with a marker and a checksum, so a receiver may hand every buffer to Decode: one
// that is no container, or a damaged one, comes out as it is. Nothing is ever lost: what is too short to gain, or is
// compressed already, comes out of Encode as it is.
//
//     Zn_Buffer small, again;
//     Zn_Compress().Encode(message, small);
//     Zn_Compress().Decode(small, again);                 // again == message
//
// An object holds no state; any number of threads may use one. Input and output may be the same buffer. When memory
// runs out, the output is the input too. Bytes that don't repeat grow by an eighth.
#pragma once

#include "Zn_Buffer.h"

class ZN_API Zn_Compress {
public:
    // Replaces out by the container of in; returns 0. The same input gives the same bytes on every machine and in every
    // version, so containers can be compared byte for byte.
    std::int32_t Encode(const Zn_Buffer& in, Zn_Buffer& out) const noexcept;
    // The same many times as fast, for callers who compare no containers: as small, readable by every decoder, but of
    // several ways to code a match it takes the first it finds, which may change between versions. Returns 0.
    std::int32_t EncodeFast(const Zn_Buffer& in, Zn_Buffer& out) const noexcept;
    // Replaces out by what in was made from, or by in itself when that is no whole container; returns 0.
    std::int32_t Decode(const Zn_Buffer& in, Zn_Buffer& out) const noexcept;
    // 1 for a whole container, its checksum included, else 0.
    static int IsCompressBuffer(const Zn_Buffer& buffer) noexcept;
};
