#include "Zn_IntList.h"
#include "Zn_PtrList.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<int> ValuesOf(const Zn_IntList& list)
{
    return {list.begin(), list.end()};
}

using Ints = std::vector<int>;

TEST(IntList, Edges)
{
    Zn_IntList list;
    EXPECT_EQ(list.Add(5), 0);
    EXPECT_EQ(list.Insert(-3, 4), 0);
    EXPECT_EQ(list.Insert(99, 6), 2);
    EXPECT_EQ(list.Insert(1, 7), 1);
    EXPECT_EQ(ValuesOf(list), (Ints{4, 7, 5, 6}));
    EXPECT_EQ(list.SetItem(1, 8), 1);
    EXPECT_EQ(list.SetItem(4, 8), -1);
    EXPECT_EQ(list.GetItem(1), 8);
    EXPECT_EQ(list.GetItem(4), 0);
    EXPECT_EQ(list.GetItem(-1), 0);
    EXPECT_EQ(list.Delete(4), 0);
    EXPECT_EQ(list.Delete(-1, 2), 0);
    EXPECT_EQ(list.Delete(0, 0), 0);
    EXPECT_EQ(list.Delete(2, 99), 2);
    EXPECT_EQ(ValuesOf(list), (Ints{4, 8}));
}

TEST(IntList, ResetCountsUp)
{
    Zn_IntList list, copy;
    list.Add(9);
    list.Reset(4);
    EXPECT_EQ(ValuesOf(list), (Ints{0, 1, 2, 3}));
    EXPECT_EQ(copy.AssignList(list), 4);
    EXPECT_EQ(copy.AssignList(copy), 4);
    list.Reset(-1);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(copy.Count(), 4);
}

TEST(PtrList, Edges)
{
    int a = 0, b = 0, c = 0;
    Zn_PtrList list;
    EXPECT_EQ(list.Add(&a), 0);
    EXPECT_EQ(list.Add(&b), 1);
    EXPECT_EQ(list.Add(nullptr), 2);
    EXPECT_EQ(list.Add(&a), 3);
    EXPECT_EQ(list.IndexOf(&a), 0);
    EXPECT_EQ(list.IndexOf(nullptr), 2);
    EXPECT_EQ(list.IndexOf(&c), -1);
    EXPECT_EQ(list.Items(1), &b);
    EXPECT_EQ(list.GetItem(4), nullptr);
    EXPECT_EQ(list.GetItem(-1), nullptr);
    EXPECT_EQ(list.Delete(1, 2), 2);
    EXPECT_EQ(list.IndexOf(&b), -1);
    EXPECT_EQ(list.Delete(1, 9), 1);
    EXPECT_EQ(list.Count(), 1);
}

} // namespace
