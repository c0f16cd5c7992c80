#include "LineScan.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

namespace Tinkra::Benchmarks {

namespace {

[[noreturn]] void fail(const char* name)
{
    std::perror(name);
    std::exit(1);
}

template <typename Visit> void readFile(int folder, const char* name, std::vector<char>& buffer, Visit visit)
{
    const int file = openat(folder, name, O_RDONLY | O_CLOEXEC);
    struct stat status { };
    if (file < 0 || fstat(file, &status) != 0)
        fail(name);
    const auto size = static_cast<std::size_t>(status.st_size);
    if (buffer.size() < size)
        buffer.resize(size + 65536);
    std::size_t length = 0;
    while (length < size) {
        const auto count = read(file, buffer.data() + length, size - length);
        if (count <= 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    close(file);
    visit(std::string_view{buffer.data(), length});
}

template <typename Visit> void walk(int parent, const char* name, std::vector<char>& buffer, Visit visit)
{
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* listing = folder < 0 ? nullptr : fdopendir(folder);
    if (!listing)
        fail(name);
    while (const auto* entry = readdir(listing)) {
        const std::string_view entryName = entry->d_name;
        if (entryName.starts_with('.'))
            continue;
        if (entry->d_type == DT_DIR)
            walk(folder, entry->d_name, buffer, visit);
        else if (entryName.ends_with(".ics"))
            readFile(folder, entry->d_name, buffer, visit);
    }
    closedir(listing);
}

template <typename Visit> void forEachFile(const std::string& path, Visit visit)
{
    std::vector<char> buffer;
    walk(AT_FDCWD, path.c_str(), buffer, visit);
}

}

std::size_t scanLines(const std::string& path)
{
    std::size_t lines = 0;
    forEachFile(path, [&](std::string_view text) {
        const char* at = text.data();
        const char* end = at + text.size();
        while (at < end) {
            const auto* found =
                static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
            if (!found)
                break;
            ++lines;
            at = found + 1;
        }
    });
    return lines;
}

std::size_t titleBytes(const std::string& path)
{
    std::size_t bytes = 0;
    forEachFile(path, [&](std::string_view text) {
        bool isTitle = false;
        bool isAlarm = false;
        while (!text.empty()) {
            const auto end = text.find('\n');
            auto line = text.substr(0, end);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
            if (line.ends_with('\r'))
                line.remove_suffix(1);
            if (line == "BEGIN:VALARM")
                isAlarm = true;
            else if (line == "END:VALARM")
                isAlarm = false;
            const bool isContinued = line.starts_with(' ');
            if (!isContinued)
                isTitle = !isAlarm && line.starts_with("SUMMARY");
            if (isTitle)
                bytes += line.size() - (isContinued ? 1 : std::min(line.size(), line.find(':') + 1));
        }
    });
    return bytes;
}

}
