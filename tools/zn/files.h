// Whole files in and out. The name "-" is standard input or output.
#pragma once

#include "Zn_Buffer.h"

#include <string>
#include <string_view>

namespace zntool {

// How messages to the user name a file.
std::string FileLabel(const std::string& path, bool forWriting = false);

// Case does not count; the extension begins with its point.
bool HasExtension(const std::string& path, std::string_view extension);

// The bytes of a buffer as text; valid as long as the buffer is.
inline std::string_view AsText(const Zn_Buffer& bytes)
{
    return {reinterpret_cast<const char*>(bytes.GetData()), bytes.GetSpan().size()};
}

// A text without the byte order mark of UTF-8 that it may begin with.
inline std::string_view WithoutMark(std::string_view text)
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
}

// Fails with the system's reason; a file of 2 GiB or more is refused.
Zn_Buffer ReadFile(const std::string& path);

// Writes beside the file and then puts the new one in its place, so that a failure at any point leaves an old
// file as it was and no half file behind.
void WriteFile(const std::string& path, std::string_view bytes);

} // namespace zntool
