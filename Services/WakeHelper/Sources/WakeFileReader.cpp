#include "WakeFileReader.h"

#include "TinkraSystem/WakeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace Tinkra::WakeHelper {

namespace {

bool isPlainFile(int file)
{
    struct stat status = {};
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

}

std::optional<std::int64_t> wakeWanted(const std::filesystem::path& wakeFile, std::int64_t now)
{
    const int file = ::open(wakeFile.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return std::nullopt;
    const auto wake = wakeWanted(file, now);
    ::close(file);
    return wake;
}

std::optional<std::int64_t> wakeWanted(int file, std::int64_t now)
{
    // One byte more than is allowed, so that a longer file is told apart.
    std::array<char, System::kMaximumWakeDigits + 1> bytes{};
    const auto count = isPlainFile(file) ? ::read(file, bytes.data(), bytes.size()) : -1;
    if (count < 0)
        return std::nullopt;

    const auto wake = System::wakeSecondsFrom({bytes.data(), static_cast<std::size_t>(count)}, now);
    return wake && *wake > now ? wake : std::nullopt;
}

}
