// A folder for one test, gone with what is in it at the end, and plain access to its files.
#pragma once

#include "Zn_WString.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class Scratch {
public:
    Scratch() : folder_(std::filesystem::temp_directory_path() / ("zn_test-" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directory(folder_);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    // Names are UTF-8.
    std::filesystem::path operator/(const std::string& name) const
    {
        return folder_ / std::u8string(name.begin(), name.end());
    }
    // The path of a name in this folder as callers of the library write it.
    Zn_WString Path(std::u16string_view name = {}) const
    {
        const std::filesystem::path path = name.empty() ? folder_ : folder_ / name;
        return Zn_WString(path.generic_u16string());
    }

    void Put(const std::string& name, std::string_view bytes) const
    {
        std::ofstream(*this / name, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    std::string Get(const std::string& name) const
    {
        std::ifstream in(*this / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::size_t CountFiles() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
    }

private:
    std::filesystem::path folder_;
};
