// Whole files against the plain C library, and files of settings.
#include "pairs.h"

#include "Zn_Config.h"
#include "Zn_File.h"

#include <filesystem>
#include <memory>
#include <string_view>

namespace {

constexpr int kSize = 16 << 20;
constexpr int kLines = 10000;

struct Closer {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

std::string ReadPlain(const char* path)
{
    const std::unique_ptr<std::FILE, Closer> file(std::fopen(path, "rb"));
    std::fseek(file.get(), 0, SEEK_END);
    std::string bytes(static_cast<std::size_t>(std::ftell(file.get())), '\0');
    std::rewind(file.get());
    Require(std::fread(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(), "reading");
    return bytes;
}

void WritePlain(const char* path, const std::string& bytes)
{
    std::unique_ptr<std::FILE, Closer> file(std::fopen(path, "wb"));
    Require(std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(), "writing");
    Require(std::fclose(file.release()) == 0, "closing");
}

std::string SampleBytes()
{
    std::string bytes(kSize, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 31 >> 3);
    return bytes;
}

// Ten sections of lines like "name123=value of 123".
Zn_Config SampleSettings()
{
    Zn_Config config;
    for (int i = 0; i < kLines; ++i) {
        Zn_WString name;
        Zn_WString value;
        name.Format(u"name%d", i);
        value.Format(u"value of %d, in some words more", i);
        Zn_WString section;
        section.Format(u"section%d", i * 10 / kLines);
        if (!config.GetSection(section))
            config.AddSection(section);
        config.GetSafeSection(section)->AddItem(name, value);
    }
    return config;
}

} // namespace

int main(int argc, char** argv)
{
    const char16_t* file = u"system_bench.bin";
    const char* plain = "system_bench.plain";
    const char16_t* settings = u"system_bench.ini";
    const std::string bytes = SampleBytes();
    Zn_Config config = SampleSettings();
    WritePlain(plain, bytes);
    Require(Zn_File::WriteFile(file, bytes.data(), kSize) == kSize && ReadPlain("system_bench.bin") == bytes, "write");
    Zn_Buffer read;
    Require(Zn_File::ReadFile(file, read) == kSize &&
                std::string_view(reinterpret_cast<const char*>(read.GetData()), kSize) == bytes,
            "read");
    Require(config.SaveWithValues(settings) == 10, "settings written");
    Zn_Config back;
    Require(back.Load(settings) == 10 && back.GetItemNN(9, 999) == config.GetItemNN(9, 999), "settings read");
    const auto settingsSize = static_cast<double>(std::filesystem::file_size("system_bench.ini"));

    Pairs pairs;
    const Pairs::Work whole{0, kSize, 0};
    pairs.Add(
        "read a file of 16 MB", whole,
        [&] {
            Zn_Buffer out;
            Zn_File::ReadFile(file, out);
        },
        [&] { ReadPlain(plain); }, "C library");
    pairs.Add(
        "write a file of 16 MB", whole, [&] { Zn_File::WriteFile(file, bytes.data(), kSize); },
        [&] { WritePlain(plain, bytes); }, "C library");
    const Pairs::Work lines{kLines, settingsSize, 0};
    pairs.Add(
        "read settings of 10,000 lines", lines, [&] { back.Load(settings); }, {}, "");
    pairs.Add(
        "write settings of 10,000 lines", lines, [&] { config.SaveWithValues(settings); }, {}, "");
    pairs.Add(
        "write their names alone", lines, [&] { config.Save(settings); }, {}, "");
    const int result = pairs.Run(argc, argv);
    for (const char* name : {"system_bench.bin", "system_bench.plain", "system_bench.ini"})
        std::filesystem::remove(name);
    return result;
}
