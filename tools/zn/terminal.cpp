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

void WriteError(const std::string& text)
{
    static_cast<void>(std::fputs(text.c_str(), stderr));
    static_cast<void>(std::fflush(stderr));
}

bool WantsColour(std::FILE* stream)
{
    const char* refused = std::getenv("NO_COLOR");
    return IsTerminal(stream) && (!refused || !*refused);
}

} // namespace zntool
