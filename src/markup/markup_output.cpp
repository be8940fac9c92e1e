#include "markup_output.h"

#include "foundation/utf8.h"

#include "Zn_CodePage.h"

namespace zn {

namespace {

// Appends a finished body to a target, or makes it the target when that is empty.
template <class Target>
void Deliver(Target& body, Target& target)
{
    if (target.GetLength() == 0)
        target = std::move(body);
    else
        Append(target, body);
    body = Target();
}

} // namespace

void WideOutput::PutEscaped(std::u16string_view text) noexcept
{
    AppendXml(text, *this);
}

bool WideOutput::AppendTo(Zn_WString& target) noexcept
{
    if (HasFailed())
        return false;
    Deliver(TakeBody(), target);
    return true;
}

} // namespace zn
