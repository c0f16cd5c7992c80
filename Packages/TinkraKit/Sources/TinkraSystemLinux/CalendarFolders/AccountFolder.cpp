#include "TinkraSystemLinux/CalendarFolders/AccountFolder.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

namespace Tinkra::System {

namespace {

std::string withoutExtension(const std::string& entry)
{
    return entry.substr(0, entry.size() - std::string_view{".ics"}.size());
}

}

AccountFolder::AccountFolder(std::string name, std::string identifier)
    : m_name(std::move(name))
    , m_identifier(std::move(identifier))
{
}

void AccountFolder::refresh(
    FileSystem& fileSystem, FolderWatcher& watcher, const std::function<Descriptor()>& openSelf)
{
    takeChanges();
    if (m_listAgain || !m_isCovered) {
        const auto folder = openSelf();
        if (!folder) {
            m_watch.reset();
            noteMissing(fileSystem.now());
            return;
        }
        const auto identity = fileSystem.identityOf(folder.get());
        if (!m_watch || m_identity != identity) {
            m_identity = identity;
            m_watch = watcher.watch(folder.get(), [](std::string_view name) { return name.front() != '.'; });
            m_isCovered = m_watch && fileSystem.reportsChanges(folder.get());
        }
        list(fileSystem, folder.get());
        nameCalendars();
        m_listAgain = false;
    }
    describeCalendars(fileSystem, watcher, openSelf);
}

void AccountFolder::noteMissing(FileTime now)
{
    m_isCovered = false;
    for (auto& calendar : m_calendars) {
        if (!calendar->missingSince)
            calendar->missingSince = now;
    }
}

void AccountFolder::dropMissing(const std::function<bool(const CalendarFolder&)>& isOver)
{
    std::erase_if(
        m_calendars, [&](const auto& calendar) { return calendar->missingSince && isOver(*calendar); });
}

void AccountFolder::appendNotices(
    const std::string& place, std::size_t limit, std::vector<std::string>& notices) const
{
    for (const auto* each : {&m_notices, &m_unopened}) {
        for (const auto& notice : *each) {
            if (notices.size() < limit)
                notices.emplace_back(place).append("/").append(notice);
        }
    }
}

void AccountFolder::takeChanges()
{
    FolderChanges changes;
    if (m_watch)
        changes = m_watch->take();
    if (changes.lost) {
        m_watch.reset();
        m_isCovered = false;
    }
    m_listAgain |= !changes.isEmpty();

    for (auto& calendar : m_calendars) {
        calendar->takeChanges();
        const bool isSingleFile = calendar->kind() == CalendarFolder::Kind::SingleFile;
        if (isSingleFile)
            calendar->setCovered(m_isCovered);
        if (!calendar->isCovered() || (isSingleFile && changes.unknown))
            calendar->noteEverythingChanged();
        else if (isSingleFile && changes.names.contains(calendar->entry()))
            calendar->noteChanged(calendar->entry());
    }
}

void AccountFolder::list(FileSystem& fileSystem, int folder)
{
    m_notices.clear();
    std::set<const CalendarFolder*> present;
    fileSystem.forEachEntry(folder, [&](const char* name, EntryKind kind) {
        if (kind == EntryKind::Folder)
            present.insert(&calendar(CalendarFolder::Kind::Folder, name));
        else if (kind == EntryKind::File && isCalendarFile(name))
            present.insert(&calendar(CalendarFolder::Kind::SingleFile, name));
        else if (kind == EntryKind::Link)
            m_notices.push_back(std::string{name} + ": is a link, and is not followed");
    });

    const auto now = fileSystem.now();
    for (auto& calendar : m_calendars) {
        if (present.contains(calendar.get())) {
            calendar->missingSince.reset();
            // A folder may have been replaced by another one of the same name.
            if (calendar->kind() == CalendarFolder::Kind::Folder)
                calendar->noteDescriptionChanged();
            else
                calendar->setCovered(m_isCovered);
        } else if (!calendar->missingSince) {
            calendar->missingSince = now;
        }
    }
}

// A single file goes by its name without ".ics", unless a folder has that name.
void AccountFolder::nameCalendars()
{
    std::set<std::string> taken;
    for (auto& calendar : m_calendars) {
        const auto whole = m_identifier + "/" + calendar->entry();
        auto identifier =
            calendar->kind() == CalendarFolder::Kind::SingleFile ? withoutExtension(whole) : whole;
        if (!taken.insert(identifier).second)
            taken.insert(identifier = whole);
        calendar->setIdentifier(std::move(identifier));
    }
}

void AccountFolder::describeCalendars(
    FileSystem& fileSystem, FolderWatcher& watcher, const std::function<Descriptor()>& openSelf)
{
    m_unopened.clear();
    Descriptor self;
    for (auto& calendar : m_calendars) {
        if (calendar->missingSince || !calendar->wantsDescription())
            continue;
        try {
            if (!self)
                self = openSelf();
            const auto folder = fileSystem.openFolder(self.get(), calendar->entry(), Links::Refused);
            if (folder)
                calendar->refreshDescription(fileSystem, watcher, folder.get());
            else
                calendar->missingSince = fileSystem.now();
        } catch (const std::system_error& error) {
            // It stays listed, so that asking for its events tells the trouble.
            m_unopened.push_back(calendar->entry() + ": " + error.what());
        }
    }
}

CalendarFolder& AccountFolder::calendar(CalendarFolder::Kind kind, const std::string& entry)
{
    const auto precedes = [](const auto& calendar, const auto& key) {
        return std::tuple{calendar->kind(), calendar->entry()} < key;
    };
    const auto position =
        std::lower_bound(m_calendars.begin(), m_calendars.end(), std::tuple{kind, entry}, precedes);
    if (position != m_calendars.end() && (*position)->kind() == kind && (*position)->entry() == entry)
        return **position;
    const bool isFile = kind == CalendarFolder::Kind::SingleFile;
    StoredCalendar description{.title = isFile ? withoutExtension(entry) : entry, .sourceTitle = m_name};
    return **m_calendars.insert(
        position, std::make_unique<CalendarFolder>(kind, entry, std::move(description)));
}

}
