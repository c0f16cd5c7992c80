#include "CalendarFiles.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Tinkra {

namespace {

/// A buffer that keeps its size, so that pages are not touched anew for each file.
class Buffer {
public:
    std::string_view read(int file)
    {
        struct stat status { };
        if (fstat(file, &status) != 0)
            throw std::system_error{errno, std::generic_category(), "fstat"};
        const auto size = static_cast<std::size_t>(status.st_size);
        if (size > m_size) {
            m_size = size + 65'536;
            m_bytes = std::make_unique_for_overwrite<char[]>(m_size);
        }
        std::size_t length = 0;
        while (length < size) {
            const auto count = ::read(file, m_bytes.get() + length, size - length);
            if (count <= 0)
                break;
            length += static_cast<std::size_t>(count);
        }
        return {m_bytes.get(), length};
    }

private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
};

void walk(int parent, const char* name, Buffer& buffer,
    const std::function<void(std::string_view, std::string_view)>& sink)
{
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        throw std::system_error{errno, std::generic_category(), name};
    const std::unique_ptr<DIR, int (*)(DIR*)> entries{fdopendir(folder), closedir};
    while (const auto* entry = readdir(entries.get())) {
        const std::string_view entryName{entry->d_name};
        if (entryName.starts_with('.'))
            continue;
        if (entry->d_type == DT_DIR) {
            walk(folder, entry->d_name, buffer, sink);
        } else if (entryName.ends_with(".ics")) {
            const int file = openat(folder, entry->d_name, O_RDONLY | O_CLOEXEC);
            if (file < 0)
                throw std::system_error{errno, std::generic_category(), entry->d_name};
            const auto bytes = buffer.read(file);
            close(file);
            sink(entryName, bytes);
        }
    }
}

}

void forEachCalendarFile(
    const std::filesystem::path& folder, const std::function<void(std::string_view, std::string_view)>& sink)
{
    static Buffer buffer;
    walk(AT_FDCWD, folder.c_str(), buffer, sink);
}

std::size_t countLines(std::string_view bytes)
{
    std::size_t lines = 0;
    const auto* end = bytes.data() + bytes.size();
    for (const auto* at = bytes.data(); at < end; ++lines) {
        const auto* lineFeed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
        if (lineFeed == nullptr)
            break;
        at = static_cast<const char*>(lineFeed) + 1;
    }
    return lines;
}

}
