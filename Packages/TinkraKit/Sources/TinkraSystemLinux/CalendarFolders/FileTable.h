#pragma once

#include "TinkraICalendar/Calendar.h"
#include "TinkraSystemLinux/CalendarFolders/DayRange.h"
#include "TinkraSystemLinux/CalendarFolders/FileSystem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::System {

/// How the newest reading of a file ended, once it was left alone. Anything but `Good` is named in the
/// status.
enum class FileState : std::uint8_t {
    Good,
    NotWhole, ///< BEGIN:VCALENDAR or END:VCALENDAR is missing
    NotAFile,
    TooLarge,
    Forbidden,
    Failed,
};

/// What is kept of one file: its last good content, and which state of the file was read last. 40 bytes.
struct FileRecord {
    std::optional<ICalendar::Calendar> content;
    std::uint64_t stamp = 0; ///< `fingerprint` of the newest reading's stamp
    DayRange reach; ///< holds every occurrence of the content
    std::uint32_t nameOffset = 0;
    FileState state = FileState::Good;

    void setContent(ICalendar::Calendar calendar);
};

/// The files of one calendar by name. Built for 100,000 of them: the names share one text.
class FileTable {
public:
    std::string_view name(const FileRecord& record) const { return m_names.c_str() + record.nameOffset; }

    /// The record of this name; null when there is none. Valid until the table changes.
    FileRecord* find(std::string_view name);

    /// Adds a name that is not there yet.
    FileRecord& add(std::string_view name);

    /// Adds many names, none of which is there yet, with their records; `nameOffset` is set here.
    void addAll(std::vector<std::pair<std::string, FileRecord>> files);

    void remove(std::string_view name);

    /// Makes every file look as if it had changed since it was read.
    void forgetStamps();

    const std::vector<FileRecord>& records() const { return m_records; }

    /// Bytes on the heap, contents included.
    std::size_t memoryUse() const;

private:
    std::vector<FileRecord>::iterator lowerBound(std::string_view name);
    std::uint32_t append(std::string_view name);
    void dropUnusedNames();

    std::string m_names; ///< each ends with a NUL
    std::size_t m_unusedNames = 0; ///< bytes of names that were removed
    std::vector<FileRecord> m_records; ///< sorted by name
};

}
