// Runs a fuzz target without libFuzzer: on each seed file, on prefixes of it and on seeded mutations of it.
//
//     fuzz_binary_message SEED...
//
// The inputs are the same in every run. ZN_LONG_TESTS=1 in the environment takes every prefix and 100,000 mutations of
// each seed; otherwise both are bounded by a share of bytes, so that a run lasts a few seconds. An input that ends the
// program is left in the file crash-input of the working directory.
#include "fuzz.h"

#include "long_tests.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

const Bytes* running = nullptr; // what SaveInput writes when the target ends the program

void SaveInput(int number)
{
    std::signal(number, SIG_DFL);
    if (std::FILE* file = running ? std::fopen("crash-input", "wb") : nullptr) {
        std::fwrite(running->data(), 1, running->size(), file);
        std::fclose(file);
        std::fputs("the input is in the file crash-input\n", stderr);
    }
    std::raise(number);
}

// The target gets a block of exactly the input's size, so that the sanitizers see a read past its end.
void RunTarget(const Bytes& input)
{
    const Bytes exact(input);
    running = &exact;
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    running = nullptr;
}

class Mutator {
public:
    Bytes operator()(const Bytes& seed)
    {
        Bytes bytes = seed;
        for (std::size_t n = 1 + Below(4); n > 0; --n)
            MutateOnce(bytes, seed);
        return bytes;
    }

private:
    std::size_t Below(std::size_t limit) { return limit ? static_cast<std::size_t>(random_() % limit) : 0; }

    void MutateOnce(Bytes& bytes, const Bytes& seed)
    {
        static constexpr std::uint8_t kTelling[] = {0, 1, 0x20, 0x26, 0x3C, 0x3E, 0x7F, 0x80, 0xFE, 0xFF};
        if (bytes.empty())
            bytes.push_back(0);
        const std::size_t at = Below(bytes.size());
        const std::size_t run = std::min(bytes.size() - at, std::size_t(1) << Below(10));
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        switch (Below(7)) {
        case 0:
            bytes[at] ^= static_cast<std::uint8_t>(1U << Below(8));
            break;
        case 1:
            bytes[at] = kTelling[Below(std::size(kTelling))];
            break;
        case 2: // a count or length that lies
            for (std::size_t i = at, value = kTelling[Below(std::size(kTelling))]; i < std::min(at + 4, bytes.size());
                 ++i)
                bytes[i] = static_cast<std::uint8_t>(value);
            break;
        case 3:
            bytes.resize(at);
            break;
        case 4:
            bytes.erase(place, place + static_cast<std::ptrdiff_t>(run));
            break;
        case 5: { // a piece of the seed once more, somewhere else
            const std::size_t from = Below(seed.size());
            const Bytes piece(seed.begin() + static_cast<std::ptrdiff_t>(from),
                              seed.begin() + static_cast<std::ptrdiff_t>(std::min(seed.size(), from + run)));
            bytes.insert(place, piece.begin(), piece.end());
            break;
        }
        default:
            bytes.insert(place, static_cast<std::uint8_t>(Below(256)));
            break;
        }
    }

    std::mt19937_64 random_{20260101};
};

} // namespace

int main(int argc, char** argv)
{
    const bool longRun = LongTests();
    const std::size_t budget = 4'000'000 / static_cast<std::size_t>(std::max(argc - 1, 1)); // bytes for one seed
    std::size_t runs = 0;
    std::signal(SIGABRT, SaveInput);
    std::signal(SIGSEGV, SaveInput);
    Mutator mutate;
    for (int i = 1; i < argc; ++i) {
        std::ifstream in(argv[i], std::ios::binary);
        const Bytes seed((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (!in || seed.empty()) {
            std::fprintf(stderr, "%s can't be read\n", argv[i]);
            return 1;
        }
        RunTarget(seed);
        const std::size_t count = longRun ? 100'000 : std::min<std::size_t>(budget / seed.size() + 1, 20'000);
        const std::size_t stride = longRun ? 1 : seed.size() / std::min(seed.size(), count) | 1;
        for (std::size_t length = 0; length < seed.size(); length += stride, ++runs)
            RunTarget(Bytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(length)));
        for (std::size_t n = 0; n < count; ++n, ++runs)
            RunTarget(mutate(seed));
    }
    std::printf("%zu inputs from %d seeds\n", runs, argc - 1);
    return argc > 1 ? 0 : 1;
}
