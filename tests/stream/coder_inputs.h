// Kinds of input for coders, each of any size: easy ones, hard ones, and such as turn search trees into chains.
#pragma once

#include "stream/plain_coder.h"

#include <random>
#include <string>

struct InputKind {
    const char* name;
    // Over and over: one of the pieces, up to so many letters m, some letters at random from a range, and the low bytes
    // of a number that counts up or, by a step below 0, down, each of its values several times.
    std::vector<std::string> pieces;
    unsigned longestRun = 0;
    unsigned letters = 0, firstLetter = 0, lettersToTakeFrom = 256;
    int bytesOfNumber = 0, step = 1, timesEach = 1;

    plain::Bytes Make(std::size_t size, unsigned seed) const
    {
        std::mt19937 random(seed);
        plain::Bytes bytes;
        for (int i = 0; bytes.size() < size; ++i) {
            const std::string& piece = pieces[random() % pieces.size()];
            bytes.insert(bytes.end(), piece.begin(), piece.end());
            bytes.insert(bytes.end(), longestRun ? random() % (longestRun + 1) : 0, 'm');
            for (unsigned n = 0; n < letters; ++n)
                bytes.push_back(static_cast<unsigned char>(firstLetter + random() % lettersToTakeFrom));
            for (int n = bytesOfNumber; n > 0; --n)
                bytes.push_back(static_cast<unsigned char>(i / timesEach * step >> (8 * n - 8)));
        }
        bytes.resize(size);
        return bytes;
    }
};

inline const std::vector<InputKind>& InputKinds()
{
    static const std::vector<InputKind> kinds = {
        {"random", {""}, 0, 1},
        {"two_letters", {""}, 0, 1, 'a', 2},
        {"twenty_letters", {""}, 0, 1, 'a', 20},
        {"run", {"a"}},
        {"words", {"the ", "water ", "of ", "and ", "falls ", "under", "standing ", "a ", "in ", "  ", "A"}},
        {"markup", {"<record>\n\t<Id>", "</Id>\n\t<City>", "</City>\n</record>\n"}, 0, 3, '0', 10},
        {"blanks_and_zeros", {" ", "   ", std::string(1, '\0'), std::string(5, '\0'), "x"}},
        {"short_runs", {"mmm"}, 3, 0, 0, 1, 1, 1, 4},
        {"long_runs", {"mmm"}, 26, 0, 0, 1, 1},
        {"rising_pairs", {"a"}, 0, 0, 0, 1, 1, 1, 8},
        {"falling_pairs", {"a"}, 0, 0, 0, 1, 1, -1, 8},
        {"rising_numbers", {"abc"}, 0, 0, 0, 1, 2},
    };
    return kinds;
}
