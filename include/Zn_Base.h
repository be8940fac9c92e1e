// What every other header stands on: the export macro, the allocator, checksums and the
// fixed byte order of stored doubles.
//
// All functions are safe to call from several threads. None throws.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)
#    if defined(ZN_BUILD_SHARED)
#        define ZN_API __declspec(dllexport)
#    elif defined(ZN_USE_SHARED)
#        define ZN_API __declspec(dllimport)
#    else
#        define ZN_API
#    endif
#else
#    define ZN_API __attribute__((visibility("default")))
#endif

// The Windows headers define function-like names of ours as macros. A program that includes them
// first would compile calls under other names than the library has, so the names are taken back.
#undef GetCurrentTime
#undef GetMessage
#undef GetObject
#undef CreateFile
#undef DeleteFile
#undef CopyFile
#undef MoveFile
#undef GetFileAttributes
#undef SendMessage
#undef FindText
#undef min
#undef max
#undef ERROR

// A moment in steps of 100 ns since the start of the year 1601, as two words; the platform's own where it has one.
#if defined(_WIN32)
struct _FILETIME;
using FILETIME = _FILETIME;
#else
struct FILETIME {
    std::uint32_t dwLowDateTime;
    std::uint32_t dwHighDateTime;
};
#endif

// Memory for items and buffers; size is in bytes. Returns null for a size below 1 or when there is none.
ZN_API void* _zn_malloc(int size) noexcept;
// Gives back what _zn_malloc returned; null does nothing.
ZN_API void zn_free(void* memory) noexcept;

// The calling thread's last system error as a Windows error number, 0 for none.
ZN_API int zn_getlasterror() noexcept;

// CRC-32 of zip and PNG (polynomial 0xEDB88320, reflected) over len bytes, continuing from crc.
// Start with 0; the nine digits "123456789" give 0xCBF43926. Null or len below 1 returns crc unchanged.
ZN_API std::uint32_t zn_crc32(std::uint32_t crc, const unsigned char* data, int len) noexcept;

// An IEEE 754 double as eight bytes, most significant first, on every machine; and back, bit for bit.
ZN_API void zn_dtobyte(double value, char bytes[8]) noexcept;
ZN_API double zn_bytetod(const char bytes[8]) noexcept;
