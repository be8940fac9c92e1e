// A path of the library as the platform takes it.
#pragma once

#include "Zn_AString.h"
#include "Zn_TypedList.h"

#include "platform/files.h"

namespace zn {

// Converts at once and lives as long as the call. A path that the platform can't have - an empty one, one with a
// terminator in it, one with a character that the locale's code page lacks - is refused by every call with error 123:
// another file must not be touched instead.
class NativePath {
public:
    explicit NativePath(Zn_NameArg path);

    operator platform::PathText() const noexcept;

private:
    Zn_WString wide_;
    Zn_AString bytes_;
    bool usable_ = false;
};

// The name of a file as the platform gives it.
Zn_WString NameOf(const platform::FolderSearch::Name& name);

} // namespace zn
