#include "WakeHelper/WakeFolder.h"

#include "WakeFileReader.h"
#include "WakeHelper/Descriptor.h"

#include "TinkraSystem/WakeFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <charconv>
#include <system_error>

namespace Tinkra::WakeHelper {

namespace {

constexpr std::size_t kMostUsers = 1000;

std::optional<uid_t> userNamed(const std::string& name)
{
    uid_t user = 0;
    const auto* end = name.data() + name.size();
    const auto read = std::from_chars(name.data(), end, user);
    if (read.ec != std::errc{} || read.ptr != end || std::to_string(user) != name)
        return std::nullopt;
    return user;
}

bool isOwnedBy(const Descriptor& descriptor, uid_t user, mode_t kind)
{
    struct stat status = {};
    return descriptor && ::fstat(descriptor.get(), &status) == 0 && (status.st_mode & S_IFMT) == kind
        && status.st_uid == user && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::optional<std::int64_t> wakeOf(
    const std::filesystem::path& folder, const std::string& user, std::int64_t now)
{
    const auto owner = userNamed(user);
    if (!owner)
        return std::nullopt;
    const Descriptor own(
        ::open((folder / user).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!isOwnedBy(own, *owner, S_IFDIR))
        return std::nullopt;
    const Descriptor file(::openat(own.get(), std::string(System::kWakeFileName).c_str(),
        O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!isOwnedBy(file, *owner, S_IFREG))
        return std::nullopt;
    return wakeWanted(file.get(), now);
}

}

std::vector<std::string> users(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator each(folder, error), end; !error && each != end;
         each.increment(error)) {
        auto name = each->path().filename().string();
        if (userNamed(name))
            names.push_back(std::move(name));
        if (names.size() == kMostUsers)
            break;
    }
    return names;
}

std::optional<std::int64_t> earliestWake(const std::filesystem::path& folder, std::int64_t now)
{
    std::optional<std::int64_t> earliest;
    for (const auto& user : users(folder)) {
        const auto wake = wakeOf(folder, user, now);
        if (wake && (!earliest || *wake < *earliest))
            earliest = wake;
    }
    return earliest;
}

}
