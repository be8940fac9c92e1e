#include "Zn_DatasetList.h"
#include "tables.h"

#include <gtest/gtest.h>

TEST(DatasetList, OneTablePerIdInIdOrder)
{
    Zn_DatasetList list;
    const Zn_Dataset two = MakeTable(2);
    const Zn_Dataset three = MakeTable(3);
    EXPECT_EQ(list.AddDataset(u"orders", &two), 0);
    EXPECT_EQ(list.AddDataset(u"ORDERS", &three), 0);
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list.GetItem(u"Orders")->GetRowCount(), 3);
    EXPECT_EQ(list.GetItem(0)->GetId(), u"orders") << "an id that is there stays";
    EXPECT_EQ(list.AddDataset(u"items", &two), 1) << "placed under its own id, then renamed";
    EXPECT_EQ(list.FindId(u"items"), 1);
    EXPECT_EQ(list.AddDataset(u"copy", list.GetItem(u"items")), 0);
    EXPECT_EQ(list.GetItem(u"items")->GetRowCount(), 2) << "the copy is a table of its own";
    EXPECT_EQ(list.DeleteDataset(u"copy"), 1);
    EXPECT_EQ(list.AddDataset(u"x", nullptr), -1);
    EXPECT_EQ(list.DeleteDataset(u"unknown"), -1);
    EXPECT_EQ(list.DeleteDataset(u"ORDERS"), 1);
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list[9]->GetRowCount(), 0);
}

TEST(DatasetList, SafeItems)
{
    Zn_DatasetList list;
    EXPECT_EQ(list.GetSafeItem(u"new", 0), nullptr);
    Zn_Dataset* made = list.GetSafeItem(u"new", 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetId(), u"new");
    EXPECT_EQ(list.GetSafeItem(u"NEW", 1), made);
    EXPECT_EQ(list.GetSafeItem(3, 0), nullptr);
    ASSERT_NE(list.GetSafeItem(3, 1), nullptr);
    EXPECT_EQ(list.Count(), 4);

    Zn_DatasetList copy(list);
    copy.GetSafeItem(u"new", 0)->AddColumn(u"c");
    EXPECT_EQ(made->GetColCount(), 0);
}
