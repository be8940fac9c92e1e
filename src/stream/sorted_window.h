// The strings of 18 bytes that begin in the coder's window, in sorted order, and the match that the stored form takes.
//
// The stored form was fixed by a coder that keeps the strings in search trees without balance, one tree per first byte.
// A new string becomes a leaf; one that equals an old string on all 18 bytes takes over its place; a string that
// leaves and has two children is replaced by its predecessor. Of several longest matches that coder takes the first on
// its way down. Callers rely on the choice, because they compare containers, but no tree is needed to make it:
//
// - Give each place in the tree the moment it came into being as its age. Parents are older than their children, and
//   a tree sorted by string whose parents are all older than their children has but one shape. Order and ages say it
//   all.
// - The strings that share the most bytes with the new one are neighbours in the order. The way down meets the
//   oldest of them first.
// - A string has a left child when its predecessor is younger, a right child when its successor is. One with both
//   passes its age on to its predecessor when it leaves; otherwise a child moves up and keeps its own age.
//
// So the window is a sorted list with ages, and no input turns it into a chain. A new string's place is nearly always
// beside that of the string which follows the neighbour of the string before it; else signposts lead there.
#pragma once

#include "foundation/byteorder.h"
#include "stream/lzss.h"

#include <bit>
#include <initializer_list>

namespace zn {

class SortedWindow {
public:
    SortedWindow() noexcept;

    // A byte of the ring. No string that holds it may be in the list.
    void Put(int position, unsigned char byte) noexcept
    {
        text_[position] = byte;
        if (position < kLongestMatch - 1)
            text_[position + kRingSize] = byte;
    }

    // The 18 bytes from a position on. At the end of the ring they go on with its start, as far as that was put;
    // zeros stand for the rest.
    const unsigned char* StringAt(int position) const noexcept { return text_ + position; }

    // Adds the string at a position to the list. Its bytes are read from text, which may be StringAt(position) but had
    // better be elsewhere: eight bytes whose last was put just now can't be loaded at once before memory has caught up.
    void Insert(int position, const unsigned char* text) noexcept;

    // Without effect on a string that is not in the list, or that an equal one has replaced.
    void Remove(int position) noexcept;

    // Of the string inserted last: 0 to 18 bytes.
    int MatchLength() const noexcept { return common_; }
    // Where that match begins; for lengths above 1.
    int MatchPosition() noexcept;

private:
    using Link = std::uint16_t;

    struct Node {
        Link before;
        Link after;
        std::uint32_t age;
    };

    struct Comparison {
        bool isLess;
        int common; // equal bytes at the start
    };

    // Between which strings one stands, and how much it shares with each. The one before may equal it.
    struct Place {
        int before;
        int after;
        int commonBefore;
        int commonAfter;
    };

    static constexpr Link kNone = 0xFFFF;
    static constexpr int kEnds = kRingSize;  // of the lists of the 256 first bytes: nodes behind those of the ring
    static constexpr int kStepsBeside = 8;   // from the guessed place, before a search starts
    static constexpr int kStepsToPost = 48;  // of a search, before it sets up a signpost
    static constexpr int kStepsToKeep = 256; // of a look for the oldest, before what it finds is kept

    static bool IsEnd(int node) noexcept { return node >= kEnds; }
    Comparison Compare(const unsigned char* text, int node) const noexcept;
    bool WalkUp(const unsigned char* text, Place& place, int steps) const noexcept;
    bool WalkDown(const unsigned char* text, Place& place, int steps) const noexcept;
    bool FindBesidePrevious(int position, const unsigned char* text, Place& place) noexcept;
    void FindFromPosts(const unsigned char* text, Place& place) noexcept;

    void Keep(int length, int node) noexcept;
    void RekeepReplaced(int old, int node) noexcept;
    void RekeepRemoved(int node, bool isAgePassedOn) noexcept;

    int CountPostsUpTo(const unsigned char* text) const noexcept;
    void AddPost(int position) noexcept;
    void HandPostTo(int position, int old) noexcept;
    void PassPostOn(int position) noexcept;

    unsigned char text_[kRingSize + kLongestMatch - 1] = {}; // the ring, and its first bytes once more
    Node nodes_[kRingSize + 256];
    Link standIn_[kRingSize]; // a string of the list itself, else the equal one that replaced it, or kNone
    std::uint32_t clock_ = 0;

    int last_ = kNone; // the string inserted last,
    int akin_ = kNone; // the neighbour that shares most with it or that it replaced, if they share two bytes,
    int common_ = 0;   // and how many they share

    // By length, for those in the set: the oldest of the strings that share so many bytes with it. Finding it again
    // costs as many steps as there are such strings.
    Link oldest_[kLongestMatch];
    std::uint32_t kept_ = 0;

    // Some strings of the list, in its order. Those of one first byte stand from firstPost_[byte] on.
    Link posts_[kRingSize];
    Link firstPost_[257] = {};
    bool isPost_[kRingSize] = {};
};

inline SortedWindow::Comparison SortedWindow::Compare(const unsigned char* text, int node) const noexcept
{
    for (const int offset : {0, 8, kLongestMatch - 8}) {
        const std::uint64_t a = GetBe64(text + offset);
        const std::uint64_t b = GetBe64(text_ + node + offset);
        if (a != b)
            return {a < b, offset + std::countl_zero(a ^ b) / 8};
    }
    return {false, kLongestMatch};
}

// Moves a place whose string before is known towards larger strings, until the new string fits. Returns false when the
// steps are used up, with a place to go on from.
inline bool SortedWindow::WalkUp(const unsigned char* text, Place& place, int steps) const noexcept
{
    for (; place.commonBefore < kLongestMatch; --steps) {
        place.after = nodes_[place.before].after;
        place.commonAfter = 0;
        if (IsEnd(place.after))
            break;
        const Comparison next = Compare(text, place.after);
        place.commonAfter = next.common;
        if (next.isLess)
            break;
        if (steps == 0)
            return false;
        place.before = place.after;
        place.commonBefore = next.common;
    }
    return true;
}

// The same the other way, from a known string after.
inline bool SortedWindow::WalkDown(const unsigned char* text, Place& place, int steps) const noexcept
{
    for (;; --steps) {
        place.before = nodes_[place.after].before;
        place.commonBefore = 0;
        if (IsEnd(place.before))
            return true;
        const Comparison next = Compare(text, place.before);
        place.commonBefore = next.common;
        if (!next.isLess)
            return true;
        if (steps == 0)
            return false;
        place.after = place.before;
        place.commonAfter = next.common;
    }
}

// The string that follows the neighbour shares all but one of the bytes that the neighbour and the string before this
// one have in common, so it stands near this one's place.
inline bool SortedWindow::FindBesidePrevious(int position, const unsigned char* text, Place& place) noexcept
{
    if (akin_ == kNone || position != ((last_ + 1) & kRingMask))
        return false;
    int beside = (akin_ + 1) & kRingMask;
    while (standIn_[beside] != beside)
        beside = standIn_[beside] = standIn_[standIn_[beside]];
    const Comparison found = Compare(text, beside);
    if (found.isLess) {
        place = {0, beside, 0, found.common};
        return WalkDown(text, place, kStepsBeside);
    }
    place = {beside, 0, found.common, 0};
    return WalkUp(text, place, kStepsBeside);
}

inline void SortedWindow::Insert(int position, const unsigned char* text) noexcept
{
    Place place;
    if (!FindBesidePrevious(position, text, place))
        FindFromPosts(text, place);
    const Link self = static_cast<Link>(position);
    standIn_[position] = self;
    last_ = position;
    if (place.commonBefore == kLongestMatch) {
        const Node node = nodes_[position] = nodes_[place.before];
        nodes_[node.before].after = nodes_[node.after].before = standIn_[place.before] = self;
        common_ = kLongestMatch;
        akin_ = place.before;
        if (isPost_[place.before])
            HandPostTo(position, place.before);
        if (kept_ != 0)
            RekeepReplaced(place.before, position);
        return;
    }
    nodes_[position] = {static_cast<Link>(place.before), static_cast<Link>(place.after), ++clock_};
    nodes_[place.before].after = nodes_[place.after].before = self;
    const bool isNearerBefore = place.commonBefore >= place.commonAfter;
    common_ = isNearerBefore ? place.commonBefore : place.commonAfter;
    akin_ = common_ < 2 ? kNone : isNearerBefore ? place.before : place.after;
}

inline void SortedWindow::Remove(int position) noexcept
{
    if (standIn_[position] != position)
        return;
    if (isPost_[position])
        PassPostOn(position);
    const Node& self = nodes_[position];
    Node& before = nodes_[self.before];
    Node& after = nodes_[self.after];
    const bool isAgePassedOn = before.age > self.age && after.age > self.age;
    if (isAgePassedOn)
        before.age = self.age;
    if (kept_ != 0)
        RekeepRemoved(position, isAgePassedOn);
    before.after = self.after;
    after.before = self.before;
    standIn_[position] = kNone;
}

} // namespace zn
