#include "FolderStore/TestFileSystem.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace Tinkra::System {

FileTime TestFileSystem::now()
{
    const std::lock_guard lock{m_mutex};
    return m_files.now() + m_lead;
}

void TestFileSystem::pause(std::chrono::milliseconds duration)
{
    advance(duration);
    {
        const std::lock_guard lock{m_mutex};
        ++m_pauses;
    }
    if (duringPause)
        duringPause();
}

Descriptor TestFileSystem::openFolder(int parent, const std::string& name, Links links)
{
    note(name);
    if (failsToOpen && failsToOpen(name))
        throw std::system_error(EACCES, std::generic_category(), "cannot open the folder \"" + name + "\"");
    return m_files.openFolder(parent, name, links);
}

std::optional<FolderIdentity> TestFileSystem::identityOf(const std::string& path)
{
    return m_files.identityOf(path);
}

FolderIdentity TestFileSystem::identityOf(int folder)
{
    return m_files.identityOf(folder);
}

void TestFileSystem::forEachEntry(
    int folder, const std::function<void(const char* name, EntryKind kind)>& sink)
{
    note(".");
    m_files.forEachEntry(folder, sink);
}

std::optional<FileStamp> TestFileSystem::stampOf(int folder, const char* name)
{
    return m_files.stampOf(folder, name);
}

FileReading TestFileSystem::readFile(int folder, const char* name, std::size_t limit, Buffer& buffer)
{
    note(name);
    if (beforeReading)
        beforeReading(name);
    if (insteadOfReading) {
        if (const auto reading = insteadOfReading(name))
            return *reading;
    }
    return m_files.readFile(folder, name, limit, buffer);
}

void TestFileSystem::makeFolder(const std::string& path)
{
    m_files.makeFolder(path);
}

bool TestFileSystem::reportsChanges(int folder)
{
    return changesAreReported && m_files.reportsChanges(folder);
}

void TestFileSystem::advance(FileTime duration)
{
    const std::lock_guard lock{m_mutex};
    m_lead += duration;
}

void TestFileSystem::setLead(FileTime lead)
{
    const std::lock_guard lock{m_mutex};
    m_lead = lead;
}

std::vector<std::string> TestFileSystem::takeOpened()
{
    const std::lock_guard lock{m_mutex};
    return std::exchange(m_opened, {});
}

int TestFileSystem::pauses() const
{
    const std::lock_guard lock{m_mutex};
    return m_pauses;
}

void TestFileSystem::note(const std::string& name)
{
    const std::lock_guard lock{m_mutex};
    m_opened.push_back(name);
}

}
