#include "Zn_VarObject.h"

#include "values/object_double.h"

#include <gtest/gtest.h>

namespace {

TEST(Zn_VarObjectBase, Counts)
{
    ObjectDouble uncounted(u"u", -1);
    EXPECT_EQ(uncounted.AddRef(), -1);
    EXPECT_EQ(uncounted.Release(), -1);

    auto* object = new ObjectDouble;
    EXPECT_EQ(object->Release(), 0);
    EXPECT_EQ(object->AddRef(), 1);
    EXPECT_EQ(object->AddRef(), 2);
    EXPECT_EQ(object->Release(), 1);
    EXPECT_EQ(ObjectDouble::alive, 2);
    EXPECT_EQ(object->Release(), 0);
    EXPECT_EQ(ObjectDouble::alive, 1);
}

TEST(Zn_VarObjectWrapper, ForwardsOrAnswersDefaults)
{
    ObjectDouble object(u"id");
    object.value = 5;
    const Zn_VariantList args;
    for (const bool empty : {false, true}) {
        const Zn_VarObjectWrapper wrapper(empty ? nullptr : &object);
        ContextDouble context;
        Zn_Variant value;
        const auto oneOf = [empty](auto full, auto none) { return empty ? none : full; };
        EXPECT_EQ(static_cast<int>(wrapper.GetProperty(&context, u"p", nullptr, value)), oneOf(0, -1));
        EXPECT_EQ(value.ToInteger(), oneOf(5, 0));
        EXPECT_EQ(wrapper.GetContainedContext(), oneOf(static_cast<Zn_VarObjectCtx*>(&context), nullptr));
        EXPECT_EQ(wrapper.GetID(), oneOf(u"id", u""));
        EXPECT_EQ(static_cast<int>(wrapper.SetProperty(&context, u"q", nullptr, value)), oneOf(0, -1));
        EXPECT_EQ(static_cast<int>(wrapper.CallMethod(&context, u"m", &args, value)), oneOf(0, -1));
        EXPECT_EQ(static_cast<int>(wrapper.GetItem(3, value)), oneOf(0, -1));
        EXPECT_EQ(value.ToInteger(), oneOf(3, 0));
        EXPECT_EQ(static_cast<int>(wrapper.GetItem(Zn_WString(u"n"), value)), oneOf(0, -1));
        EXPECT_EQ(value.ToString(), oneOf(u"n", u""));
        EXPECT_EQ(wrapper.GetItemCount(), oneOf(7, 0));
        EXPECT_EQ(wrapper.GetType(), oneOf(9, 0));
        EXPECT_EQ(wrapper.GetDefaultProp(), oneOf(object.defaultName, nullptr));
        EXPECT_EQ(wrapper.GetInnerObject(), oneOf(static_cast<void*>(&object), nullptr));
    }
    EXPECT_EQ(object.lastName, u"m");
}

// Which references count, by the three pointers: c is the context's own object.
TEST(Zn_VarObject, CountsOrBorrows)
{
    struct Row {
        const char* name;
        bool context, component, isComponent, isContainer;
        int counted;
    };
    const Row rows[] = {
        {"object alone", false, false, false, false, 1},
        {"component stands for it", true, true, true, false, 0},
        {"another object than the component", true, true, false, false, 1},
        {"the context's own object", true, false, false, true, 0},
        {"not the context's own object", true, false, false, false, 1},
        {"the context's own object, with a component", true, true, false, true, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ContextDouble context;
        ObjectDouble component;
        auto* object = new ObjectDouble;
        object->AddRef();
        context.container = row.isContainer ? object : nullptr;
        {
            Zn_VarObject reference;
            Zn_VarObjectBase* part = row.isComponent ? object : row.component ? &component : nullptr;
            reference.Set(row.context ? &context : nullptr, part, object);
            Zn_VarObject copy(reference), assigned;
            assigned = copy;
            assigned.Set(assigned.GetContext(), part, object); // its own object again
            assigned.Set(&assigned);
            EXPECT_EQ(object->AddRef(), 2 + 3 * row.counted);
            object->Release();
            EXPECT_EQ(copy.Compare(&assigned), 0);
            copy.Set(static_cast<const Zn_VarObject*>(nullptr));
            EXPECT_EQ(copy.GetObject(), nullptr);
            EXPECT_EQ(copy.Compare(&assigned), 1);
        }
        EXPECT_EQ(object->Release(), 0);
    }
    EXPECT_EQ(ObjectDouble::alive, 0);
}

TEST(Zn_VarObject, LastReferenceDeletes)
{
    Zn_VarObject reference;
    reference.Set(nullptr, nullptr, new ObjectDouble);
    reference.Set(nullptr, nullptr, reference.GetObject());
    EXPECT_EQ(ObjectDouble::alive, 1);
    Zn_VarObject copy(reference);
    reference.Clear();
    EXPECT_EQ(ObjectDouble::alive, 1);
    copy.Set(nullptr, nullptr, nullptr);
    EXPECT_EQ(ObjectDouble::alive, 0);
}

TEST(Zn_VarObject, PartsAndValidity)
{
    ContextDouble context;
    ObjectDouble own(u"own", -1), component(u"part", -1);
    context.container = &own;
    Zn_VarObject reference;
    EXPECT_EQ(reference.GetComponent(), nullptr);
    EXPECT_EQ(reference.IsValid(), 1) << "no context to ask";
    reference.Set(&context, nullptr, &own);
    EXPECT_EQ(reference.GetComponent(), &own);
    EXPECT_EQ(reference.IsValid(), 0) << "not registered";
    EXPECT_EQ(Zn_VarObjectCtx::RegisterContainer(&context), 1);
    EXPECT_EQ(Zn_VarObjectCtx::RegisterContainer(&context), 0);
    EXPECT_EQ(reference.IsValid(), 1);
    reference.SetComponent(&component);
    EXPECT_EQ(reference.GetComponent(), &component);
    context.componentValid = 0;
    EXPECT_EQ(reference.IsValid(), 0);
    EXPECT_EQ(Zn_VarObjectCtx::UnRegisterContainer(&context), 1);
    EXPECT_EQ(Zn_VarObjectCtx::UnRegisterContainer(&context), 0);
    EXPECT_EQ(Zn_VarObjectCtx::IsValid(&context), 0);

    reference.Set(&context, &component, nullptr);
    EXPECT_EQ(reference.GetObject(), &component) << "the component stands for the object";
    reference.SetContext(nullptr);
    EXPECT_EQ(reference.GetContext(), nullptr);
}

// An id that is spelled differently each time it is asked for.
TEST(Zn_VarObject, CompareIgnoresCaseOfIds)
{
    class Shifting : public ObjectDouble {
    public:
        using ObjectDouble::ObjectDouble;
        const char16_t* next = u"NAME";
        Zn_WString GetID() override { return std::exchange(next, u"name"); }
    } object(u"", -1);
    Zn_VarObject a, b;
    a.Set(nullptr, nullptr, &object);
    b = a;
    EXPECT_EQ(a.Compare(&b), 0);
    ContextDouble context;
    b.SetContext(&context);
    EXPECT_EQ(a.Compare(&b), 1);
    EXPECT_EQ(a.Compare(nullptr), 1);
    b.SetContext(nullptr);
}

} // namespace
