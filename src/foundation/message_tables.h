// The tables that the build makes of the data files in messages/.
#pragma once

#include "Zn_ErrorMsg.h"

namespace zn::messages {

extern const Zn_ErrorMsgRow kDefaultTable[];
extern const Zn_ErrorMsgLanguage kLanguages[];
// Some rows of the default table are Korean; read with this code page all of its rows come out right.
inline constexpr unsigned kDefaultTableCodePage = 949;

} // namespace zn::messages
