// What an operator works on: the operand itself, or what stands for an object.
#pragma once

#include "Zn_VarObject.h"
#include "Zn_Variant.h"

namespace zn {

inline bool IsAbsent(const Zn_Variant& value) noexcept
{
    return value.type == Zn_Variant::Empty || value.type == Zn_Variant::Null;
}

// An object is replaced by the value of its default property, whatever the property's result says; one
// without a default property stays. Only one step is taken: a value that is again an object stays one.
class Operand {
public:
    explicit Operand(const Zn_Variant& value) : value_(&value)
    {
        if (value.type == Zn_Variant::Object)
            Resolve(*value.GetConstObject());
    }
    Operand(const Operand&) = delete;
    Operand& operator=(const Operand&) = delete;

    const Zn_Variant& operator*() const noexcept { return *value_; }
    const Zn_Variant* operator->() const noexcept { return value_; }

private:
    void Resolve(const Zn_VarObject& object)
    {
        const char16_t* name = object.GetDefaultProp();
        if (!name)
            return;
        object.GetProperty(object.GetContext(), name, nullptr, replaced_);
        value_ = &replaced_;
    }

    const Zn_Variant* value_;
    Zn_Variant replaced_;
};

} // namespace zn
