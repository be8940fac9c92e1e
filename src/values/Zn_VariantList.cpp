#include "Zn_VariantList.h"

int Zn_VariantHandler::_CompareItem(void*, void*)
{
    return -1;
}

Zn_VariantHandler& Zn_VariantHandler::Instance()
{
    return Zn_Global<Zn_VariantHandler>();
}
