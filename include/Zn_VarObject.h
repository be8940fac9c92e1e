// Objects that an application lends to variants: things with an id, properties, methods and items.
//
// The application derives its objects from Zn_VarObjectBase and what owns them from Zn_VarObjectCtx; the
// library implements none. Zn_VarObject is the reference that a variant of type object holds.
//
//     class Clock : public Zn_VarObjectBase { ... };
//     Zn_Variant now;
//     now.SetObject(nullptr, nullptr, new Clock);     // counted: the last reference deletes it
//     Zn_WString text = now.ToString();               // the value of its default property
//
// A reference counts its object unless the object is the reference's component or the context's own
// container object; those are borrowed. An application registers a context while it lives, so that IsValid
// tells references that outlived theirs. Nothing throws; a call on no object answers code -1, null,
// 0 or the empty text. An object and its references are used by one thread at a time.
#pragma once

#include "Zn_Base.h"
#include "Zn_Result.h"
#include "Zn_WString.h"

#include <atomic>

class Zn_Variant;
class Zn_VariantList;
class Zn_VarObjectBase;

class ZN_API Zn_VarObjectCtx {
public:
    // Whether a component still exists.
    virtual int IsValidComponent(Zn_VarObjectBase* component) = 0;
    // The object that contains a component; for null the context's own object.
    virtual Zn_VarObjectBase* GetContainerObject(Zn_VarObjectBase* component) = 0;

    // 1, or 0 when it is registered already, or not registered.
    static int RegisterContainer(Zn_VarObjectCtx* context);
    static int UnRegisterContainer(Zn_VarObjectCtx* context);
    static int IsValid(Zn_VarObjectCtx* context);

    virtual ~Zn_VarObjectCtx();
};

class ZN_API Zn_VarObjectBase {
public:
    Zn_VarObjectBase() noexcept = default;
    Zn_VarObjectBase(const Zn_VarObjectBase&) = delete;
    Zn_VarObjectBase& operator=(const Zn_VarObjectBase&) = delete;
    virtual ~Zn_VarObjectBase();

    virtual Zn_VarObjectCtx* GetContainedContext() = 0;
    virtual Zn_WString GetID() = 0;
    // Code 0 means that value was filled. args may be null.
    virtual Zn_Result GetProperty(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                                  Zn_Variant& value) = 0;
    virtual Zn_Result SetProperty(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                                  const Zn_Variant& value) = 0;
    virtual Zn_Result CallMethod(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                                 Zn_Variant& result) = 0;
    // Places in the table of operations that the library never calls.
    virtual int Reserved6() = 0;
    virtual int Reserved7() = 0;
    // Name of the property that stands for the object's value; null when it has none.
    virtual const char16_t* GetDefaultProp() = 0;
    virtual int GetItemCount() = 0;
    virtual Zn_Result GetItem(int index, Zn_Variant& value) = 0;
    virtual Zn_Result GetItem(const Zn_WString& name, Zn_Variant& value) = 0;
    virtual int GetType() = 0;
    virtual void* GetInnerObject() = 0;

    // Both return the count left. Release deletes the object when it takes the last reference away; a count of 0,
    // and a negative one, which marks an object whose lifetime is not counted, stay as they are.
    int AddRef() noexcept;
    int Release() noexcept;

protected:
    // Starts with a count: -1 for an object that references never delete.
    explicit Zn_VarObjectBase(int refs) noexcept : refs_(refs) {}

private:
    std::atomic<std::int32_t> refs_{0};
};

// An object pointer that may be null; every call forwards to the object.
class ZN_API Zn_VarObjectWrapper {
public:
    Zn_VarObjectWrapper() noexcept = default;
    explicit Zn_VarObjectWrapper(Zn_VarObjectBase* object) noexcept : object_(object) {}

    Zn_VarObjectCtx* GetContainedContext() const;
    Zn_WString GetID() const;
    Zn_Result GetProperty(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                          Zn_Variant& value) const;
    Zn_Result SetProperty(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                          const Zn_Variant& value) const;
    Zn_Result CallMethod(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                         Zn_Variant& result) const;
    const char16_t* GetDefaultProp() const;
    int GetItemCount() const;
    Zn_Result GetItem(int index, Zn_Variant& value) const;
    Zn_Result GetItem(const Zn_WString& name, Zn_Variant& value) const;
    int GetType() const;
    void* GetInnerObject() const;

protected:
    Zn_VarObjectBase* object_ = nullptr;
};

class ZN_API Zn_VarObject : public Zn_VarObjectWrapper {
public:
    Zn_VarObject() noexcept = default;
    // NOLINTNEXTLINE(*-copy-constructor-init, *-redundant-member-init): the base cannot know what a copy counts
    Zn_VarObject(const Zn_VarObject& other) : Zn_VarObjectWrapper() { Set(&other); }
    Zn_VarObject& operator=(const Zn_VarObject& other)
    {
        Set(&other);
        return *this;
    }
    ~Zn_VarObject() { Clear(); }

    // The component stands for the object when that is null. Null for both leaves a reference to nothing.
    void Set(Zn_VarObjectCtx* context, Zn_VarObjectBase* component, Zn_VarObjectBase* object);
    void Set(const Zn_VarObject& other) { Set(&other); }
    // Null clears; this reference itself changes nothing.
    void Set(const Zn_VarObject* other);
    void Clear();
    // Change the pointer only, no count.
    void SetContext(Zn_VarObjectCtx* context) noexcept { context_ = context; }
    void SetComponent(Zn_VarObjectBase* component) noexcept { component_ = component; }

    Zn_VarObjectCtx* GetContext() const noexcept { return context_; }
    Zn_VarObjectBase* GetObject() const noexcept { return object_; }
    // The component, or else the context's own object, or null.
    Zn_VarObjectBase* GetComponent() const;
    // 0 when all three pointers are the same and the ids are equal without regard to case, else 1.
    int Compare(const Zn_VarObject* other) const;
    // 0 when the context is not registered any more or says that the component is gone.
    int IsValid() const;

private:
    bool IsCounted() const;
    void Assign(Zn_VarObjectCtx* context, Zn_VarObjectBase* component, Zn_VarObjectBase* object);

    Zn_VarObjectCtx* context_ = nullptr;
    Zn_VarObjectBase* component_ = nullptr;
};
