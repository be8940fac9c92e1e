// What an operator works on: the operand itself, or what stands for an object.
#pragma once

#include "values/default_property.h"
#include "values/variant_types.h"

namespace zn {

// An object is replaced by the value of its default property, whatever the property's result says; one
// without a default property stays. Only one step is taken: a value that is again an object stays one.
class Operand {
public:
    explicit Operand(const Zn_Variant& value) : value_(&value)
    {
        if (value.type != Zn_Variant::Object)
            return;
        const DefaultProperty outcome = ReadDefaultProperty(value, replaced_);
        if (outcome == DefaultProperty::Read || outcome == DefaultProperty::Failed)
            value_ = &replaced_;
    }
    Operand(const Operand&) = delete;
    Operand& operator=(const Operand&) = delete;

    const Zn_Variant& operator*() const noexcept { return *value_; }
    const Zn_Variant* operator->() const noexcept { return value_; }

private:
    const Zn_Variant* value_;
    Zn_Variant replaced_;
};

} // namespace zn
