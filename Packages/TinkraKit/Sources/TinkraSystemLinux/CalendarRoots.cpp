#include "TinkraSystemLinux/FolderEventStore.h"
#include "TinkraSystemLinux/XdgDirectories.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace Tinkra::System {

namespace {

void addOnce(std::vector<std::string>& roots, const std::filesystem::path& path)
{
    // "/a/b/" and "/a/b" are one folder.
    auto root = std::filesystem::absolute(path).lexically_normal().string();
    while (root.size() > 1 && root.back() == '/')
        root.pop_back();
    if (std::find(roots.begin(), roots.end(), root) == roots.end())
        roots.push_back(std::move(root));
}

}

std::vector<std::string> calendarRoots()
{
    std::vector<std::string> roots;
    addOnce(roots, xdgDataHome() / "tinkra" / "calendars");

    const char* listed = std::getenv("TINKRA_CALENDARS");
    std::string_view rest = listed ? listed : "";
    while (!rest.empty()) {
        const auto end = rest.find(':');
        if (const auto part = rest.substr(0, end); !part.empty())
            addOnce(roots, part);
        rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    }
    return roots;
}

}
