#include "terminal.h"

#include <cstdlib>

#if defined(_WIN32)
#    include <fcntl.h>
#    include <io.h>
#else
#    include <unistd.h>
#endif

namespace zntool {

#if defined(_WIN32)
bool IsTerminal(std::FILE* stream)
{
    return _isatty(_fileno(stream)) != 0;
}
void MakeBinary(std::FILE* stream)
{
    _setmode(_fileno(stream), _O_BINARY);
}
#else
bool IsTerminal(std::FILE* stream)
{
    return isatty(fileno(stream)) != 0;
}
void MakeBinary(std::FILE*) {}
#endif

bool WantsColour(std::FILE* stream)
{
    const char* refused = std::getenv("NO_COLOR");
    return IsTerminal(stream) && (!refused || !*refused);
}

} // namespace zntool
