// compress and decompress: any file into a container and back.
#include "commands.h"

#include "container.h"
#include "progress.h"

#include "Zn_Compress.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace zntool {

bool LooksCompressed(const Zn_Buffer& bytes)
{
    const int first = bytes.GetAt(0), second = bytes.GetAt(1);
    return (first == 0xFF && second == 0xAC) || (first == 0xAC && second == 0xFF);
}

Zn_Buffer ReadRestored(const std::string& path, long long& compressedBytes)
{
    Zn_Buffer bytes = ReadFile(path);
    compressedBytes = Zn_Compress::IsCompressBuffer(bytes) ? bytes.GetLength() : 0;
    if (compressedBytes == 0)
        return bytes;
    Zn_Buffer restored;
    Zn_Compress().Decode(bytes, restored);
    if (restored == bytes)
        throw Failure(BadData, FileLabel(path) + ": can't be decompressed: out of memory, or more than 2 GiB");
    return restored;
}

Zn_Buffer Compressed(const Zn_Buffer& bytes, bool fast)
{
    Zn_Buffer container;
    if (fast)
        Zn_Compress().EncodeFast(bytes, container);
    else
        Zn_Compress().Encode(bytes, container);
    return container;
}

bool IsNamedCompressed(const std::string& path)
{
    return HasExtension(path, ".lz");
}

std::string FormName(const std::string& path)
{
    return IsNamedCompressed(path) ? path.substr(0, path.rfind('.')) : path;
}

namespace {

struct Options {
    std::string in;
    std::string out;
    bool fast = false;
};

void Write(const std::string& path, const Zn_Buffer& bytes)
{
    WriteFile(path, {reinterpret_cast<const char*>(bytes.GetData()), bytes.GetSpan().size()});
}

void Compress(const Options& options)
{
    const Zn_Buffer bytes = ReadFile(options.in);
    const std::string label = FileLabel(options.in);
    Zn_Buffer container;
    {
        const Progress progress("compressing " + label);
        container = Compressed(bytes, options.fast);
    }
    Write(options.out, container);
    if (container == bytes)
        Complain(label + (Zn_Compress::IsCompressBuffer(bytes) ? ": is compressed already; copied as it is"
                                                               : ": too short to be compressed; copied as it is"));
}

void Decompress(const Options& options)
{
    long long compressedBytes = 0;
    const Zn_Buffer bytes = ReadRestored(options.in, compressedBytes);
    if (compressedBytes == 0)
        throw Failure(BadData, FileLabel(options.in) +
                                   (LooksCompressed(bytes) ? ": is damaged: the checksum in it is not that of its bytes"
                                                           : ": is not compressed"));
    Write(options.out, bytes);
}

CLI::App* Add(CLI::App& app, const char* name, const char* what, const std::shared_ptr<Options>& options)
{
    CLI::App* command = app.add_subcommand(name, what);
    command->add_option("IN", options->in, "the file to read, or -")->required();
    command->add_option("OUT", options->out, "the file to write, or -")->required();
    return command;
}

} // namespace

void AddCompress(CLI::App& app, ExitCode&)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = Add(app, "compress", "Compress a file", options);
    command->add_flag("--fast", options->fast, "many times as fast; the bytes are not those of the stored form");
    command->footer(
        "The other commands read compressed messages as they are. Without --fast the same file always gives the\n"
        "same bytes. A file that is too short to gain, or compressed already, is copied.\n"
        "Example: zn compress store.bin store.bin.lz");
    command->callback([options] { Compress(*options); });
}

void AddDecompress(CLI::App& app, ExitCode&)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = Add(app, "decompress", "Restore a compressed file", options);
    command->footer("Fails on a file that is not compressed or is damaged.\n"
                    "Example: zn decompress store.bin.lz store.bin");
    command->callback([options] { Decompress(*options); });
}

} // namespace zntool
