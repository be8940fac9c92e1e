#include "Zn_Base.h"

#include "platform/platform.h"

int zn_getlasterror() noexcept
{
    return zn::platform::LastError();
}
