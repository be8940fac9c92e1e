// Whole files by their names: the static ReadFile and WriteFile of Zn_File.
#include "Zn_ErrorMsg.h"
#include "Zn_File.h"

#include "foundation/encoding.h"
#include "system/open_file.h"

#include <memory>
#include <new>

namespace {

using zn::OpenedFile;
namespace platform = zn::platform;

enum Error { FileNotFound = 2, PathNotFound = 3, NoMemory = 8, InvalidParameter = 87, TooLarge = 223 };

constexpr int kChunk = 1 << 16;
constexpr std::int64_t kLargest = 0x7FFFF000;

bool Fail(int error) noexcept
{
    platform::SetLastError(error);
    return false;
}

// Appends everything up to the end; false with the last error when that is not to be had.
template <class Target>
bool ReadRest(const OpenedFile& file, zn::CountingSink<Target>& out)
{
    const std::unique_ptr<char[]> chunk(new (std::nothrow) char[kChunk]);
    if (!chunk)
        return Fail(NoMemory);
    for (;;) {
        const int count = platform::ReadBytes(file.Get(), chunk.get(), kChunk);
        if (count < 0)
            return false;
        if (out.length + static_cast<std::size_t>(count) > kLargest)
            return Fail(TooLarge);
        zn::Append(out, std::string_view(chunk.get(), static_cast<std::size_t>(count)));
        if (out.length != static_cast<std::size_t>(out.GetLength()))
            return Fail(NoMemory);
        if (count < kChunk)
            return true;
    }
}

template <class Target>
bool ReadWhole(const char16_t* path, Target& out)
{
    const OpenedFile file = OpenedFile::ToRead(path);
    if (!file.IsOpen())
        return false;
    const std::int64_t size = platform::SizeOfFile(file.Get());
    if (size > kLargest)
        return Fail(TooLarge);
    Target bytes;
    if (size > 0)
        bytes.Reserve(static_cast<int>(size));
    zn::CountingSink<Target> sink{bytes};
    if (!ReadRest(file, sink))
        return false;
    out = std::move(bytes);
    return true;
}

// What a reader answers, with the diagnostic of a failure.
int Answer(bool read, int length, const char16_t* path, Zn_WString* diagnostic)
{
    if (read)
        return length;
    const int error = zn_getlasterror();
    if (diagnostic) {
        Zn_WString reason;
        if (error == FileNotFound || error == PathNotFound)
            diagnostic->Format(u"File Not Exist: %ls", path);
        else
            diagnostic->Format(u"File: %ls, %ls", path, ZnSysErrorStr(error, reason));
        platform::SetLastError(error);
    }
    return -1;
}

struct Mark {
    std::string_view bytes;
    unsigned codePage;
};

constexpr Mark kMarks[] = {
    {"\xEF\xBB\xBF", zn::kUtf8},
    {"\xFF\xFE", zn::kUtf16Le},
    {"\xFE\xFF", zn::kUtf16Be},
};

bool DecodeMarked(std::string_view bytes, Zn_WString& out)
{
    unsigned codePage = 0;
    for (const Mark& mark : kMarks) {
        if (bytes.starts_with(mark.bytes)) {
            bytes.remove_prefix(mark.bytes.size());
            codePage = mark.codePage;
            break;
        }
    }
    return zn::AssignWhole(out, [&](auto& sink) { zn::DecodeText(bytes, codePage, sink); }) || Fail(NoMemory);
}

int WriteWhole(const char16_t* path, std::string_view bytes)
{
    const OpenedFile file = OpenedFile::ToWrite(path);
    if (!file.IsOpen() || !platform::WriteBytes(file.Get(), bytes.data(), bytes.size()))
        return -1;
    return static_cast<int>(bytes.size());
}

template <class Char>
std::basic_string_view<Char> TextOf(const Char* text, int length) noexcept
{
    return length < 0 ? std::basic_string_view<Char>(text)
                      : std::basic_string_view<Char>(text, static_cast<std::size_t>(length));
}

} // namespace

int Zn_File::ReadFile(const char16_t* path, Zn_Buffer& out, Zn_WString* diagnostic)
{
    const bool read = ReadWhole(path, out);
    return Answer(read, out.GetLength(), path, diagnostic);
}

int Zn_File::ReadFile(const char16_t* path, Zn_AString& out, Zn_WString* diagnostic)
{
    const bool read = ReadWhole(path, out);
    return Answer(read, out.GetLength(), path, diagnostic);
}

int Zn_File::ReadFile(const char16_t* path, Zn_WString& out, Zn_WString* diagnostic)
{
    Zn_AString bytes;
    const bool read = ReadWhole(path, bytes) && DecodeMarked(bytes, out);
    return Answer(read, out.GetLength(), path, diagnostic);
}

int Zn_File::WriteFile(const char16_t* path, const char* text, int length)
{
    if (!text) {
        Fail(InvalidParameter);
        return -1;
    }
    return WriteWhole(path, TextOf(text, length));
}

int Zn_File::WriteFile(const char16_t* path, const char16_t* text, int length)
{
    if (!text) {
        Fail(InvalidParameter);
        return -1;
    }
    Zn_AString bytes;
    if (!zn::AssignWhole(bytes, [&](auto& sink) { zn::EncodeText(TextOf(text, length), 0, sink); })) {
        Fail(NoMemory);
        return -1;
    }
    return WriteWhole(path, bytes);
}
