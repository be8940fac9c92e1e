#include "Zn_Message.h"

#include <algorithm>
#include <limits>

void Zn_Message::Clear()
{
    code = 0;
    params.Clear();
}

void Zn_Message::SetHeader(int time, const char* source, int line)
{
    time_ = time;
    source_ = source;
    line_ = line;
}

int Zn_MessageHandler::_CompareItem(void* a, void* b)
{
    using Limits = std::numeric_limits<int>;
    const std::int64_t left = static_cast<const Zn_Message*>(a)->code;
    const std::int64_t right = static_cast<const Zn_Message*>(b)->code;
    return static_cast<int>(std::clamp<std::int64_t>(left - right, Limits::min(), Limits::max()));
}

Zn_MessageHandler& Zn_MessageHandler::Instance()
{
    return Zn_Global<Zn_MessageHandler>();
}

const Zn_Message& Zn_MessageHandler::EmptyItem()
{
    return Zn_Global<Zn_Message>();
}
