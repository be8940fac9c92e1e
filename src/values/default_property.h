// The value that stands for an object: that of its default property. One home for the conversions
// and the operators.
#pragma once

#include "Zn_Variant.h"

namespace zn {

enum class DefaultProperty {
    NoObject, // the variant refers to no object
    NoName,   // the object has no default property
    Failed,   // reading it gave a code other than 0
    Read,
};

// An object whose default property is an object again is followed that many times, no further.
constexpr int kMaxDefaultSteps = 32;

// One step: reads the default property of a variant of type object into value, which is filled as far as
// the object did it, also when reading failed.
DefaultProperty ReadDefaultProperty(const Zn_Variant& object, Zn_Variant& value);

// Every step: follows default properties to a value that is no object; false when there is none.
bool FollowDefaultProperty(const Zn_Variant& object, Zn_Variant& value);

} // namespace zn
