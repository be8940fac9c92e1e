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

int SortedWindow::MatchPosition() const noexcept
{
    int oldest = akin_;
    if (common_ == kLongestMatch)
        return oldest;
    const auto consider = [&](int node) {
        if (IsEnd(node) || Compare(text_ + last_, node).common < common_)
            return false;
        if (nodes_[node].age < nodes_[oldest].age)
            oldest = node;
        return true;
    };
    for (int node = nodes_[last_].before; consider(node);)
        node = nodes_[node].before;
    for (int node = nodes_[last_].after; consider(node);)
        node = nodes_[node].after;
    return oldest;
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
