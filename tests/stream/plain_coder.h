// The compressor as it was first written: search trees without balance, and a ring that is copied byte by byte. The
// tests and the benchmark hold the library's coders to it.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

namespace plain {

using Bytes = std::vector<unsigned char>;

constexpr int N = 4096, F = 18, Nil = N;

class TreeCoder {
public:
    Bytes Encode(std::span<const unsigned char> in)
    {
        for (int root = N + 1; root <= N + 256; ++root)
            right_[root] = Nil;
        for (int i = 0; i < N; ++i)
            parent_[i] = Nil;
        std::memset(text_, ' ', N - F);
        int oldest = 0, here = N - F, ahead = 0;
        std::size_t next = 0;
        for (; ahead < F && next < in.size(); ++ahead)
            text_[here + ahead] = in[next++];
        if (ahead == 0)
            return {};
        for (int i = 1; i <= F; ++i)
            Insert(here - i);
        Insert(here);

        Bytes out, group(1);
        unsigned flag = 1;
        do {
            int length = matchLength_ < ahead ? matchLength_ : ahead;
            if (length < 3) {
                length = 1;
                group[0] = static_cast<unsigned char>(group[0] | flag);
                group.push_back(text_[here]);
            } else {
                group.push_back(static_cast<unsigned char>(matchPosition_));
                group.push_back(static_cast<unsigned char>((matchPosition_ >> 4 & 0xF0) | (length - 3)));
            }
            if ((flag <<= 1) == 0x100) {
                out.insert(out.end(), group.begin(), group.end());
                group.assign(1, 0);
                flag = 1;
            }
            while (length-- > 0) {
                Delete(oldest);
                if (next < in.size()) {
                    text_[oldest] = in[next++];
                    if (oldest < F - 1)
                        text_[oldest + N] = text_[oldest];
                } else {
                    --ahead;
                }
                oldest = (oldest + 1) % N;
                here = (here + 1) % N;
                if (ahead > 0)
                    Insert(here);
            }
        } while (ahead > 0);
        if (group.size() > 1)
            out.insert(out.end(), group.begin(), group.end());
        return out;
    }

private:
    void Insert(int node)
    {
        const unsigned char* key = text_ + node;
        int at = N + 1 + key[0], difference = 1;
        left_[node] = right_[node] = Nil;
        matchLength_ = 0;
        for (;;) {
            int& child = difference >= 0 ? right_[at] : left_[at];
            if (child == Nil) {
                child = node;
                parent_[node] = at;
                return;
            }
            at = child;
            int common = 1;
            while (common < F && (difference = key[common] - text_[at + common]) == 0)
                ++common;
            if (common > matchLength_) {
                matchPosition_ = at;
                matchLength_ = common;
                if (common == F)
                    break;
            }
        }
        left_[node] = left_[at];
        right_[node] = right_[at];
        parent_[left_[node]] = parent_[right_[node]] = node;
        PutInPlaceOf(at, node);
    }

    void Delete(int node)
    {
        if (parent_[node] == Nil)
            return;
        int heir = right_[node];
        if (heir == Nil) {
            heir = left_[node];
        } else if (left_[node] != Nil) {
            heir = left_[node];
            if (right_[heir] != Nil) {
                while (right_[heir] != Nil)
                    heir = right_[heir];
                right_[parent_[heir]] = left_[heir];
                parent_[left_[heir]] = parent_[heir];
                left_[heir] = left_[node];
                parent_[left_[heir]] = heir;
            }
            right_[heir] = right_[node];
            parent_[right_[heir]] = heir;
        }
        PutInPlaceOf(node, heir);
    }

    void PutInPlaceOf(int node, int heir)
    {
        const int above = parent_[node];
        parent_[heir] = above;
        (right_[above] == node ? right_[above] : left_[above]) = heir;
        parent_[node] = Nil;
    }

    unsigned char text_[N + F - 1] = {};
    int matchPosition_ = 0, matchLength_ = 0;
    int left_[N + 257] = {}, right_[N + 257] = {}, parent_[N + 1] = {};
};

inline Bytes Encode(std::span<const unsigned char> in)
{
    return std::make_unique<TreeCoder>()->Encode(in);
}

// Append(byte) takes one byte of what comes out.
template <class Append>
void Decode(std::span<const unsigned char> in, Append append)
{
    unsigned char ring[N];
    std::memset(ring, ' ', N);
    int here = N - F;
    const auto put = [&](unsigned char byte) {
        append(byte);
        ring[here] = byte;
        here = (here + 1) % N;
    };
    for (std::size_t next = 0, items = 0, flags = 0; next < in.size(); ++items, flags >>= 1) {
        if (items % 8 == 0) {
            flags = in[next++];
            if (next == in.size())
                return;
        }
        const int first = in[next++];
        if (flags & 1) {
            put(static_cast<unsigned char>(first));
            continue;
        }
        if (next == in.size())
            return;
        const int second = in[next++];
        const int position = first | (second & 0xF0) << 4;
        for (int i = 0; i < (second & 0x0F) + 3; ++i)
            put(ring[(position + i) % N]);
    }
}

inline Bytes Decode(std::span<const unsigned char> in)
{
    Bytes out;
    Decode(in, [&](unsigned char byte) { out.push_back(byte); });
    return out;
}

} // namespace plain
