#include "values/default_property.h"

#include "Zn_VarObject.h"

#include <utility>

namespace zn {

DefaultProperty ReadDefaultProperty(const Zn_Variant& object, Zn_Variant& value)
{
    const Zn_VarObject& reference = *object.GetConstObject();
    if (!reference.GetObject())
        return DefaultProperty::NoObject;
    const char16_t* name = reference.GetDefaultProp();
    if (!name)
        return DefaultProperty::NoName;
    const int code = reference.GetProperty(reference.GetContext(), name, nullptr, value);
    return code == 0 ? DefaultProperty::Read : DefaultProperty::Failed;
}

bool FollowDefaultProperty(const Zn_Variant& object, Zn_Variant& value)
{
    Zn_Variant from = object;
    for (int step = 0; step < kMaxDefaultSteps; ++step) {
        value.Clear();
        if (ReadDefaultProperty(from, value) != DefaultProperty::Read)
            return false;
        if (value.type != Zn_Variant::Object)
            return true;
        from = std::move(value);
    }
    return false;
}

} // namespace zn
