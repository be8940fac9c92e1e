// Texts of the system errors that calls of this library end with, the same on every platform.
#include "Zn_ErrorMsg.h"
#include "platform/platform.h"

#include <algorithm>

namespace {

struct ErrorText {
    int number;
    const char16_t* text;
};

constexpr ErrorText kTexts[] = {
    {0, u"No error."},
    {2, u"The file was not found."},
    {3, u"The path was not found."},
    {4, u"Too many files are open."},
    {5, u"Access is denied."},
    {6, u"The handle is not valid."},
    {8, u"There is not enough memory."},
    {17, u"The file cannot be moved to another disk."},
    {19, u"The disk is write protected."},
    {22, u"The device does not know the command."},
    {31, u"The device does not work."},
    {32, u"Another process is using the file."},
    {33, u"Another process has locked a part of the file."},
    {50, u"The request is not supported."},
    {80, u"The file already exists."},
    {87, u"A parameter is not valid."},
    {109, u"The pipe is broken."},
    {112, u"The disk is full."},
    {122, u"The data area is too small."},
    {123, u"The name is not valid."},
    {131, u"The file position is before the start of the file."},
    {145, u"The folder is not empty."},
    {156, u"The thread is suspended too many times."},
    {183, u"The file or folder already exists."},
    {206, u"The name is too long."},
    {223, u"The file is too large."},
    {258, u"The wait timed out."},
    {267, u"The name does not lead to a folder."},
    {995, u"The operation was cancelled."},
    {998, u"The memory cannot be accessed."},
    {1117, u"The device reported an input or output error."},
    {1921, u"The name leads through too many links."},
    {10004, u"The call was interrupted."},
    {10013, u"Access to the socket is denied."},
    {10014, u"The memory cannot be accessed."},
    {10022, u"The call does not suit the state of the socket."},
    {10024, u"Too many sockets are open."},
    {10035, u"The socket has nothing to give or take at the moment."},
    {10036, u"The operation is in progress."},
    {10037, u"The operation is in progress already."},
    {10038, u"The handle is no socket."},
    {10039, u"A destination address is missing."},
    {10040, u"The datagram is too long."},
    {10041, u"The protocol does not suit the socket."},
    {10042, u"The option is unknown to the protocol."},
    {10043, u"The protocol is not supported."},
    {10045, u"The socket does not support the operation."},
    {10047, u"The kind of address is not supported."},
    {10048, u"The address is in use."},
    {10049, u"The address is not available on this machine."},
    {10050, u"The network is down."},
    {10051, u"The network cannot be reached."},
    {10052, u"The network dropped the connection."},
    {10053, u"The connection was aborted on this machine."},
    {10054, u"The other side closed the connection."},
    {10055, u"The system has no room for more network data."},
    {10056, u"The socket is already connected."},
    {10057, u"The socket is not connected."},
    {10058, u"The socket is shut down."},
    {10060, u"The connection timed out."},
    {10061, u"The other side refused the connection."},
    {10065, u"The host cannot be reached."},
    {10093, u"The network is not started."},
    {11001, u"The host is unknown."},
    {11002, u"The name server gave no answer."},
    {11003, u"The name server failed."},
};
static_assert(std::ranges::is_sorted(kTexts, {}, &ErrorText::number));

} // namespace

Zn_WString ZnSysErrorStr(int err)
{
    const auto* own = std::ranges::lower_bound(kTexts, err, {}, &ErrorText::number);
    if (own != std::end(kTexts) && own->number == err)
        return Zn_WString(own->text);
    char16_t text[512];
    const std::size_t length = zn::platform::ErrorText(err, text, std::size(text));
    return length > 0 ? Zn_WString(text, static_cast<int>(length)) : Zn_WString(u"Unknown error.");
}

const char16_t* ZnSysErrorStr(int err, Zn_WString& out)
{
    out.Empty();
    out += err;
    out += u":";
    out += ZnSysErrorStr(err);
    return out.GetText();
}

char16_t* zn_syserrstr(int err, char16_t* buffer, int size) noexcept
{
    if (!buffer || size < 1)
        return nullptr;
    Zn_WString text;
    ZnSysErrorStr(err, text);
    const int length = std::min(text.GetLength(), size - 1);
    std::copy_n(text.GetText(), length, buffer);
    buffer[length] = 0;
    return text.IsEmpty() ? nullptr : buffer;
}
