#include "TinkraSystemLinux/CalendarFolders/RootFolder.h"

#include <fcntl.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

namespace Tinkra::System {

RootFolder::RootFolder(std::string path, std::string identifier)
    : m_path(std::move(path))
    , m_identifier(std::move(identifier))
{
}

void RootFolder::refresh(FileSystem& fileSystem, FolderWatcher& watcher)
{
    // One call that opens nothing finds what no watch reports: a renamed parent, a mount over the root.
    const auto identity = fileSystem.identityOf(m_path);
    if (!identity) {
        m_watch.reset();
        m_isCovered = false;
        watchForReturn(fileSystem, watcher);
        throw StoreInDoubt("the calendar folder " + m_path + " is missing");
    }
    takeChanges();
    if (m_listAgain || !m_isCovered || identity != m_identity)
        list(fileSystem, watcher, *identity);

    for (auto& account : m_accounts) {
        account->refresh(fileSystem, watcher, [&]() {
            const auto root = fileSystem.openFolder(AT_FDCWD, m_path, Links::Followed);
            return root ? fileSystem.openFolder(root.get(), account->name(), Links::Refused) : Descriptor{};
        });
    }
}

Descriptor RootFolder::openFolderOf(
    FileSystem& fileSystem, const AccountFolder& account, const CalendarFolder& calendar) const
{
    const auto root = fileSystem.openFolder(AT_FDCWD, m_path, Links::Followed);
    auto folder = root ? fileSystem.openFolder(root.get(), account.name(), Links::Refused) : Descriptor{};
    if (folder && calendar.kind() == CalendarFolder::Kind::Folder)
        folder = fileSystem.openFolder(folder.get(), calendar.entry(), Links::Refused);
    if (!folder)
        throw StoreInDoubt("the folder of the calendar \"" + calendar.identifier() + "\" is gone");
    return folder;
}

void RootFolder::takeChanges()
{
    if (!m_watch)
        return;
    const auto changes = m_watch->take();
    if (changes.lost) {
        m_watch.reset();
        m_isCovered = false;
    }
    m_listAgain |= !changes.isEmpty();
}

void RootFolder::list(FileSystem& fileSystem, FolderWatcher& watcher, FolderIdentity identity)
{
    const auto folder = fileSystem.openFolder(AT_FDCWD, m_path, Links::Followed);
    if (!folder)
        throw StoreInDoubt("the calendar folder " + m_path + " is missing");
    if (!m_watch || m_identity != identity) {
        m_parentWatch.reset();
        m_watch = watcher.watch(folder.get(), [](std::string_view name) { return name.front() != '.'; });
        m_isCovered = m_watch && fileSystem.reportsChanges(folder.get());
    }

    std::set<std::string> names;
    m_notices.clear();
    fileSystem.forEachEntry(folder.get(), [&](const char* name, EntryKind kind) {
        if (kind == EntryKind::Folder)
            names.insert(name);
        else if (kind == EntryKind::Link)
            m_notices.push_back(m_path + "/" + name + ": is a link, and is not followed");
        else if (isCalendarFile(name))
            m_notices.push_back(m_path + "/" + name + ": lies in no account's folder, and is not read");
    });
    // What is left of an unmounted root is an empty folder of the same name.
    if (m_identity && m_identity != identity && names.empty() && hasCalendars())
        throw StoreInDoubt("the calendar folder " + m_path + " stands empty; is its file system mounted?");

    for (const auto& name : names)
        account(name).noteEverythingChanged();
    std::erase_if(m_accounts, [&](const auto& account) {
        if (!names.contains(account->name()))
            account->noteEverythingChanged();
        return !names.contains(account->name()) && account->calendars().empty();
    });
    m_identity = identity;
    m_listAgain = false;
}

// The next part of the path that appears below the nearest folder that exists brings the root nearer.
void RootFolder::watchForReturn(FileSystem& fileSystem, FolderWatcher& watcher)
{
    auto missing = std::filesystem::path{m_path};
    for (auto parent = missing.parent_path(); missing != parent;
         missing = parent, parent = parent.parent_path()) {
        if (!fileSystem.identityOf(parent.string()))
            continue;
        const auto folder = fileSystem.openFolder(AT_FDCWD, parent.string(), Links::Followed);
        if (folder) {
            m_parentWatch = watcher.watch(folder.get(),
                [next = missing.filename().string()](std::string_view name) { return name == next; });
        }
        return;
    }
}

AccountFolder& RootFolder::account(const std::string& name)
{
    const auto position = std::lower_bound(m_accounts.begin(), m_accounts.end(), name,
        [](const auto& account, const std::string& wanted) { return account->name() < wanted; });
    if (position != m_accounts.end() && (*position)->name() == name)
        return **position;
    auto identifier = m_identifier.empty() ? name : m_identifier + "/" + name;
    return **m_accounts.insert(position, std::make_unique<AccountFolder>(name, std::move(identifier)));
}

bool RootFolder::hasCalendars() const
{
    return std::any_of(m_accounts.begin(), m_accounts.end(),
        [](const auto& account) { return !account->calendars().empty(); });
}

}
