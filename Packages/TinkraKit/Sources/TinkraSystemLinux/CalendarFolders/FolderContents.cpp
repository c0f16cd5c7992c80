#include "TinkraSystemLinux/CalendarFolders/FolderContents.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <future>
#include <span>
#include <system_error>
#include <utility>

namespace Tinkra::System {

namespace {

using namespace std::chrono_literals;

// Time stamps move in steps of the kernel's tick, up to 10 ms: a file that changed less than two steps ago
// may change again without a sign.
constexpr FileTime kStampStep = 20ms;

// A file that is cut short and was left alone for so long is not on its way to the disk: it is malformed.
constexpr FileTime kWritingPause = 2s;

// How long a file may be away before its events go.
constexpr FileTime kAbsence = 1s;

// How long one refresh waits for files to settle: long when there is nothing to fall back on.
constexpr std::chrono::milliseconds kPatience{60};
constexpr std::chrono::milliseconds kFirstPatience{3500};
constexpr std::chrono::milliseconds kFirstPause{20};
constexpr std::chrono::milliseconds kLongestPause{320};

// Fewer files than this are not worth a second thread.
constexpr std::size_t kFilesPerThread = 500;

const ICalendar::Limits kLimits;

enum class Judgement { Good, Bad, Unsettled, Gone };

// Trouble of this process or of a file system that is away, not of the one file.
bool isPassing(int error)
{
    constexpr std::array kErrors{
        EMFILE, ENFILE, ENOMEM, EAGAIN, EINTR, ESTALE, ETIMEDOUT, ENOTCONN, EHOSTDOWN};
    return std::find(kErrors.begin(), kErrors.end(), error) != kErrors.end();
}

bool isWithin(FileTime age, FileTime limit)
{
    return age >= FileTime{0} && age < limit;
}

// Puts what `reading` gave into `record`, as far as it is final.
Judgement judge(const FileReading& reading, FileTime now, FileRecord& record)
{
    using Outcome = FileReading::Outcome;

    auto state = FileState::Good;
    switch (reading.outcome) {
    case Outcome::Missing:
        return Judgement::Gone;
    case Outcome::ChangedMeanwhile:
        return Judgement::Unsettled;
    case Outcome::NotAFile:
        state = FileState::NotAFile;
        break;
    case Outcome::TooLarge:
        state = FileState::TooLarge;
        break;
    case Outcome::Forbidden:
        state = FileState::Forbidden;
        break;
    case Outcome::Failed:
        if (isPassing(reading.error))
            return Judgement::Unsettled;
        state = FileState::Failed;
        break;
    case Outcome::Read: {
        const auto age = now - reading.stamp.changed;
        if (isWithin(age, kStampStep))
            return Judgement::Unsettled;
        auto calendar = ICalendar::Calendar::read(reading.text, kLimits);
        if (calendar.isWhole()) {
            record.setContent(std::move(calendar));
        } else if (isWithin(age, kWritingPause)) {
            return Judgement::Unsettled;
        } else {
            state = FileState::NotWhole;
        }
        break;
    }
    }
    record.state = state;
    record.stamp = fingerprint(reading.stamp);
    return state == FileState::Good ? Judgement::Good : Judgement::Bad;
}

struct FirstReading {
    std::vector<std::pair<std::string, FileRecord>> files;
    std::vector<std::string> rest; ///< not settled, or gone
};

FirstReading readEach(FileSystem& fileSystem, int folder, std::span<std::string> names)
{
    FirstReading result;
    result.files.reserve(names.size());
    FileSystem::Buffer buffer(65536);
    for (auto& name : names) {
        // The time before the reading: what changes later than this is younger than it seems.
        const auto now = fileSystem.now();
        const auto reading = fileSystem.readFile(folder, name.c_str(), kLimits.bytes, buffer);
        FileRecord record;
        const auto judgement = judge(reading, now, record);
        if (judgement == Judgement::Good || judgement == Judgement::Bad)
            result.files.emplace_back(std::move(name), std::move(record));
        else
            result.rest.push_back(std::move(name));
    }
    return result;
}

constexpr auto kRefused = "is a link or no regular file, and is not read";

std::string sentence(const std::string& place, std::string_view file, std::string_view what)
{
    return std::string{place}.append("/").append(file).append(": ").append(what);
}

const char* describe(FileState state)
{
    switch (state) {
    case FileState::Good:
        break;
    case FileState::NotWhole:
        return "does not begin with BEGIN:VCALENDAR and end with END:VCALENDAR";
    case FileState::NotAFile:
        return "is no regular file";
    case FileState::TooLarge:
        return "is larger than 32 MB";
    case FileState::Forbidden:
        return "may not be read";
    case FileState::Failed:
        return "cannot be read";
    }
    return "";
}

}

bool isCalendarFile(std::string_view name)
{
    return name.size() > 4 && name.front() != '.'
        && strncasecmp(name.data() + name.size() - 4, ".ics", 4) == 0;
}

FolderContents::FolderContents(std::string onlyFile)
    : m_onlyFile(std::move(onlyFile))
{
}

void FolderContents::markAll()
{
    m_listAgain = true;
}

void FolderContents::mark(const std::string& name)
{
    if (isCalendarFile(name) && (m_onlyFile.empty() || m_onlyFile == name))
        m_marked.insert(name);
}

void FolderContents::noteOutdated()
{
    m_files.forgetStamps();
    m_listAgain = true;
}

void FolderContents::refresh(FileSystem& fileSystem, int folder)
{
    if (m_listAgain) {
        auto names = list(fileSystem, folder);
        if (m_files.records().empty() && m_marked.empty()) {
            readFirst(fileSystem, folder, std::move(names));
        } else {
            m_marked.insert(names.begin(), names.end());
            for (const auto& record : m_files.records())
                m_marked.emplace(m_files.name(record));
        }
        m_listAgain = false;
    }
    settle(fileSystem, folder);
    if (!m_isComplete && !m_marked.empty())
        throw StoreInDoubt("\"" + *m_marked.begin() + "\" is being written, or cannot be read just now");
    m_isComplete = true;
}

void FolderContents::appendNotices(
    const std::string& place, std::size_t limit, std::vector<std::string>& notices) const
{
    const auto add = [&](std::string_view name, std::string_view what) {
        if (notices.size() < limit)
            notices.push_back(sentence(place, name, what));
    };
    for (const auto& name : m_refused)
        add(name, kRefused);
    for (const auto& record : m_files.records()) {
        if (record.state != FileState::Good)
            add(m_files.name(record), describe(record.state));
        if (!record.content)
            continue;
        if (record.state != FileState::Good)
            add(m_files.name(record), "its last good content is used");
        for (const auto& notice : record.content->notices())
            add(m_files.name(record), notice);
    }
}

void FolderContents::appendLeftOut(
    const std::string& place, std::size_t limit, std::vector<std::string>& files) const
{
    const auto add = [&](std::string_view name, std::string_view what) {
        if (files.size() < limit)
            files.push_back(sentence(place, name, what));
    };
    for (const auto& name : m_refused)
        add(name, kRefused);
    for (const auto& record : m_files.records()) {
        if (!record.content)
            add(m_files.name(record), describe(record.state));
    }
}

std::vector<std::string> FolderContents::list(FileSystem& fileSystem, int folder)
{
    std::vector<std::string> names;
    if (!m_onlyFile.empty()) {
        names.push_back(m_onlyFile);
        return names;
    }
    m_refused.clear();
    fileSystem.forEachEntry(folder, [&](const char* name, EntryKind kind) {
        if (!isCalendarFile(name))
            return;
        if (kind == EntryKind::File)
            names.emplace_back(name);
        else
            m_refused.emplace(name);
    });
    return names;
}

// In the order of the listing, which is the disk's; on two threads, because each file is a few system calls.
void FolderContents::readFirst(FileSystem& fileSystem, int folder, std::vector<std::string> names)
{
    const std::span all{names};
    const auto half = names.size() < kFilesPerThread ? 0 : names.size() / 2;
    auto other = std::async(half == 0 ? std::launch::deferred : std::launch::async,
        [&] { return readEach(fileSystem, folder, all.first(half)); });
    auto second = readEach(fileSystem, folder, all.subspan(half));
    auto first = other.get();

    first.files.insert(
        first.files.end(), std::move_iterator{second.files.begin()}, std::move_iterator{second.files.end()});
    m_files.addAll(std::move(first.files));
    for (auto* rest : {&first.rest, &second.rest})
        m_marked.insert(rest->begin(), rest->end());
}

// Checks what is marked until it settles or patience ends; what does not settle stays marked.
void FolderContents::settle(FileSystem& fileSystem, int folder)
{
    const auto patience = m_isComplete ? kPatience : kFirstPatience;
    std::chrono::milliseconds waited{0};
    auto pause = kFirstPause;
    for (;;) {
        bool worthWaiting = false;
        std::erase_if(m_marked, [&](const std::string& name) {
            const auto settling = check(fileSystem, folder, name);
            worthWaiting |= settling == Settling::Unsettled || (settling == Settling::Away && !m_isComplete);
            return settling == Settling::Settled;
        });
        if (!worthWaiting || waited >= patience)
            return;
        fileSystem.pause(pause);
        waited += pause;
        pause = std::min(pause * 2, kLongestPause);
    }
}

FolderContents::Settling FolderContents::check(FileSystem& fileSystem, int folder, const std::string& name)
{
    auto* known = m_files.find(name);
    if (known) {
        const auto stamp = fileSystem.stampOf(folder, name.c_str());
        if (stamp && fingerprint(*stamp) == known->stamp) {
            m_gone.erase(name);
            return Settling::Settled;
        }
    }

    const auto now = fileSystem.now();
    const auto reading = fileSystem.readFile(folder, name.c_str(), kLimits.bytes, m_buffer);
    FileRecord fresh;
    const auto judgement = judge(reading, now, known ? *known : fresh);
    if (m_buffer.size() > 1U << 20U)
        m_buffer = {};
    if (judgement == Judgement::Gone)
        return noteGone(fileSystem, name);
    m_gone.erase(name);
    if (judgement == Judgement::Unsettled)
        return Settling::Unsettled;
    if (!known) {
        auto& record = m_files.add(name);
        fresh.nameOffset = record.nameOffset;
        record = std::move(fresh);
    }
    return Settling::Settled;
}

FolderContents::Settling FolderContents::noteGone(FileSystem& fileSystem, const std::string& name)
{
    const auto now = fileSystem.now();
    const auto since = m_gone.try_emplace(name, now).first->second;
    const bool mayComeBack = isWithin(now - since, kAbsence) && (m_files.find(name) || !m_isComplete);
    if (mayComeBack)
        return Settling::Away;
    m_files.remove(name);
    m_gone.erase(name);
    return Settling::Settled;
}

}
