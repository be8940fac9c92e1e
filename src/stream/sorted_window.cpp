#include "stream/sorted_window.h"

#include <algorithm>
#include <cstring>

namespace zn {

SortedWindow::SortedWindow() noexcept
{
    std::memset(text_, kBlank, kFirstPosition);
    std::fill(std::begin(standIn_), std::end(standIn_), kNone);
    for (int end = kEnds; end < kEnds + 256; ++end)
        nodes_[end] = {static_cast<Link>(end), static_cast<Link>(end), 0}; // older than every string
}

int SortedWindow::MatchPosition() noexcept
{
    if (common_ == kLongestMatch)
        return akin_;
    if ((kept_ >> common_ & 1) != 0 && Compare(text_ + last_, oldest_[common_]).common >= common_)
        return oldest_[common_];
    int oldest = akin_;
    int steps = 0;
    const auto consider = [&](int node) {
        if (IsEnd(node) || Compare(text_ + last_, node).common < common_)
            return false;
        if (nodes_[node].age < nodes_[oldest].age)
            oldest = node;
        ++steps;
        return true;
    };
    for (int node = nodes_[last_].before; consider(node);)
        node = nodes_[node].before;
    for (int node = nodes_[last_].after; consider(node);)
        node = nodes_[node].after;
    if (steps > kStepsToKeep)
        Keep(common_, oldest);
    return oldest;
}

void SortedWindow::Keep(int length, int node) noexcept
{
    oldest_[length] = static_cast<Link>(node);
    kept_ |= 1U << length;
}

void SortedWindow::RekeepReplaced(int old, int node) noexcept
{
    for (std::uint32_t left = kept_; left != 0; left &= left - 1) {
        if (oldest_[std::countr_zero(left)] == old)
            oldest_[std::countr_zero(left)] = static_cast<Link>(node);
    }
}

// New strings are younger than all others, so only an age that is passed on makes another string the oldest.
void SortedWindow::RekeepRemoved(int node, bool isAgePassedOn) noexcept
{
    const int before = nodes_[node].before;
    for (std::uint32_t left = kept_; left != 0; left &= left - 1) {
        const int length = std::countr_zero(left);
        const int kept = oldest_[length];
        if (kept != node && (!isAgePassedOn || nodes_[kept].age < nodes_[before].age))
            continue;
        if (isAgePassedOn && Compare(text_ + before, kept).common >= length)
            oldest_[length] = static_cast<Link>(before);
        else if (kept == node)
            kept_ &= ~(1U << length);
    }
}

// From the last signpost that is not larger, or from the small end. A long way gets new signposts, so that walks cost
// less than the insertions that made them long.
void SortedWindow::FindFromPosts(const unsigned char* text, Place& place) noexcept
{
    const int count = CountPostsUpTo(text);
    place = {kEnds + *text, 0, 0, 0};
    if (count > firstPost_[*text]) {
        place.before = posts_[count - 1];
        place.commonBefore = Compare(text, place.before).common;
    }
    while (!WalkUp(text, place, kStepsToPost)) {
        if (!isPost_[place.before])
            AddPost(place.before);
    }
}

int SortedWindow::CountPostsUpTo(const unsigned char* text) const noexcept
{
    const auto isUpTo = [&](Link post) { return !Compare(text, post).isLess; };
    return static_cast<int>(std::partition_point(posts_ + firstPost_[*text], posts_ + firstPost_[*text + 1], isUpTo) -
                            posts_);
}

void SortedWindow::AddPost(int position) noexcept
{
    Link* place = posts_ + CountPostsUpTo(text_ + position);
    std::copy_backward(place, posts_ + firstPost_[256], posts_ + firstPost_[256] + 1);
    *place = static_cast<Link>(position);
    isPost_[position] = true;
    for (int byte = text_[position] + 1; byte <= 256; ++byte)
        ++firstPost_[byte];
}

// To the string that takes over the place of an equal one.
void SortedWindow::HandPostTo(int position, int old) noexcept
{
    posts_[CountPostsUpTo(text_ + old) - 1] = static_cast<Link>(position);
    isPost_[old] = false;
    isPost_[position] = true;
}

// To the next string, unless that is a signpost too.
void SortedWindow::PassPostOn(int position) noexcept
{
    Link* place = posts_ + CountPostsUpTo(text_ + position) - 1;
    const Link next = nodes_[position].after;
    isPost_[position] = false;
    if (!IsEnd(next) && !isPost_[next]) {
        *place = next;
        isPost_[next] = true;
        return;
    }
    std::copy(place + 1, posts_ + firstPost_[256], place);
    for (int byte = text_[position] + 1; byte <= 256; ++byte)
        --firstPost_[byte];
}

} // namespace zn
