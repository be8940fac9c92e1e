#include "Zn_CodeStr.h"

int Zn_CodeStr::Compare(const Zn_CodeStr& other) const noexcept
{
    if (code_ == other.code_)
        return str_.Compare(other.str_);
    return static_cast<int>(static_cast<std::uint32_t>(code_) - static_cast<std::uint32_t>(other.code_));
}

int Zn_CodeStrHandler::_CompareItem(void* a, void* b)
{
    return static_cast<const Zn_CodeStr*>(a)->CompareCode(static_cast<const Zn_CodeStr*>(b)->Code());
}

Zn_CodeStrHandler& Zn_CodeStrHandler::Instance()
{
    return Zn_Global<Zn_CodeStrHandler>();
}

const Zn_CodeStr& Zn_CodeStrHandler::EmptyItem()
{
    return Zn_Global<Zn_CodeStr>();
}

int Zn_CodeStrList::FindCode(int code) const noexcept
{
    for (int i = 0, n = Count(); i < n; ++i) {
        const Zn_CodeStr* item = GetItem(i);
        if (item && item->Code() == code)
            return i;
    }
    return -1;
}

int Zn_CodeStrList::DelStr(int code)
{
    const int found = FindCode(code);
    if (found >= 0)
        Delete(found);
    return found;
}
