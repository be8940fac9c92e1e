#include "files.h"

#include "failure.h"
#include "terminal.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

namespace zntool {
namespace fs = std::filesystem;
namespace {

constexpr int kChunk = 1 << 20;
constexpr long long kLargest = 0x7FFFF000;

struct Closer {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, Closer>;

[[noreturn]] void Fail(const std::string& label, const char* action, int error)
{
    throw Failure(BadData, label + ": " + action + ": " + std::generic_category().message(error));
}

[[noreturn]] void FailTooLarge(const std::string& label)
{
    throw Failure(BadData, label + ": can't be read: a message is smaller than 2 GiB");
}

void ReadAll(std::FILE* stream, const std::string& label, Zn_Buffer& bytes)
{
    auto chunk = std::make_unique<unsigned char[]>(kChunk);
    long long total = 0;
    for (std::size_t got; (got = std::fread(chunk.get(), 1, kChunk, stream)) > 0;) {
        total += static_cast<long long>(got);
        if (total > kLargest)
            FailTooLarge(label);
        bytes.Append(chunk.get(), static_cast<int>(got));
        if (bytes.GetLength() != total)
            throw Failure(BadData, label + ": can't be read: out of memory");
    }
    if (std::ferror(stream))
        Fail(label, "can't be read", errno);
}

void WriteAll(std::FILE* stream, std::string_view bytes, const std::string& label)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream) != bytes.size() || std::fflush(stream) != 0)
        Fail(label, "can't be written", errno);
}

// A new file beside the target, whose name no other file has.
File OpenBeside(const fs::path& target, const std::string& label, fs::path& name)
{
    for (int attempt = 0; attempt < 1000; ++attempt) {
        name = target;
        name += ".zn" + std::to_string(attempt) + ".part";
        if (File file{std::fopen(name.string().c_str(), "wbx")})
            return file;
        if (errno != EEXIST)
            break;
    }
    Fail(label, "can't be written", errno);
}

void Replace(const fs::path& target, std::string_view bytes, const std::string& label)
{
    fs::path part;
    File file = OpenBeside(target, label, part);
    std::error_code error;
    try {
        WriteAll(file.get(), bytes, label);
        if (std::fclose(file.release()) != 0)
            Fail(label, "can't be written", errno);
        const fs::file_status old = fs::status(target, error);
        if (fs::exists(old))
            fs::permissions(part, old.permissions(), error);
        fs::rename(part, target, error);
        if (error)
            Fail(label, "can't be written", error.value());
    } catch (...) {
        file.reset();
        fs::remove(part, error);
        throw;
    }
}

} // namespace

std::string FileLabel(const std::string& path, bool forWriting)
{
    return path != "-" ? path : forWriting ? "standard output" : "standard input";
}

bool HasExtension(const std::string& path, std::string_view extension)
{
    const auto same = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; };
    const std::string found = fs::path(path).extension().string();
    return std::equal(found.begin(), found.end(), extension.begin(), extension.end(), same);
}

Zn_Buffer ReadFile(const std::string& path)
{
    const std::string label = FileLabel(path);
    Zn_Buffer bytes;
    if (path == "-") {
        MakeBinary(stdin);
        ReadAll(stdin, label, bytes);
        return bytes;
    }
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file)
        Fail(label, "can't be opened", errno);
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (!error && size > static_cast<std::uintmax_t>(kLargest))
        FailTooLarge(label);
    if (!error)
        bytes.Reserve(static_cast<int>(size) + 1);
    ReadAll(file.get(), label, bytes);
    return bytes;
}

void WriteFile(const std::string& path, std::string_view bytes)
{
    const std::string label = FileLabel(path, true);
    if (path == "-") {
        MakeBinary(stdout);
        WriteAll(stdout, bytes, label);
        return;
    }
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) { // a device or a pipe is written as it stands
        const File file(std::fopen(path.c_str(), "wb"));
        if (!file)
            Fail(label, "can't be opened", errno);
        WriteAll(file.get(), bytes, label);
        return;
    }
    // Through a link to the file itself, so that the link stays.
    const fs::path target = fs::exists(status) ? fs::canonical(path, error) : fs::path(path);
    Replace(error ? fs::path(path) : target, bytes, label);
}

} // namespace zntool
