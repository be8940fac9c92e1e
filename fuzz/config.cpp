// Both forms of settings: the same bytes as a stream and as a file.
#include "fuzz.h"

#include "Zn_Config.h"
#include "Zn_File.h"

namespace {

// What was loaded is the same after it went through a stream, up to the length at which entries run on. A section
// without a name takes that of the one before.
void CheckRoundTrip(const Zn_Config& config, std::size_t size)
{
    constexpr std::size_t kRunsOn = 65536;
    Zn_Buffer saved;
    Require(config.SaveToStream(saved) == config.Count());
    Zn_Config again;
    const int count = again.LoadFromStream(saved);
    Require(count == again.Count());
    Zn_Buffer savedAgain;
    again.SaveToStream(savedAgain);
    const bool keeps = size < kRunsOn && config.FindId(u"") < 1;
    Require(!keeps || saved == savedAgain);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Zn_Config fromStream;
    fromStream.LoadFromStream(BufferOf(data, size));
    CheckRoundTrip(fromStream, size);
    if (size == 0 || data[0] == 0) // no text begins so
        return 0;

    const char16_t* path = u"config_fuzz.ini";
    Require(Zn_File::WriteFile(path, reinterpret_cast<const char*>(data), static_cast<int>(size)) > 0);
    Zn_Config fromFile;
    const int count = fromFile.Load(path);
    Require(count == fromFile.Count());
    CheckRoundTrip(fromFile, size);
    Zn_File::Delete(path);
    return 0;
}
