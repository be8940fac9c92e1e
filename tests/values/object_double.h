// Objects for tests: what they answer is set by the test, and they count how many of them live.
#pragma once

#include "Zn_VarObject.h"
#include "Zn_VariantList.h"

class ObjectDouble : public Zn_VarObjectBase {
public:
    static inline int alive = 0;

    explicit ObjectDouble(const char16_t* objectId = u"obj", int refs = 0) : Zn_VarObjectBase(refs), id(objectId)
    {
        ++alive;
    }
    ~ObjectDouble() override { --alive; }

    Zn_WString id;
    const char16_t* defaultName = u"value"; // null for none
    Zn_Variant value;                       // of every property, and what SetProperty stores
    int code = 0;                           // of every result
    bool givesItself = false;               // as the value of every property
    int reads = 0;

    Zn_VarObjectCtx* GetContainedContext() override { return context; }
    Zn_WString GetID() override { return id; }
    Zn_Result GetProperty(Zn_VarObjectCtx* from, const char16_t* name, const Zn_VariantList*, Zn_Variant& out) override
    {
        context = from;
        lastName = name;
        ++reads;
        if (givesItself)
            out.SetObject(nullptr, this, this);
        else
            out = value;
        return code;
    }
    Zn_Result SetProperty(Zn_VarObjectCtx*, const char16_t* name, const Zn_VariantList*, const Zn_Variant& in) override
    {
        lastName = name;
        value = in;
        return code;
    }
    Zn_Result CallMethod(Zn_VarObjectCtx*, const char16_t* name, const Zn_VariantList* args, Zn_Variant& out) override
    {
        lastName = name;
        out = args ? args->Count() : -1;
        return code;
    }
    int Reserved6() override { return 0; }
    int Reserved7() override { return 0; }
    const char16_t* GetDefaultProp() override { return defaultName; }
    int GetItemCount() override { return 7; }
    Zn_Result GetItem(int index, Zn_Variant& out) override
    {
        out = index;
        return code;
    }
    Zn_Result GetItem(const Zn_WString& name, Zn_Variant& out) override
    {
        out = name;
        return code;
    }
    int GetType() override { return 9; }
    void* GetInnerObject() override { return this; }

    Zn_VarObjectCtx* context = nullptr; // the last one passed in
    Zn_WString lastName;
};

class ContextDouble : public Zn_VarObjectCtx {
public:
    Zn_VarObjectBase* container = nullptr;
    int componentValid = 1;

    int IsValidComponent(Zn_VarObjectBase*) override { return componentValid; }
    Zn_VarObjectBase* GetContainerObject(Zn_VarObjectBase*) override { return container; }
};
