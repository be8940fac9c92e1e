// The porting contract: what the library asks of the operating system. Nothing outside this folder
// calls it. A new platform gives one source per section with its own prefix (posix_, windows_).
//
// Every call is safe from several threads, throws nothing and leaves the thread's last system error
// alone unless it says otherwise.
#pragma once

#include <cstddef>
#include <string_view>

namespace zn::platform {

// ---- system: last error, environment (posix_system.cpp, windows_system.cpp) -------------------

// The calling thread's last system error as a Windows error number; 0 for none.
int LastError() noexcept;
// Makes a Windows error number what LastError() gives next.
void SetLastError(int number) noexcept;
// The Windows number for one of the platform's own error numbers (errno); 0 stays 0, one without a
// counterpart becomes 31 ("a device is not functioning").
int ErrorNumber(int systemError) noexcept;
// The same for a call on a socket, where some causes have other numbers.
int SocketErrorNumber(int systemError) noexcept;
// The platform's own text for a Windows error number, in the user's language, without a line end: up to room units,
// not terminated. Returns how many; 0 when the platform has none.
std::size_t ErrorText(int number, char16_t* out, std::size_t room) noexcept;
// A variable of the environment, or the empty text; valid until the environment changes.
std::string_view Environment(const char* name) noexcept;

// ---- memory (posix_memory.cpp, windows_memory.cpp) --------------------------------------------

// Large pages save most of the faults of a memory's first use and most misses of the address cache afterwards.
constexpr std::size_t kLargePage = std::size_t{2} << 20;
// Memory that begins and ends with a large page; the system puts large pages behind it where it has some.
// Null when there is none, or when size is no multiple of kLargePage.
void* TakePages(std::size_t size) noexcept;
// With the size they were taken with.
void GivePages(void* pages, std::size_t size) noexcept;
// Asks for large pages behind memory of the heap. A wish only.
void PreferLargePages(void* memory, std::size_t size) noexcept;

// ---- code pages (posix_codepage.cpp, windows_codepage.cpp) ------------------------------------

// Why a conversion stopped.
enum class ConvertStop {
    End,      // all input is converted
    NoRoom,   // the next character does not fit into the output
    BadInput, // what stands at input[read] is no character of the page, or cut off by the input's end
};

struct ConvertResult {
    std::size_t read;    // input units converted
    std::size_t written; // output units
    ConvertStop stop;
};

// One text's way from or to a code page, for the pages that the library does not convert itself.
// Pages with shift states keep theirs from call to call.
class CodePageConverter {
public:
    enum class Direction { ToUtf16, FromUtf16 };

    // Not open when the platform does not know the page.
    CodePageConverter(unsigned codePage, Direction direction) noexcept;
    ~CodePageConverter();
    CodePageConverter(const CodePageConverter&) = delete;
    CodePageConverter& operator=(const CodePageConverter&) = delete;

    bool IsOpen() const noexcept { return handle_ != nullptr; }
    // Neither maps to a similar character what the page lacks, and neither splits a character.
    ConvertResult Decode(std::string_view bytes, char16_t* out, std::size_t room) noexcept;
    ConvertResult Encode(std::u16string_view text, char* out, std::size_t room) noexcept;
    // Writes what brings the page back to its first shift state; returns how many bytes (at most 8).
    std::size_t Finish(char* out, std::size_t room) noexcept;

private:
    void* handle_ = nullptr;
    unsigned codePage_;
    Direction direction_;
};

// ---- clock (posix_clock.cpp, windows_clock.cpp) -----------------------------------------------

// A moment as the calendar and the clock on the wall show it: month 1-12, hour 0-23.
struct ClockTime {
    int year, month, day;
    int hour, minute, second;
};

// Now, in the time zone that the system is set to.
ClockTime LocalTime() noexcept;

} // namespace zn::platform
