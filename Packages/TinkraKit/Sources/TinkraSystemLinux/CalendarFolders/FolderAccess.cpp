#include "TinkraSystemLinux/CalendarFolders/FolderAccess.h"

#include <fcntl.h>

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

namespace Tinkra::System {

namespace {

constexpr std::string_view kGranted = "granted";

}

FolderAccess::FolderAccess(std::vector<std::string> roots, std::shared_ptr<Defaults> defaults,
    std::string key, std::shared_ptr<FileSystem> fileSystem)
    : m_roots(std::move(roots))
    , m_defaults(std::move(defaults))
    , m_key(std::move(key))
    , m_fileSystem(std::move(fileSystem))
{
}

bool FolderAccess::isGranted() const
{
    return m_defaults->data(m_key) == kGranted;
}

CalendarAuthorization FolderAccess::status() const
{
    const bool granted = isGranted();
    if ((granted || m_wasRequested) && !isAnyRootReachable())
        return CalendarAuthorization::Denied;
    return granted ? CalendarAuthorization::FullAccess : CalendarAuthorization::NotDetermined;
}

bool FolderAccess::request()
{
    m_wasRequested = true;
    // After the grant a missing root is trouble; an empty one made in its place would pass for "no meetings".
    if (!isGranted() && !m_roots.empty())
        m_fileSystem->makeFolder(m_roots.front());
    if (!isAnyRootReachable())
        return false;
    m_defaults->setData(m_key, kGranted);
    // A grant that could not be kept is none.
    return isGranted();
}

bool FolderAccess::isAnyRootReachable() const
{
    return std::any_of(m_roots.begin(), m_roots.end(), [this](const std::string& root) {
        try {
            return static_cast<bool>(m_fileSystem->openFolder(AT_FDCWD, root, Links::Followed));
        } catch (const std::system_error&) {
            return false;
        }
    });
}

}
