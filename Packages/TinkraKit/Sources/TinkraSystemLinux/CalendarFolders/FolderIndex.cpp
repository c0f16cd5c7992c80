#include "TinkraSystemLinux/CalendarFolders/FolderIndex.h"

#include "TinkraSystemLinux/CalendarFolders/EventExpansion.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <future>
#include <utility>

namespace Tinkra::System {

namespace {

using namespace std::chrono_literals;

// A calendar that is gone may come back within this time as if nothing had happened.
constexpr FileTime kAbsence = 1s;

// A calendar that is asked for and gone is an error for so long; then its removal is believed.
constexpr FileTime kDoubtOverMissing = 10min;

// After this time something that was not settled is worth another query.
constexpr std::chrono::milliseconds kNextLook{1100};
constexpr std::chrono::milliseconds kNextLookInDoubt{5000};

constexpr std::size_t kNoticesKept = 200;

std::string describe(const std::exception_ptr& trouble)
{
    if (!trouble)
        return {};
    try {
        std::rethrow_exception(trouble);
    } catch (const std::exception& error) {
        return error.what();
    }
}

// The path of the folder that holds the calendar's files.
std::string folderOf(const RootFolder& root, const AccountFolder& account, const CalendarFolder& calendar)
{
    auto path = root.path() + "/" + account.name();
    return calendar.kind() == CalendarFolder::Kind::Folder ? path + "/" + calendar.entry() : path;
}

void addNotices(std::vector<std::string>& notices, const std::vector<std::string>& more)
{
    const auto room = kNoticesKept - std::min(kNoticesKept, notices.size());
    notices.insert(
        notices.end(), more.begin(), more.begin() + static_cast<std::ptrdiff_t>(std::min(room, more.size())));
}

}

FolderIndex::FolderIndex(const std::vector<std::string>& roots, std::shared_ptr<FileSystem> fileSystem,
    std::shared_ptr<FolderWatcher> watcher)
    : m_fileSystem(std::move(fileSystem))
    , m_watcher(std::move(watcher))
{
    for (const auto& path : roots)
        m_roots.push_back(std::make_unique<RootFolder>(path, m_roots.empty() ? std::string{} : path));
}

std::vector<StoredCalendar> FolderIndex::calendars()
{
    refresh();
    std::vector<StoredCalendar> result;
    forEachCalendar([&](RootFolder&, AccountFolder&, CalendarFolder& calendar) {
        result.push_back(calendar.description());
    });
    return result;
}

std::vector<StoredEvent> FolderIndex::events(
    Instant from, Instant to, const std::vector<std::string>& calendarIdentifiers)
{
    m_askedFor = {calendarIdentifiers.begin(), calendarIdentifiers.end()};
    refresh();
    readContents();

    EventExpansion expansion{from, to};
    forEachCalendar([&](RootFolder& root, AccountFolder& account, CalendarFolder& calendar) {
        if (m_askedFor.contains(calendar.identifier()))
            expansion.add(calendar, folderOf(root, account, calendar));
    });
    auto result = expansion.run();
    m_expansionNotices = std::move(result.notices);
    return std::move(result.events);
}

FolderStoreStatus FolderIndex::status()
{
    const auto troubles = refreshRoots();

    FolderStoreStatus status;
    for (std::size_t i = 0; i < m_roots.size(); ++i) {
        const auto& root = *m_roots[i];
        status.roots.push_back({
            .path = root.path(),
            .isReachable = m_fileSystem->identityOf(root.path()).has_value(),
            .isWatched = root.isCovered(),
            .trouble = describe(troubles[i]),
        });
        addNotices(status.notices, root.notices());
        for (const auto& account : root.accounts())
            account->appendNotices(root.path() + "/" + account->name(), kNoticesKept, status.notices);
    }
    forEachCalendar([&](RootFolder& root, AccountFolder& account, CalendarFolder& calendar) {
        const auto& files = calendar.contents().files();
        FolderStoreStatus::Calendar entry{
            .identifier = calendar.identifier(),
            .path = root.path() + "/" + account.name() + "/" + calendar.entry(),
            .isRead = calendar.contents().isComplete(),
            .isWatched = calendar.isCovered(),
            .files = files.records().size(),
        };
        for (const auto& record : files.records())
            entry.events += record.content ? record.content->eventCount() : 0;
        calendar.contents().appendNotices(folderOf(root, account, calendar), kNoticesKept, status.notices);
        calendar.contents().appendLeftOut(folderOf(root, account, calendar), kNoticesKept, status.leftOut);
        status.memoryUse += files.memoryUse();
        status.calendars.push_back(std::move(entry));
    });
    addNotices(status.notices, m_expansionNotices);
    if (!ICalendar::knownViewerZone())
        status.notices.emplace(status.notices.begin(), "the machine's time zone is not known; UTC is used");
    if (auto trouble = m_watcher->trouble(); !trouble.empty())
        status.notices.insert(status.notices.begin(), std::move(trouble));
    return status;
}

FolderStoreStatus FolderIndex::examine()
{
    refreshRoots();
    const Instant now{m_fileSystem->now()};
    EventExpansion expansion{now, now + std::chrono::days{30}};
    std::vector<std::string> troubles;
    forEachCalendar([&](RootFolder& root, AccountFolder& account, CalendarFolder& calendar) {
        try {
            readContents(root, account, calendar);
            expansion.add(calendar, folderOf(root, account, calendar));
        } catch (const std::exception& trouble) {
            troubles.emplace_back(trouble.what());
        }
    });
    m_expansionNotices = expansion.run().notices;

    auto result = status();
    addNotices(result.notices, troubles);
    return result;
}

bool FolderIndex::beginWatching()
{
    if (m_isWatching)
        return false;
    refreshRoots();
    return true;
}

void FolderIndex::refresh()
{
    for (const auto& trouble : refreshRoots()) {
        if (trouble)
            std::rethrow_exception(trouble);
    }
}

// One entry for each root: what is wrong with it.
std::vector<std::exception_ptr> FolderIndex::refreshRoots()
{
    m_isWatching = true;
    refreshZones();
    m_watcher->drain();
    std::vector<std::exception_ptr> troubles(m_roots.size());
    for (std::size_t i = 0; i < m_roots.size(); ++i) {
        try {
            m_roots[i]->refresh(*m_fileSystem, *m_watcher);
        } catch (const std::exception&) {
            troubles[i] = std::current_exception();
        }
    }

    const auto now = m_fileSystem->now();
    for (const auto& root : m_roots) {
        for (const auto& account : root->accounts())
            account->dropMissing(
                [&](const CalendarFolder& calendar) { return isGoneForGood(calendar, now); });
    }
    return troubles;
}

// A calendar keeps the zones that it was read with, so that new zone data means reading it again.
void FolderIndex::refreshZones()
{
    const auto zones = ICalendar::refreshZones();
    if (std::exchange(m_zones, zones) == zones)
        return;
    for (const auto& root : m_roots) {
        for (const auto& account : root->accounts()) {
            for (const auto& calendar : account->calendars())
                calendar->contents().noteOutdated();
        }
    }
}

// On two threads when there is more than one calendar to read: they share nothing that changes.
void FolderIndex::readContents()
{
    std::vector<std::function<void()>> readings;
    forEachCalendar([&](RootFolder& root, AccountFolder& account, CalendarFolder& calendar) {
        const bool isCurrent =
            calendar.isCovered() && calendar.contents().isCurrent() && !calendar.missingSince;
        if (m_askedFor.contains(calendar.identifier()) && !isCurrent)
            readings.emplace_back([&] { readContents(root, account, calendar); });
    });
    const auto readFrom = [&](std::size_t first) {
        for (auto i = first; i < readings.size(); i += 2)
            readings[i]();
    };
    auto other =
        std::async(readings.size() < 2 ? std::launch::deferred : std::launch::async, [&] { readFrom(1); });
    readFrom(0);
    other.get();
}

void FolderIndex::readContents(RootFolder& root, AccountFolder& account, CalendarFolder& calendar)
{
    if (calendar.missingSince) {
        const auto absence = m_fileSystem->now() - *calendar.missingSince;
        if (absence < kAbsence && calendar.contents().isComplete()) {
            m_watcher->notifyAfter(kNextLook);
            return;
        }
        throw StoreInDoubt("the calendar \"" + calendar.identifier() + "\" is gone from " + root.path()
            + "; deselect it if that is meant");
    }
    try {
        const auto folder = root.openFolderOf(*m_fileSystem, account, calendar);
        calendar.refreshContents(*m_fileSystem, *m_watcher, folder.get());
    } catch (const StoreInDoubt& doubt) {
        m_watcher->notifyAfter(kNextLookInDoubt);
        throw StoreInDoubt("the calendar \"" + calendar.identifier() + "\" is in doubt: " + doubt.what());
    }
    if (!calendar.contents().isCurrent())
        m_watcher->notifyAfter(kNextLook);
}

bool FolderIndex::isGoneForGood(const CalendarFolder& calendar, FileTime now) const
{
    return !m_askedFor.contains(calendar.identifier()) || now - *calendar.missingSince >= kDoubtOverMissing;
}

// Two paths may lead to one folder; its calendars are listed once.
bool FolderIndex::isDuplicate(const RootFolder& root) const
{
    for (const auto& earlier : m_roots) {
        if (earlier.get() == &root)
            return false;
        if (earlier->identity() && earlier->identity() == root.identity())
            return true;
    }
    return false;
}

template <typename Visit> void FolderIndex::forEachCalendar(Visit visit)
{
    for (const auto& root : m_roots) {
        if (isDuplicate(*root))
            continue;
        for (const auto& account : root->accounts()) {
            for (const auto& calendar : account->calendars())
                visit(*root, *account, *calendar);
        }
    }
}

}
