#include "Zn_VarObject.h"

#include "Zn_PtrList.h"
#include "Zn_Text.h"
#include "Zn_TypedList.h"
#include "Zn_Variant.h"

#include <mutex>

namespace {

// The contexts that live now.
struct ContextRegistry {
    std::mutex lock;
    Zn_PtrList contexts;
};

ContextRegistry& Registry()
{
    return Zn_Global<ContextRegistry>();
}

} // namespace

int Zn_VarObjectCtx::RegisterContainer(Zn_VarObjectCtx* context)
{
    ContextRegistry& registry = Registry();
    const std::lock_guard guard(registry.lock);
    if (registry.contexts.IndexOf(context) >= 0)
        return 0;
    return registry.contexts.Add(context) >= 0;
}

int Zn_VarObjectCtx::UnRegisterContainer(Zn_VarObjectCtx* context)
{
    ContextRegistry& registry = Registry();
    const std::lock_guard guard(registry.lock);
    const int index = registry.contexts.IndexOf(context);
    return index >= 0 ? registry.contexts.Delete(index) : 0;
}

int Zn_VarObjectCtx::IsValid(Zn_VarObjectCtx* context)
{
    ContextRegistry& registry = Registry();
    const std::lock_guard guard(registry.lock);
    return registry.contexts.IndexOf(context) >= 0;
}

Zn_VarObjectCtx::~Zn_VarObjectCtx() = default;

Zn_VarObjectBase::~Zn_VarObjectBase() = default;

int Zn_VarObjectBase::AddRef() noexcept
{
    const int refs = refs_.load(std::memory_order_relaxed);
    return refs < 0 ? refs : refs_.fetch_add(1, std::memory_order_relaxed) + 1;
}

int Zn_VarObjectBase::Release() noexcept
{
    const int refs = refs_.load(std::memory_order_relaxed);
    if (refs <= 0)
        return refs;
    const int left = refs_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0)
        delete this;
    return left;
}

Zn_VarObjectCtx* Zn_VarObjectWrapper::GetContainedContext() const
{
    return object_ ? object_->GetContainedContext() : nullptr;
}

Zn_WString Zn_VarObjectWrapper::GetID() const
{
    return object_ ? object_->GetID() : Zn_WString();
}

Zn_Result Zn_VarObjectWrapper::GetProperty(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                                           Zn_Variant& value) const
{
    return object_ ? object_->GetProperty(context, name, args, value) : Zn_Result(-1);
}

Zn_Result Zn_VarObjectWrapper::SetProperty(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                                           const Zn_Variant& value) const
{
    return object_ ? object_->SetProperty(context, name, args, value) : Zn_Result(-1);
}

Zn_Result Zn_VarObjectWrapper::CallMethod(Zn_VarObjectCtx* context, const char16_t* name, const Zn_VariantList* args,
                                          Zn_Variant& result) const
{
    return object_ ? object_->CallMethod(context, name, args, result) : Zn_Result(-1);
}

const char16_t* Zn_VarObjectWrapper::GetDefaultProp() const
{
    return object_ ? object_->GetDefaultProp() : nullptr;
}

int Zn_VarObjectWrapper::GetItemCount() const
{
    return object_ ? object_->GetItemCount() : 0;
}

Zn_Result Zn_VarObjectWrapper::GetItem(int index, Zn_Variant& value) const
{
    return object_ ? object_->GetItem(index, value) : Zn_Result(-1);
}

Zn_Result Zn_VarObjectWrapper::GetItem(const Zn_WString& name, Zn_Variant& value) const
{
    return object_ ? object_->GetItem(name, value) : Zn_Result(-1);
}

int Zn_VarObjectWrapper::GetType() const
{
    return object_ ? object_->GetType() : 0;
}

void* Zn_VarObjectWrapper::GetInnerObject() const
{
    return object_ ? object_->GetInnerObject() : nullptr;
}

bool Zn_VarObject::IsCounted() const
{
    if (!object_ || object_ == component_)
        return false;
    return component_ || !context_ || object_ != context_->GetContainerObject(nullptr);
}

void Zn_VarObject::Assign(Zn_VarObjectCtx* context, Zn_VarObjectBase* component, Zn_VarObjectBase* object)
{
    // The old object goes last: it may be the new one, or own what leads to it.
    Zn_VarObjectBase* old = IsCounted() ? object_ : nullptr;
    context_ = context;
    component_ = component;
    object_ = object;
    if (IsCounted())
        object_->AddRef();
    if (old)
        old->Release();
}

void Zn_VarObject::Set(Zn_VarObjectCtx* context, Zn_VarObjectBase* component, Zn_VarObjectBase* object)
{
    Assign(context, component, object ? object : component);
}

void Zn_VarObject::Set(const Zn_VarObject* other)
{
    if (!other)
        Clear();
    else if (other != this)
        Assign(other->context_, other->component_, other->object_);
}

void Zn_VarObject::Clear()
{
    Assign(nullptr, nullptr, nullptr);
}

Zn_VarObjectBase* Zn_VarObject::GetComponent() const
{
    if (component_)
        return component_;
    return context_ ? context_->GetContainerObject(nullptr) : nullptr;
}

int Zn_VarObject::Compare(const Zn_VarObject* other) const
{
    if (!other || context_ != other->context_ || component_ != other->component_ || object_ != other->object_)
        return 1;
    return zn_stricmpW(GetID(), other->GetID()) == 0 ? 0 : 1;
}

int Zn_VarObject::IsValid() const
{
    if (!context_)
        return 1;
    if (!Zn_VarObjectCtx::IsValid(context_))
        return 0;
    return component_ ? context_->IsValidComponent(component_) : 1;
}
