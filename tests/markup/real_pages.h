// Pages that others wrote: the files that ZN_HTML_PAGES names (separated by ":"), else those of /usr/share/doc.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

struct RealPage {
    std::string name;
    std::string text;
};

inline std::vector<std::filesystem::path> FindRealPages()
{
    namespace fs = std::filesystem;
    std::vector<fs::path> paths;
    if (const char* files = std::getenv("ZN_HTML_PAGES")) {
        std::istringstream names(files);
        for (std::string name; std::getline(names, name, ':');)
            paths.emplace_back(name);
        return paths;
    }
    std::error_code error;
    fs::recursive_directory_iterator entry("/usr/share/doc", fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const fs::path extension = entry->path().extension();
        if ((extension == ".html" || extension == ".htm") && !entry->is_symlink() && entry->is_regular_file())
            paths.push_back(entry->path());
    }
    return paths;
}

// The largest first.
inline std::vector<RealPage> ReadRealPages()
{
    std::vector<RealPage> pages;
    for (const std::filesystem::path& path : FindRealPages()) {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        if (!content.str().empty())
            pages.push_back({path.filename().string(), content.str()});
    }
    std::stable_sort(pages.begin(), pages.end(),
                     [](const RealPage& a, const RealPage& b) { return a.text.size() > b.text.size(); });
    return pages;
}
