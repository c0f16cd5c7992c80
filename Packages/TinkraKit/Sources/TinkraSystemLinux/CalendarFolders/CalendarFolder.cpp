#include "TinkraSystemLinux/CalendarFolders/CalendarFolder.h"

#include "TinkraSystemLinux/CalendarFolders/CalendarDescription.h"

#include <utility>

namespace Tinkra::System {

namespace {

constexpr std::size_t kDescriptionLimit = 4096;

// How often a listing is repeated because something changed while it was read.
constexpr int kRepetitions = 3;

bool matters(std::string_view name)
{
    return isCalendarFile(name) || name == kTitleFile || name == kColorFile;
}

// The file's text; nothing when there is no such file. An unreadable or half-written one leaves what was
// known.
template <typename Value, typename Parse>
void readInto(Value& value, FileSystem& fileSystem, int folder, const char* name, Parse parse)
{
    FileSystem::Buffer buffer;
    const auto reading = fileSystem.readFile(folder, name, kDescriptionLimit, buffer);
    if (reading.outcome == FileReading::Outcome::Missing)
        value.reset();
    else if (reading.outcome == FileReading::Outcome::Read && !reading.text.empty())
        value = parse(reading.text);
}

}

CalendarFolder::CalendarFolder(Kind kind, std::string entry, StoredCalendar description)
    : m_kind(kind)
    , m_entry(std::move(entry))
    , m_description(std::move(description))
    , m_contents(kind == Kind::SingleFile ? FolderContents{m_entry} : FolderContents{})
    , m_descriptionIsStale(kind == Kind::Folder)
{
}

bool CalendarFolder::takeChanges()
{
    if (!m_watch)
        return false;
    const auto changes = m_watch->take();
    if (changes.lost) {
        m_watch.reset();
        m_isCovered = false;
    }
    if (changes.lost || changes.unknown)
        noteEverythingChanged();
    for (const auto& name : changes.names)
        noteChanged(name);
    return !changes.isEmpty();
}

void CalendarFolder::noteChanged(const std::string& name)
{
    if (m_kind == Kind::Folder && (name == kTitleFile || name == kColorFile))
        m_descriptionIsStale = true;
    else
        m_contents.mark(name);
}

void CalendarFolder::noteEverythingChanged()
{
    m_contents.markAll();
    m_descriptionIsStale = m_kind == Kind::Folder;
}

void CalendarFolder::refreshDescription(FileSystem& fileSystem, FolderWatcher& watcher, int folder)
{
    if (m_kind == Kind::SingleFile)
        return;
    watch(fileSystem, watcher, folder);
    if (!m_descriptionIsStale)
        return;

    std::optional<std::string> title{m_description.title};
    readInto(title, fileSystem, folder, kTitleFile, parseTitle);
    m_description.title = title.value_or(m_entry);
    readInto(m_description.colorComponents, fileSystem, folder, kColorFile, parseColor);
    m_descriptionIsStale = false;
}

void CalendarFolder::refreshContents(FileSystem& fileSystem, FolderWatcher& watcher, int folder)
{
    if (m_kind == Kind::Folder)
        watch(fileSystem, watcher, folder);
    for (int i = 0; i < kRepetitions; ++i) {
        m_contents.refresh(fileSystem, folder);
        // What changed meanwhile may have escaped the listing.
        watcher.drain();
        if (!takeChanges())
            return;
    }
}

// Watched before it is listed, so that no change falls between the two.
void CalendarFolder::watch(FileSystem& fileSystem, FolderWatcher& watcher, int folder)
{
    const auto identity = fileSystem.identityOf(folder);
    if (m_watch && m_identity == identity)
        return;
    m_identity = identity;
    m_watch = watcher.watch(folder, matters);
    m_isCovered = m_watch && fileSystem.reportsChanges(folder);
    noteEverythingChanged();
}

}
