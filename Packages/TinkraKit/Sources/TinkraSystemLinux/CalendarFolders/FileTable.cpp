#include "TinkraSystemLinux/CalendarFolders/FileTable.h"

#include <algorithm>
#include <utility>

namespace Tinkra::System {

void FileRecord::setContent(ICalendar::Calendar calendar)
{
    reach = DayRange::covering(calendar.reach());
    content = std::move(calendar);
}

FileRecord* FileTable::find(std::string_view name)
{
    const auto found = lowerBound(name);
    return found != m_records.end() && this->name(*found) == name ? &*found : nullptr;
}

FileRecord& FileTable::add(std::string_view name)
{
    const auto position = lowerBound(name);
    FileRecord record;
    record.nameOffset = append(name);
    return *m_records.insert(position, std::move(record));
}

void FileTable::addAll(std::vector<std::pair<std::string, FileRecord>> files)
{
    std::size_t nameBytes = m_names.size();
    for (const auto& [name, record] : files)
        nameBytes += name.size() + 1;
    m_names.reserve(nameBytes);
    m_records.reserve(m_records.size() + files.size());

    for (auto& [name, record] : files) {
        record.nameOffset = append(name);
        m_records.push_back(std::move(record));
    }
    std::sort(m_records.begin(), m_records.end(),
        [this](const FileRecord& left, const FileRecord& right) { return name(left) < name(right); });
}

void FileTable::remove(std::string_view name)
{
    const auto found = lowerBound(name);
    if (found == m_records.end() || this->name(*found) != name)
        return;
    m_unusedNames += name.size() + 1;
    m_records.erase(found);
    if (m_unusedNames > 4096 && m_unusedNames > m_names.size() / 2)
        dropUnusedNames();
}

void FileTable::forgetStamps()
{
    for (auto& record : m_records)
        record.stamp = 0;
}

std::size_t FileTable::memoryUse() const
{
    std::size_t bytes = m_names.capacity() + m_records.capacity() * sizeof(FileRecord);
    for (const auto& record : m_records)
        bytes += record.content ? record.content->memoryUse() : 0;
    return bytes;
}

std::vector<FileRecord>::iterator FileTable::lowerBound(std::string_view name)
{
    return std::lower_bound(m_records.begin(), m_records.end(), name,
        [this](const FileRecord& record, std::string_view wanted) { return this->name(record) < wanted; });
}

std::uint32_t FileTable::append(std::string_view name)
{
    const auto offset = static_cast<std::uint32_t>(m_names.size());
    m_names.append(name).push_back('\0');
    return offset;
}

void FileTable::dropUnusedNames()
{
    const auto old = std::exchange(m_names, {});
    m_names.reserve(old.size() - m_unusedNames);
    for (auto& record : m_records)
        record.nameOffset = append(old.c_str() + record.nameOffset);
    m_unusedNames = 0;
}

}
