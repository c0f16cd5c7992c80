#pragma once

#include "TinkraSystemLinux/CalendarFolders/FileTable.h"

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tinkra::System {

/// The answer would be a guess: the caller keeps what it had.
class StoreInDoubt : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// True for names that are read as calendar files: "*.ics", not hidden.
bool isCalendarFile(std::string_view name);

/// The calendar files of one folder, read when they change and only then.
///
/// A file counts as read when it begins and ends as a calendar, did not change while it was read, and was
/// left alone for long enough that its time stamp would show the next change. Until it is, its last good
/// content stands. A file that is gone keeps its content for a second, in which it may come back under the
/// same name, as it does with editors that delete and write anew.
///
/// Used by one thread at a time.
class FolderContents {
public:
    FolderContents() = default;

    /// Only one file of the folder belongs to the calendar.
    explicit FolderContents(std::string onlyFile);

    void markAll();
    void mark(const std::string& name);

    /// What was read means something else by now: every file is to be read again, changed or not.
    void noteOutdated();

    /// True when `refresh` has nothing to look at.
    bool isCurrent() const { return m_isComplete && !m_listAgain && m_marked.empty(); }

    /// Looks at what is marked. Files that do not settle stay marked; when there is no earlier content to
    /// stand in for them, throws `StoreInDoubt`. Throws std::system_error when the folder cannot be listed.
    void refresh(FileSystem& fileSystem, int folder);

    const FileTable& files() const { return m_files; }

    /// True once everything was read: from then on there is an earlier state to fall back on.
    bool isComplete() const { return m_isComplete; }

    /// Files that could not be read or understood, one sentence each, at most `limit`.
    void appendNotices(const std::string& place, std::size_t limit, std::vector<std::string>& notices) const;

    /// Files of which nothing is used, one sentence each, at most `limit`.
    void appendLeftOut(const std::string& place, std::size_t limit, std::vector<std::string>& files) const;

private:
    enum class Settling { Settled, Unsettled, Away };

    std::vector<std::string> list(FileSystem& fileSystem, int folder);
    void readFirst(FileSystem& fileSystem, int folder, std::vector<std::string> names);
    Settling check(FileSystem& fileSystem, int folder, const std::string& name);
    Settling noteGone(FileSystem& fileSystem, const std::string& name);
    void settle(FileSystem& fileSystem, int folder);

    std::string m_onlyFile;
    FileTable m_files;
    bool m_listAgain = true;
    bool m_isComplete = false;
    std::set<std::string> m_marked;
    std::map<std::string, FileTime> m_gone; ///< names that are missing, and since when
    std::set<std::string> m_refused; ///< links, pipes and the like
    FileSystem::Buffer m_buffer;
};

}
