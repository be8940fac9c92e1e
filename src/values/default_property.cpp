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
    value.Clear();
    for (int step = 0; step < kMaxDefaultSteps; ++step) {
        Zn_Variant next;
        if (ReadDefaultProperty(from, next) != DefaultProperty::Read)
            return false;
        if (next.type != Zn_Variant::Object) {
            value = std::move(next);
            return true;
        }
        from = std::move(next);
    }
    return false;
}

} // namespace zn
