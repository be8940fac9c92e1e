#include "platform/platform.h"

#include "platform/keep_errno.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cuchar>
#include <new>
#include <span>
#include <string>
#include <system_error>

namespace zn::platform {

namespace {

struct ErrorPair {
    int system;
    int windows;
};

// Numbers of the Windows system errors (below 10000) and of its sockets (from 10000 on).
constexpr ErrorPair kErrors[] = {
    {ENOENT, 2},           // file not found
    {ENOTDIR, 3},          // path not found
    {EMFILE, 4},           // too many open files
    {ENFILE, 4},           //
    {EACCES, 5},           // access denied
    {EPERM, 5},            //
    {EISDIR, 5},           //
    {EBADF, 6},            // invalid handle
    {ENOMEM, 8},           // not enough memory
    {EXDEV, 17},           // not the same device
    {EROFS, 19},           // write protected
    {EBUSY, 32},           // sharing violation
    {ETXTBSY, 32},         //
    {EDEADLK, 33},         // lock violation
    {ENOLCK, 33},          //
    {ENOSYS, 50},          // not supported
    {EEXIST, 80},          // file exists
    {EINVAL, 87},          // invalid parameter
    {EPIPE, 109},          // broken pipe
    {ENOSPC, 112},         // disk full
    {EDQUOT, 112},         //
    {ERANGE, 122},         // buffer too small
    {EILSEQ, 123},         // invalid name
    {ESPIPE, 131},         // negative seek
    {ENOTEMPTY, 145},      // folder not empty
    {ENAMETOOLONG, 206},   // name too long
    {EFBIG, 223},          // file too large
    {ECANCELED, 995},      // operation aborted
    {EFAULT, 998},         // invalid access to memory
    {EIO, 1117},           // input or output error
    {ELOOP, 1921},         // name can't be resolved
    {EINTR, 10004},        // interrupted
    {EAGAIN, 10035},       // would block
    {EWOULDBLOCK, 10035},  //
    {EINPROGRESS, 10036},  // in progress
    {EALREADY, 10037},     // already in progress
    {ENOTSOCK, 10038},     // no socket
    {EDESTADDRREQ, 10039}, // destination required
    {EMSGSIZE, 10040},     // message too long
    {EPROTOTYPE, 10041},   // wrong protocol type
    {ENOPROTOOPT, 10042},  // unknown option
    {EPROTONOSUPPORT, 10043},
    {EOPNOTSUPP, 10045}, // operation not supported
    {EAFNOSUPPORT, 10047},
    {EADDRINUSE, 10048},    // address in use
    {EADDRNOTAVAIL, 10049}, // address not available
    {ENETDOWN, 10050},      // network down
    {ENETUNREACH, 10051},   // network unreachable
    {ENETRESET, 10052},     // network reset
    {ECONNABORTED, 10053},  // connection aborted
    {ECONNRESET, 10054},    // connection reset by peer
    {ENOBUFS, 10055},       // no buffer space
    {EISCONN, 10056},       // already connected
    {ENOTCONN, 10057},      // not connected
    {ETIMEDOUT, 10060},     // timed out
    {ECONNREFUSED, 10061},  // connection refused
    {EHOSTUNREACH, 10065},  // host unreachable
};

// Where a socket's number differs from that of a file.
constexpr ErrorPair kSocketErrors[] = {
    {EBADF, 10038},  // no socket
    {EACCES, 10013}, // access denied
    {EPERM, 10013},  //
    {EFAULT, 10014}, // invalid access to memory
    {EINVAL, 10022}, // invalid argument
    {EMFILE, 10024}, // too many open sockets
    {ENFILE, 10024}, //
    {EPIPE, 10054},  // connection reset: by a peer that reads no more
    {ENOMEM, 10055}, // no buffer space
};

const ErrorPair* FindError(std::span<const ErrorPair> table, int systemError) noexcept
{
    const auto found = std::ranges::find(table, systemError, &ErrorPair::system);
    return found != table.end() ? &*found : nullptr;
}

} // namespace

int ErrorNumber(int systemError) noexcept
{
    if (systemError <= 0)
        return -systemError; // 0, or a number that SetLastError keeps
    const ErrorPair* pair = FindError(kErrors, systemError);
    return pair ? pair->windows : 31;
}

int SocketErrorNumber(int systemError) noexcept
{
    const ErrorPair* pair = FindError(kSocketErrors, systemError);
    return pair ? pair->windows : ErrorNumber(systemError);
}

int LastError() noexcept
{
    return ErrorNumber(errno);
}

// Windows numbers without a counterpart stand in errno below 0, where the system has none.
void SetLastError(int number) noexcept
{
    errno = -number;
}

std::size_t ErrorText(int number, char16_t* out, std::size_t room) noexcept
{
    const auto* pair = std::find_if(std::begin(kErrors), std::end(kErrors),
                                    [&](const ErrorPair& entry) { return entry.windows == number; });
    if (pair == std::end(kErrors))
        return 0;
    const KeepErrno kept;
    std::size_t written = 0;
    try {
        const std::string text = std::generic_category().message(pair->system);
        std::mbstate_t state{};
        for (const char* at = text.c_str(); *at && written < room;) {
            const std::size_t used = std::mbrtoc16(&out[written], at, std::strlen(at), &state);
            constexpr auto secondUnit = static_cast<std::size_t>(-3);
            if (used == 0 || (used != secondUnit && used > std::strlen(at)))
                break; // no text in the character set of the process
            at += used == secondUnit ? 0 : used;
            ++written;
        }
    } catch (const std::bad_alloc&) {
        written = 0;
    }
    return written;
}

std::string_view Environment(const char* name) noexcept
{
    const char* value = std::getenv(name);
    return value ? std::string_view(value) : std::string_view();
}

} // namespace zn::platform
