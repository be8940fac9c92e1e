#include "Zn_VariantList.h"

#include "values/object_double.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

Zn_VariantList Numbers(std::initializer_list<int> values)
{
    Zn_VariantList list;
    for (const int value : values)
        list.Add(Zn_Variant(value));
    return list;
}

std::string TextOf(const Zn_VariantList& list)
{
    return std::string(Zn_Variant(list).ToAString(65001).GetView());
}

// An array in an array, and so on.
Zn_Variant Nested(int depth)
{
    Zn_Variant value(7);
    for (int i = 0; i < depth; ++i) {
        Zn_VariantList list;
        Zn_Variant* item = list.NewItem();
        *item = std::move(value);
        list.AddLink(item);
        value.type = Zn_Variant::Array;
        *value.GetArray() = std::move(list);
    }
    return value;
}

TEST(Zn_VariantList, LookUps)
{
    Zn_VariantList list = Numbers({1, 2});
    EXPECT_EQ(list.GetItem(1)->ToInteger(), 2);
    EXPECT_EQ(list[0], list.GetItem(0));
    for (const int index : {-1, 2, 5}) {
        EXPECT_EQ(list.GetItem(index), nullptr);
        EXPECT_EQ(list[index], nullptr);
        EXPECT_EQ(list.GetSafeItem(index, 0), nullptr);
        EXPECT_EQ(list.GetItemNN(index), &Zn_Variant::_ZnNullVariant);
    }
    EXPECT_EQ(Zn_Variant::_ZnNullVariant.type, 0);
    Zn_VariantList zeros;
    EXPECT_EQ(zeros.Add(0), 0) << "a literal 0 is a number, no pointer";
    EXPECT_EQ(zeros.Insert(0, 0) + zeros.Set(1, 0), 1);
    EXPECT_EQ(zeros.Add(nullptr) + zeros.Insert(0, nullptr) + zeros.Set(0, nullptr), -3);
    EXPECT_EQ(TextOf(zeros), "[0,0]");
    *list.GetSafeItem(3, 1) = 4;
    EXPECT_EQ(TextOf(list), "[1,2,,4]");
    EXPECT_EQ(list.Set(6, Zn_Variant(7), 1), 6);
    EXPECT_EQ(list.GetItem(5), nullptr) << "grown with absent places";
    EXPECT_EQ(TextOf(list), "[1,2,,4,,,7]");
    EXPECT_EQ(list.Set(9, Zn_Variant(7)), -1);
    EXPECT_EQ(list.FindItem(list.GetItem(0)), -1) << "variants have no order as items";
    int sum = 0;
    for (const Zn_Variant& item : list)
        sum += item.ToInteger();
    EXPECT_EQ(sum, 14);
}

TEST(Zn_VariantList, AssignAndAppend)
{
    const Zn_VariantList source = Numbers({1, 2});
    Zn_VariantList list = Numbers({9});
    EXPECT_EQ(list.Assign(nullptr) + list.Append(nullptr), 2);
    EXPECT_EQ(list.Append(&source), 3);
    list += source;
    EXPECT_EQ(TextOf(list), "[9,1,2,1,2]");
    list = &source;
    list += list;
    EXPECT_EQ(list.Assign(&list), 4);
    EXPECT_EQ(TextOf(list), "[1,2,1,2]");
}

TEST(Zn_VariantList, CopiesAreDeep)
{
    Zn_VariantList inner = Numbers({1});
    Zn_VariantList list;
    list.Add(Zn_Variant(inner));
    Zn_Variant source(list);
    Zn_Variant copy(source);
    *copy.GetArray()->GetSafeItem(0)->GetArray()->GetSafeItem(0) = 5;
    copy.GetArray()->Add(Zn_Variant(u"x"));
    EXPECT_EQ(source.ToAString(0), "[[1]]");
    EXPECT_EQ(copy.ToAString(0), "[[5],x]");
    source = *source.GetArray()->GetItem(0); // a part of itself
    EXPECT_EQ(source.ToAString(0), "[1]");
    source.Set(*source.GetArray());
    EXPECT_EQ(source.ToAString(0), "[1]");
}

TEST(Zn_VariantList, NestingTakesNoStack)
{
    const int depth = 1000000;
    Zn_Variant value = Nested(depth);
    Zn_VariantList list;
    list.Add(value);
    list.Add(Zn_Variant(1));
    value.Clear();
    EXPECT_EQ(list.GetItem(0)->ToString().GetLength(), 3 * depth + 1);
    Zn_VariantList twice;
    twice.Add(Zn_Variant(Nested(1000)));
    twice += twice;
    EXPECT_EQ(TextOf(twice).size(), 2u * 2001 + 3);
}

// An object's answer is asked for while an array is copied; what it copies itself must be whole at once.
TEST(Zn_VariantList, CopiesInsideACopy)
{
    struct Copying : ContextDouble {
        Zn_Variant array = Zn_Variant(Numbers({1, 2, 3}));
        int seen = 0;
        Zn_VarObjectBase* GetContainerObject(Zn_VarObjectBase*) override
        {
            const Zn_Variant copy(array);
            seen += copy.GetConstArray()->Count();
            return nullptr;
        }
    } context;
    ObjectDouble object(u"o", -1);
    Zn_Variant reference;
    reference.SetObject(&context, nullptr, &object);
    Zn_VariantList inner;
    inner.Add(reference);
    Zn_VariantList list;
    list.Add(Zn_Variant(inner));
    const int before = context.seen / 3;
    EXPECT_GT(before, 0);
    const Zn_VariantList copy(list);
    EXPECT_EQ(context.seen % 3, 0);
    EXPECT_GT(context.seen / 3, before);
}

} // namespace
